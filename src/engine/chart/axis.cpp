#include "engine/chart/axis.h"

#include <algorithm>
#include <cmath>

#include "values/number_text.h"

namespace velora::engine {
namespace {

constexpr double kGreatest = 1e18;  // sums of many values; beyond it numbers are no longer readable

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

}  // namespace

ValueScale::ValueScale(double least, double most, int marks, bool whole)
{
    least = std::clamp(std::min(least, 0.0), -kGreatest, 0.0);
    most = std::clamp(std::max(most, 0.0), 0.0, kGreatest);
    if (least == most) most = 1;
    step_ = round_step((most - least) / std::max(marks, 1), whole);
    least_ = std::floor(least / step_ + 1e-9) * step_;
    most_ = std::ceil(most / step_ - 1e-9) * step_;
    decimals_ = 0;
    for (double step = step_; decimals_ < 6 && std::abs(step - std::round(step)) > 1e-9 * step; step *= 10) ++decimals_;
}

std::vector<double> ValueScale::marks() const
{
    std::vector<double> result;
    const auto count = std::lround((most_ - least_) / step_);
    for (long i = 0; i <= count; ++i) result.push_back(least_ + static_cast<double>(i) * step_);
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
