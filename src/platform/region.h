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
    /// Reads a date as people here write it, or in ISO form.
    [[nodiscard]] virtual std::optional<DateTime> read_date(std::string_view text) const = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual DateTime now() const = 0;
};

}  // namespace velora
