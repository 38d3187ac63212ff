#include "engine/chart/time_scale.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "values/date_time.h"

namespace velora::engine {
namespace {

constexpr double kSecond = 1000, kMinute = 60 * kSecond, kHour = 60 * kMinute, kDay = 24 * kHour;
constexpr double kMonth = 30.4 * kDay;  ///< about
constexpr double kMonday = 4 * kDay;    ///< the first one of 1970, from which weeks are counted
constexpr double kLongAgo = -62'135'596'800'000.0, kFarOff = 253'402'214'400'000.0;  ///< years 1 to 9999

struct Step {
    double length;
    int months;  ///< 0: of a fixed length
    std::string_view pattern;
};

// clang-format off
constexpr auto kSteps = std::to_array<Step>({
    {kSecond, 0, "HH:mm:ss"},  {5 * kSecond, 0, "HH:mm:ss"}, {15 * kSecond, 0, "HH:mm:ss"}, {30 * kSecond, 0, "HH:mm:ss"},
    {kMinute, 0, "HH:mm"},     {5 * kMinute, 0, "HH:mm"},    {15 * kMinute, 0, "HH:mm"},    {30 * kMinute, 0, "HH:mm"},
    {kHour, 0, "HH:mm"},       {3 * kHour, 0, "d MMM HH:mm"}, {6 * kHour, 0, "d MMM HH:mm"}, {12 * kHour, 0, "d MMM HH:mm"},
    {kDay, 0, "d MMM"},        {2 * kDay, 0, "d MMM"},       {7 * kDay, 0, "d MMM"},        {14 * kDay, 0, "d MMM"},
    {kMonth, 1, "MMM yyyy"},   {3 * kMonth, 3, "MMM yyyy"},  {6 * kMonth, 6, "MMM yyyy"},
    {12 * kMonth, 12, "yyyy"}, {24 * kMonth, 24, "yyyy"},    {60 * kMonth, 60, "yyyy"},     {120 * kMonth, 120, "yyyy"},
    {300 * kMonth, 300, "yyyy"}, {1200 * kMonth, 1200, "yyyy"}, {6000 * kMonth, 6000, "yyyy"}, {24000 * kMonth, 24000, "yyyy"},
});
// clang-format on

std::vector<double> even_marks(double least, double most, double length)
{
    const double origin = length > kDay ? kMonday : 0;
    std::vector<double> marks;
    for (double at = origin + std::ceil((least - origin) / length) * length; at <= most; at += length) {
        marks.push_back(at);
    }
    return marks;
}

std::vector<double> calendar_marks(double least, double most, int months)
{
    const auto first = DateTime::from_unix_milliseconds(static_cast<int64_t>(least)).parts();
    int month = (first.year * 12 + first.month - 1) / months * months;
    std::vector<double> marks;
    for (;; month += months) {
        const auto day = DateTime::from_ymd(month / 12, month % 12 + 1, 1);
        if (!day) {
            if (month / 12 > first.year) return marks;
            continue;  // before the first year
        }
        const auto at = static_cast<double>(day->unix_milliseconds());
        if (at > most) return marks;
        if (at >= least) marks.push_back(at);
    }
}

}  // namespace

TimeScale::TimeScale(double least, double most, int marks)
    : least_(std::clamp(least, kLongAgo, kFarOff)), most_(std::clamp(most, least_, kFarOff))
{
    if (most_ - least_ < kSecond) most_ = least_ + kSecond;
    const double wished = (most_ - least_) / std::max(marks, 1);
    const auto fits = [&](const Step& step) { return step.length >= wished; };
    const auto found = std::ranges::find_if(kSteps, fits);
    const Step& step = found == kSteps.end() ? kSteps.back() : *found;
    marks_ = step.months > 0 ? calendar_marks(least_, most_, step.months) : even_marks(least_, most_, step.length);
    pattern_ = step.pattern;
}

}  // namespace velora::engine
