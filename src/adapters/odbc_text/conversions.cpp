#include "adapters/odbc_text/conversions.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>

#include "values/text.h"

namespace velora::odbc {

namespace {

constexpr int kFixedDecimals = 4;
constexpr size_t kDigitsOfDouble = 15;

std::optional<int64_t> whole(std::string_view digits)
{
    if (digits.starts_with('+')) digits.remove_prefix(1);
    int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool is_read = error == std::errc() && end == digits.data() + digits.size();
    return is_read ? std::optional(number) : std::nullopt;
}

/// The number times ten thousand; none for what is no decimal number of at most four places or does not fit.
std::optional<int64_t> ten_thousandths(std::string_view digits)
{
    const size_t point = digits.find('.');
    const auto fraction = point == std::string_view::npos ? std::string_view() : digits.substr(point + 1);
    if (fraction.size() > kFixedDecimals) return std::nullopt;
    std::string units(digits.substr(0, point));
    units.append(fraction).append(kFixedDecimals - fraction.size(), '0');
    return whole(units);
}

size_t significant_digits(std::string_view digits)
{
    size_t count = 0;
    for (const char c : digits) {
        if (c >= '1' && c <= '9') ++count;
        if (c == '0' && count > 0) ++count;
    }
    return count;
}

}  // namespace

Value moment_value(const Moment& moment)
{
    const auto [year, month, day, hour, minute, second] = moment;
    if (year == 0 && month == 0 && day == 0) return {};
    if (const auto date = DateTime::from_ymd(year, month, day, hour, minute, second)) return *date;
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", year, month, day, hour, minute, second);
    return text;
}

Value decimal_value(std::string_view written, int decimals)
{
    const auto digits = trimmed(written);
    if (decimals == 0) {
        if (const auto number = whole(digits)) return *number;
    } else if (decimals <= kFixedDecimals) {
        if (const auto units = ten_thousandths(digits)) return Fixed4::from_units(*units);
    }
    double number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool is_number = error == std::errc() && end == digits.data() + digits.size();
    if (is_number && significant_digits(digits) <= kDigitsOfDouble) return number;
    return digits;
}

std::string amount_text(Fixed4 amount)
{
    const int64_t units = amount.units();
    std::string digits = std::to_string(units);
    const bool is_negative = units < 0;
    if (is_negative) digits.erase(0, 1);
    if (digits.size() <= kFixedDecimals) digits.insert(0, kFixedDecimals + 1 - digits.size(), '0');
    digits.insert(digits.size() - kFixedDecimals, ".");
    return is_negative ? "-" + digits : digits;
}

}  // namespace velora::odbc
