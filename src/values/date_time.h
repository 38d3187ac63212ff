#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velora {

/// A calendar day with a time of day to the second. Day 0 is 30 December 1899, day 1 is 31 December 1899.
class DateTime {
public:
    constexpr DateTime() = default;
    constexpr DateTime(int32_t serial_day, int32_t second_of_day) : day_(serial_day), second_(second_of_day) {}

    /// None when there is no such day.
    static std::optional<DateTime> from_ymd(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
    /// Reads "YYYY-MM-DD", alone or with "T" or a blank and "HH:MM[:SS[.fff]]".
    static std::optional<DateTime> from_iso(std::string_view text);

    [[nodiscard]] constexpr int32_t serial_day() const { return day_; }
    [[nodiscard]] constexpr int32_t second_of_day() const { return second_; }
    [[nodiscard]] constexpr int weekday() const { return ((day_ + 6) % 7 + 7) % 7; }  ///< 0 is Sunday, as is day 1
    [[nodiscard]] DateTime date_only() const { return {day_, 0}; }

    struct Parts {
        int year, month, day, hour, minute, second;
    };
    [[nodiscard]] Parts parts() const;

    [[nodiscard]] std::string iso() const;      ///< "YYYY-MM-DD", with "THH:MM:SS" behind it when it has a time
    [[nodiscard]] std::string compact() const;  ///< "YYYYMMDD"

    /// Milliseconds since 1970, the wall time taken as UTC; read back they lose the part of a second.
    [[nodiscard]] int64_t unix_milliseconds() const;
    static DateTime from_unix_milliseconds(int64_t milliseconds);

    auto operator<=>(const DateTime&) const = default;

private:
    int32_t day_ = 0;
    int32_t second_ = 0;
};

}  // namespace velora
