#pragma once

#include <string>

#include "values/date_time.h"

namespace velora::terminal {

/// A short date pattern of the Unicode locale data: runs of y, M and d, literal text, text between single quotes.
class DatePattern {
public:
    explicit DatePattern(std::string pattern);

    /// The day with its year in full, whatever the pattern says of the year.
    [[nodiscard]] std::string write(const DateTime& date) const;

private:
    std::string pattern_;
};

}  // namespace velora::terminal
