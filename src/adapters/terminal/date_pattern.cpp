#include "adapters/terminal/date_pattern.h"

#include <fmt/format.h>

#include <charconv>

#include "values/text.h"

namespace velora::terminal {

namespace {

constexpr std::string_view kFields = "yMd";
constexpr std::string_view kMarks = "/-. ";

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

struct Number {
    int value = 0;
    size_t digits = 0;
};

/// Takes the digits at the start of a text.
std::optional<Number> take_number(std::string_view& text)
{
    Number number;
    while (number.digits < text.size() && is_digit(text[number.digits])) ++number.digits;
    if (number.digits == 0 || number.digits > 4) return std::nullopt;
    std::from_chars(text.data(), text.data() + number.digits, number.value);
    text.remove_prefix(number.digits);
    return number;
}

bool take_marks(std::string_view& text)
{
    const auto end = std::min(text.find_first_not_of(kMarks), text.size());
    text.remove_prefix(end);
    return end > 0;
}

bool take(std::string_view& text, char expected)
{
    if (text.empty() || text.front() != expected) return false;
    text.remove_prefix(1);
    return true;
}

/// Seconds of "H:MM[:SS[.f]]" with "AM" or "PM" behind it; the whole text.
std::optional<int> read_time(std::string_view text)
{
    const auto hour = take_number(text);
    if (!hour || !take(text, ':')) return std::nullopt;
    const auto minute = take_number(text);
    if (!minute) return std::nullopt;
    Number second;
    if (take(text, ':')) {
        const auto read = take_number(text);
        if (!read) return std::nullopt;
        second = *read;
        if (take(text, '.')) text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
    }
    int hours = hour->value;
    const auto half = trimmed(text);
    if (!half.empty()) {
        const bool is_afternoon = same_name(half, "PM");
        if ((!is_afternoon && !same_name(half, "AM")) || hours < 1 || hours > 12) return std::nullopt;
        hours = hours % 12 + (is_afternoon ? 12 : 0);
    }
    if (hours > 23 || minute->value > 59 || second.value > 59) return std::nullopt;
    return (hours * 60 + minute->value) * 60 + second.value;
}

int full_year(const Number& year)
{
    if (year.digits > 2) return year.value;
    return year.value + (year.value < 30 ? 2000 : 1900);
}

}  // namespace

DatePattern::DatePattern(std::string pattern) : pattern_(std::move(pattern))
{
    bool is_literal = false;
    for (const char c : pattern_) {
        if (c == '\'') is_literal = !is_literal;
        const bool is_field = !is_literal && kFields.find(c) != std::string_view::npos;
        if (is_field && order_.find(c) == std::string::npos) order_ += c;
    }
    if (order_.size() != kFields.size()) order_ = "Mdy";
}

std::string DatePattern::write(const DateTime& date) const
{
    const auto parts = date.parts();
    std::string text;
    bool is_literal = false;
    for (size_t at = 0; at < pattern_.size(); ++at) {
        const char c = pattern_[at];
        if (c == '\'') {
            is_literal = !is_literal;
            continue;
        }
        if (is_literal || kFields.find(c) == std::string_view::npos) {
            text += c;
            continue;
        }
        const size_t end = std::min(pattern_.find_first_not_of(c, at), pattern_.size());
        const size_t width = c == 'y' ? 4 : end - at;
        const int value = c == 'y' ? parts.year : c == 'M' ? parts.month : parts.day;
        text += fmt::format("{:0{}}", value, width);
        at = end - 1;
    }
    return text;
}

std::optional<DateTime> DatePattern::read(std::string_view text) const
{
    text = trimmed(text);
    std::array<Number, 3> numbers;
    for (size_t at = 0; at < numbers.size(); ++at) {
        if (at > 0 && !take_marks(text)) return std::nullopt;
        const auto number = take_number(text);
        if (!number) return std::nullopt;
        numbers[at] = *number;
    }
    take(text, '.');
    const bool has_time = take(text, ' ');
    const auto time = has_time ? read_time(trimmed(text)) : std::optional(0);
    if (!time || (!has_time && !text.empty())) return std::nullopt;

    const std::string_view order = numbers[0].digits > 2 ? "yMd" : std::string_view(order_);
    const auto& year = numbers[order.find('y')];
    const int month = numbers[order.find('M')].value;
    const int day = numbers[order.find('d')].value;
    auto date = DateTime::from_ymd(full_year(year), month, day);
    if (!date) date = DateTime::from_ymd(full_year(year), day, month);
    if (!date) return std::nullopt;
    return DateTime(date->serial_day(), *time);
}

}  // namespace velora::terminal
