#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "values/date_time.h"
#include "values/number_text.h"

namespace velora {

/// How this machine's region writes numbers and dates.
class Region {
public:
    virtual ~Region() = default;
    [[nodiscard]] virtual const NumberMarks& marks() const = 0;
    [[nodiscard]] virtual std::string short_date(const DateTime& date) const = 0;
    /// A date as plain text: the short date, with the time of day behind it where there is one.
    [[nodiscard]] virtual std::string plain_date(const DateTime& date) const = 0;
    /// Reads a date as people here write it, in numbers or with the name of a month, or in ISO form.
    /// @param this_year  of a date that names none
    [[nodiscard]] virtual std::optional<DateTime> read_date(std::string_view text, int this_year) const = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual DateTime now() const = 0;
};

}  // namespace velora
