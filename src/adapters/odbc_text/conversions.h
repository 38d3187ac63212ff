#pragma once

#include <string>
#include <string_view>

#include "values/value.h"

namespace velora::odbc {

/// A moment as drivers hand it over.
struct Moment {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// The moment as a value. All parts zero is a server's way to say that there is no date, and null; what no calendar
/// has stays as text.
Value moment_value(const Moment& moment);

/// A decimal number, written with a point, exactly: a whole number without decimals, fixed point up to four of them,
/// and a double as long as its plain text is the number. What is longer than that stays as its text.
Value decimal_value(std::string_view digits, int decimals);

/// An amount with its four decimals, every digit of it.
std::string amount_text(Fixed4 amount);

}  // namespace velora::odbc
