#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "values/date_time.h"

namespace velora::terminal {

/// Reads dates as people type them: two or three numbers in the order of the region, or a month by its name with a
/// day, a year or both, and a time of day behind that.
class TypedDate {
public:
    struct MonthName {
        std::string name;  ///< folded, without a closing point
        int month;
    };

    /// @param pattern  the region's short date: its fields give the order, its words are passed over
    TypedDate(std::string_view pattern, std::vector<MonthName> months);

    [[nodiscard]] std::optional<DateTime> read(std::string_view text, int this_year) const;

private:
    struct Number {
        int value = 0;
        size_t digits = 0;

        [[nodiscard]] bool is_year() const { return digits > 2 || value > 31; }
        [[nodiscard]] int year() const;
    };
    struct Parts {
        std::vector<Number> numbers;
        int month = 0;  ///< by name
        bool only_points = true;
    };

    [[nodiscard]] std::optional<Parts> split(std::string_view text) const;
    [[nodiscard]] bool take_word(const std::string& word, Parts& parts) const;
    [[nodiscard]] std::optional<DateTime> of_numbers(const Parts& parts, int this_year) const;
    static std::optional<DateTime> of_named_month(const Parts& parts, int this_year);

    std::string order_;  // of "y", "M" and "d"
    std::string pattern_;
    std::vector<MonthName> months_;
};

/// The text in the one form that stands for upper and lower case.
std::string folded(std::string_view text);

}  // namespace velora::terminal
