#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velora {

/// The marks a formatted number carries.
struct NumberMarks {
    std::string thousands = ",";
    std::string decimal = ".";
};

/// The value with up to 15 significant digits, a point as decimal mark, no exponent and no trailing zeros.
/// A single is widened by the call. @throws Fault 6 for what is no number
std::string plain_text(double value);

/// Rounds the plain text of `value` half away from zero to `decimals` places and groups it in thousands:
/// the mask "#,###,##0.00" for two. No minus sign stands before a zero.
std::string format_number(double value, int decimals, const NumberMarks& marks = {});

/// What reading the formatted number back gives: `value` rounded half away from zero on its plain text.
double round_as_text(double value, int decimals);

/// Reads a whole text as a number: blanks around it, a sign, digits, a point, an exponent; thousands commas between
/// digits are passed over.
std::optional<double> read_number(std::string_view text);

/// The number at the start of a text, 0 when there is none; blanks are passed over and what follows is ignored.
double leading_number(std::string_view text);

}  // namespace velora
