#include "engine/chart/axis.h"

#include <algorithm>
#include <cmath>

#include "values/number_text.h"

namespace velora::engine {
namespace {

constexpr double kThinnest = 1e-9;  // of the values themselves; closer ones cannot be told apart
constexpr double kGreatest = 1e16;  // sums of many values; beyond it numbers are no longer readable

/// The next round number: 1, 2, 2.5 or 5 times a power of ten.
double round_step(double least, bool whole)
{
    if (whole) least = std::max(least, 1.0);
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 2.5, 5.0}) {
        if (whole && factor * power != std::floor(factor * power)) continue;
        if (factor * power >= least * (1 - 1e-9)) return factor * power;
    }
    return 10 * power;
}

int decimals_of(double step)
{
    int decimals = 0;
    for (; decimals < 6 && std::abs(step - std::round(step)) > 1e-9 * step; step *= 10) ++decimals;
    return decimals;
}

}  // namespace

ValueScale::ValueScale(double least, double most, int marks, bool whole, bool zero)
    : marks_(std::max(marks, 1)), whole_(whole)
{
    least = std::clamp(zero ? std::min(least, 0.0) : least, -kGreatest, kGreatest);
    most = std::clamp(zero ? std::max(most, 0.0) : most, least, kGreatest);
    const double size = std::max(std::abs(least), std::abs(most));
    if (size == 0) {
        most = 1;
    } else if (most - least < size * kThinnest) {
        least -= size / 2;
        most += size / 2;
    }
    step_ = round_step((most - least) / marks_, whole);
    least_ = std::floor(least / step_ + 1e-9) * step_;
    most_ = std::ceil(most / step_ - 1e-9) * step_;
    decimals_ = decimals_of(step_);
}

void ValueScale::limit(std::optional<double> least, std::optional<double> most)
{
    if (!least && !most) return;
    const double low = least && std::isfinite(*least) ? *least : least_;
    const double high = most && std::isfinite(*most) ? *most : most_;
    if (!(high - low > kThinnest * std::max(std::abs(low), std::abs(high)))) return;
    least_ = std::clamp(low, -kGreatest, kGreatest);
    most_ = std::clamp(high, -kGreatest, kGreatest);
    step_ = round_step((most_ - least_) / marks_, whole_);
    decimals_ = decimals_of(step_);
}

std::vector<double> ValueScale::marks() const
{
    std::vector<double> result;
    const double first = std::ceil(least_ / step_ - 1e-9);
    const auto count = static_cast<int>(std::floor(most_ / step_ + 1e-9) - first);
    for (int i = 0; i <= count; ++i) result.push_back((first + i) * step_ + 0.0);  // no "-0"
    return result;
}

std::string ValueScale::text(double mark) const
{
    return format_number(mark, decimals_);
}

std::string chart_number(double value)
{
    const double limited = std::clamp(value, -kGreatest, kGreatest);
    std::string text = format_number(limited, 2);
    if (text.ends_with(".00")) text.resize(text.size() - 3);
    return text;
}

}  // namespace velora::engine
