#include "values/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "values/characters.h"
#include "values/fault.h"

namespace velora {

namespace {

/// Decimal digits of a value: 0.d1d2d3… × 10^point, without leading or trailing zeros; zero has no digits.
struct Decimal {
    bool negative = false;
    std::string digits;
    int point = 0;
};

constexpr int kSignificantDigits = 15;

Decimal to_decimal(double value)
{
    if (!std::isfinite(value)) throw fault::overflow();
    Decimal result;
    if (value == 0) return result;
    std::array<char, 40> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::scientific, kSignificantDigits - 1);
    const char* at = text.data();
    if (*at == '-') {
        result.negative = true;
        ++at;
    }
    for (; *at != 'e'; ++at) {
        if (*at != '.') result.digits.push_back(*at);
    }
    const char* exponent = at + 1;
    if (*exponent == '+') ++exponent;
    std::from_chars(exponent, end, result.point);
    ++result.point;
    result.digits.erase(result.digits.find_last_not_of('0') + 1);
    return result;
}

/// Rounds half away from zero to `decimals` places behind the point.
void round_to(Decimal& number, int decimals)
{
    const int keep = number.point + decimals;
    if (keep >= static_cast<int>(number.digits.size())) return;
    if (keep < 0) {
        number = Decimal{};
        return;
    }
    const bool up = number.digits[static_cast<size_t>(keep)] >= '5';
    number.digits.resize(static_cast<size_t>(keep));
    if (up) {
        auto at = number.digits.size();
        while (at > 0 && number.digits[at - 1] == '9') --at;
        number.digits.resize(at);
        if (at > 0) {
            ++number.digits[at - 1];
        } else {
            number.digits = "1";
            ++number.point;
        }
    }
    number.digits.erase(number.digits.find_last_not_of('0') + 1);
    if (number.digits.empty()) number = Decimal{};
}

std::string whole_digits(const Decimal& number)
{
    if (number.point <= 0) return "0";
    const auto places = static_cast<size_t>(number.point);
    std::string whole = number.digits.substr(0, places);
    whole.resize(places, '0');
    return whole;
}

std::string fraction_digits(const Decimal& number)
{
    std::string fraction;
    if (number.digits.empty()) return fraction;
    if (number.point < 0) fraction.assign(static_cast<size_t>(-number.point), '0');
    const auto from = static_cast<size_t>(std::max(number.point, 0));
    if (from < number.digits.size()) fraction += number.digits.substr(from);
    return fraction;
}

double parse(const std::string& text)
{
    double value = 0;
    const char* from = text.c_str();
    if (*from == '+') ++from;
    std::from_chars(from, text.c_str() + text.size(), value);
    return value;
}

/// Whether a character goes on with the number of which `so_far` is collected: a digit, its one point, a sign in front.
bool goes_on(char c, std::string_view so_far)
{
    if (c == '.') return so_far.find('.') == std::string_view::npos;
    if (c == '-' || c == '+') return so_far.empty();
    return is_digit(c);
}

/// Adds the exponent that stands at `at`, if one does; answers where the text goes on.
size_t read_exponent(std::string_view text, size_t at, std::string& out)
{
    const std::string_view mark = text.substr(at, 2);
    if (mark.empty() || std::string_view("eEdD").find(mark.front()) == std::string_view::npos) return at;
    const bool has_sign = mark.size() == 2 && (mark.back() == '-' || mark.back() == '+');
    const size_t first = at + (has_sign ? 2 : 1);
    const size_t end = std::min(text.find_first_not_of("0123456789", first), text.size());
    if (end == first) return at;
    out += has_sign && mark.back() == '-' ? "e-" : "e";
    out += text.substr(first, end - first);
    return end;
}

/// Collects a number from the front of `text` into `out`, without what `skip` passes over; answers how much of the text
/// it took.
template <class Skip>
size_t scan_number(std::string_view text, std::string& out, Skip skip)
{
    size_t at = 0;
    for (; at < text.size(); ++at) {
        if (goes_on(text[at], out)) {
            out.push_back(text[at]);
        } else if (!skip(at)) {
            break;
        }
    }
    if (std::ranges::any_of(out, is_digit)) return read_exponent(text, at, out);
    out.clear();
    return 0;
}

}  // namespace

std::string plain_text(double value)
{
    if (value == std::trunc(value) && std::abs(value) < 1e15) {
        std::array<char, 24> text{};
        const auto end = std::to_chars(text.data(), text.data() + text.size(), static_cast<int64_t>(value)).ptr;
        return {text.data(), end};
    }
    const Decimal number = to_decimal(value);
    std::string text = number.negative ? "-" : "";
    text += whole_digits(number);
    if (const auto fraction = fraction_digits(number); !fraction.empty()) text.append(".").append(fraction);
    return text;
}

std::string format_number(double value, int decimals, const NumberMarks& marks)
{
    Decimal number = to_decimal(value);
    round_to(number, decimals);
    const std::string whole = whole_digits(number);
    std::string text = number.negative ? "-" : "";
    for (size_t at = 0; at < whole.size(); ++at) {
        if (at > 0 && (whole.size() - at) % 3 == 0) text += marks.thousands;
        text.push_back(whole[at]);
    }
    if (decimals > 0) {
        std::string fraction = fraction_digits(number);
        fraction.resize(static_cast<size_t>(decimals), '0');
        text += marks.decimal + fraction;
    }
    return text;
}

double round_as_text(double value, int decimals)
{
    if (value == std::trunc(value) && std::abs(value) < 1e15) return value == 0 ? 0 : value;
    Decimal number = to_decimal(value);
    round_to(number, decimals);
    if (number.digits.empty()) return 0;
    const std::string text = (number.negative ? "-." : ".") + number.digits + "e" + std::to_string(number.point);
    return parse(text);
}

std::optional<double> read_number(std::string_view text)
{
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    if (text.empty()) return std::nullopt;
    std::string digits;
    const auto is_group_mark = [&](size_t at) {
        const bool in_whole = !digits.empty() && is_digit(digits.back()) && digits.find('.') == std::string::npos;
        return text[at] == ',' && in_whole && at + 1 < text.size() && is_digit(text[at + 1]);
    };
    const auto taken = scan_number(text, digits, is_group_mark);
    if (digits.empty() || taken != text.size()) return std::nullopt;
    return parse(digits);
}

double leading_number(std::string_view text)
{
    std::string digits;
    scan_number(text, digits, [&](size_t at) { return is_blank(text[at]); });
    return digits.empty() ? 0 : parse(digits);
}

}  // namespace velora
