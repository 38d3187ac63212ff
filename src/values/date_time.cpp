#include "values/date_time.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace velora {

namespace {

constexpr int64_t kUnixDay = 25569;  // 1 January 1970
constexpr int64_t kSecondsOfDay = 86400;
constexpr std::chrono::sys_days kDayZero = std::chrono::year{1899} / 12 / 30;

/// Takes a run of one to `most` digits off the front of `text`.
std::optional<int> take_number(std::string_view& text, size_t most)
{
    int number = 0;
    const auto end = text.data() + std::min(most, text.size());
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || number < 0) return std::nullopt;
    text.remove_prefix(static_cast<size_t>(stop - text.data()));
    return number;
}

bool take(std::string_view& text, char expected)
{
    if (text.empty() || text.front() != expected) return false;
    text.remove_prefix(1);
    return true;
}

/// Reads "HH:MM[:SS[.fff]]" to the end of the text.
std::optional<std::array<int, 3>> read_time(std::string_view text)
{
    const auto hour = take_number(text, 2);
    if (!hour || !take(text, ':')) return std::nullopt;
    const auto minute = take_number(text, 2);
    if (!minute) return std::nullopt;
    std::optional<int> second = 0;
    if (take(text, ':')) {
        second = take_number(text, 2);
        if (!second) return std::nullopt;
        if (take(text, '.') && !take_number(text, 9)) return std::nullopt;
    }
    if (!text.empty()) return std::nullopt;
    return std::array{*hour, *minute, *second};
}

}  // namespace

std::optional<DateTime> DateTime::from_ymd(int year, int month, int day, int hour, int minute, int second)
{
    using namespace std::chrono;
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
    const year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                              std::chrono::day{static_cast<unsigned>(day)}};
    if (!date.ok()) return std::nullopt;
    const auto serial = (sys_days{date} - kDayZero).count();
    return DateTime{static_cast<int32_t>(serial), (hour * 60 + minute) * 60 + second};
}

std::optional<DateTime> DateTime::from_iso(std::string_view text)
{
    if (text.size() < 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
    const auto year = take_number(text, 4);
    if (!year || !take(text, '-')) return std::nullopt;
    const auto month = take_number(text, 2);
    if (!month || !take(text, '-')) return std::nullopt;
    const auto day = take_number(text, 2);
    if (!day) return std::nullopt;
    if (text.empty()) return from_ymd(*year, *month, *day);
    if (!take(text, 'T') && !take(text, ' ')) return std::nullopt;
    const auto time = read_time(text);
    if (!time) return std::nullopt;
    return from_ymd(*year, *month, *day, (*time)[0], (*time)[1], (*time)[2]);
}

DateTime::Parts DateTime::parts() const
{
    const std::chrono::year_month_day date{kDayZero + std::chrono::days{day_}};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            second_ / 3600,
            second_ / 60 % 60,
            second_ % 60};
}

std::string DateTime::iso() const
{
    const auto p = parts();
    std::array<char, 40> text{};
    const int length = second_ == 0 ? std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", p.year, p.month, p.day)
                                    : std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d", p.year,
                                                    p.month, p.day, p.hour, p.minute, p.second);
    return {text.data(), static_cast<size_t>(length)};
}

std::string DateTime::compact() const
{
    const auto p = parts();
    std::array<char, 40> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d%02d%02d", p.year, p.month, p.day);
    return {text.data(), static_cast<size_t>(length)};
}

int64_t DateTime::unix_milliseconds() const
{
    return ((day_ - kUnixDay) * kSecondsOfDay + second_) * 1000;
}

DateTime DateTime::from_unix_milliseconds(int64_t milliseconds)
{
    constexpr int64_t kFirst = -62'135'596'800'000, kLast = 253'402'300'799'000;  // the years 1 to 9999
    const int64_t held = std::clamp(milliseconds, kFirst, kLast);
    const int64_t seconds = held / 1000 - (held % 1000 < 0 ? 1 : 0);
    int64_t day = seconds / kSecondsOfDay;
    int64_t second = seconds % kSecondsOfDay;
    if (second < 0) {
        second += kSecondsOfDay;
        --day;
    }
    return {static_cast<int32_t>(day + kUnixDay), static_cast<int32_t>(second)};
}

}  // namespace velora
