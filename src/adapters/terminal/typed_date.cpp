#include "adapters/terminal/typed_date.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <charconv>

#include "values/characters.h"
#include "values/text.h"

namespace velora::terminal {

namespace {

constexpr std::string_view kFields = "yMd";
constexpr std::string_view kNarrowBlank = "\u202f";

bool is_mark(char c)
{
    return std::string_view("/-., ").find(c) != std::string_view::npos;
}

/// The number at the start of a text of digits and a closing mark, as of a clock.
std::optional<int> take_number(std::string_view& text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || !is_digit(text.front())) return std::nullopt;
    text.remove_prefix(static_cast<size_t>(end - text.data()));
    return value;
}

bool take(std::string_view& text, char expected)
{
    if (!text.starts_with(expected)) return false;
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
    int second = 0;
    if (take(text, ':')) {
        const auto read = take_number(text);
        if (!read) return std::nullopt;
        second = *read;
        if (take(text, '.')) text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
    }
    int hours = *hour;
    const auto half = trimmed(text);
    if (!half.empty()) {
        const bool is_afternoon = same_name(half, "PM");
        if ((!is_afternoon && !same_name(half, "AM")) || hours < 1 || hours > 12) return std::nullopt;
        hours = hours % 12 + (is_afternoon ? 12 : 0);
    }
    if (hours > 23 || *minute > 59 || second > 59) return std::nullopt;
    return (hours * 60 + *minute) * 60 + second;
}

std::string field_order(std::string_view pattern)
{
    std::string order;
    bool is_literal = false;
    for (const char c : pattern) {
        if (c == '\'') is_literal = !is_literal;
        const bool is_field = !is_literal && kFields.find(c) != std::string_view::npos;
        if (is_field && order.find(c) == std::string::npos) order += c;
    }
    return order.size() == kFields.size() ? order : "Mdy";
}

}  // namespace

std::string folded(std::string_view text)
{
    auto folded = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
    std::string result;
    folded.foldCase().toUTF8String(result);
    return result;
}

TypedDate::TypedDate(std::string_view pattern, std::vector<MonthName> months)
    : order_(field_order(pattern)), pattern_(folded(pattern)), months_(std::move(months))
{
}

/// Two digits are of this century below 30, of the last one from there on.
int TypedDate::Number::year() const
{
    if (digits > 2) return value;
    return value + (value < 30 ? 2000 : 1900);
}

std::optional<DateTime> TypedDate::read(std::string_view text, int this_year) const
{
    const std::string plain = replaced(text, kNarrowBlank, " ");
    std::string_view date_text = trimmed(plain);
    std::optional<int> time = 0;
    if (const auto colon = date_text.find(':'); colon != std::string_view::npos) {
        const auto blank = date_text.find_last_of(' ', colon);
        if (blank == std::string_view::npos) return std::nullopt;
        time = read_time(date_text.substr(blank + 1));
        date_text = date_text.substr(0, blank);
    }
    const auto parts = split(date_text);
    if (!time || !parts) return std::nullopt;
    const auto day = parts->month != 0 ? of_named_month(*parts, this_year) : of_numbers(*parts, this_year);
    if (!day) return std::nullopt;
    return DateTime(day->serial_day(), *time);
}

std::optional<TypedDate::Parts> TypedDate::split(std::string_view text) const
{
    Parts parts;
    for (size_t at = 0; at < text.size();) {
        const size_t start = at;
        if (is_mark(text[at])) {
            if (text[at] != '.') parts.only_points = false;
            ++at;
        } else if (is_digit(text[at])) {
            while (at < text.size() && is_digit(text[at])) ++at;
            Number number{0, at - start};
            if (number.digits > 4) return std::nullopt;
            std::from_chars(text.data() + start, text.data() + at, number.value);
            parts.numbers.push_back(number);
        } else {
            while (at < text.size() && !is_mark(text[at]) && !is_digit(text[at])) ++at;
            if (!take_word(folded(text.substr(start, at - start)), parts)) return std::nullopt;
        }
    }
    return parts;
}

/// A month by its name, or a word of the region's own short date.
bool TypedDate::take_word(const std::string& word, Parts& parts) const
{
    const auto named = std::ranges::find(months_, word, &MonthName::name);
    if (named == months_.end()) return pattern_.find("'" + word) != std::string::npos;
    if (parts.month != 0) return false;
    parts.month = named->month;
    return true;
}

std::optional<DateTime> TypedDate::of_numbers(const Parts& parts, int this_year) const
{
    const auto& numbers = parts.numbers;
    if (numbers.size() == 3) {
        const std::string_view order = numbers[0].digits > 2 ? kFields : std::string_view(order_);
        const int year = numbers[order.find('y')].year();
        const int month = numbers[order.find('M')].value;
        const int day = numbers[order.find('d')].value;
        const auto date = DateTime::from_ymd(year, month, day);
        return date ? date : DateTime::from_ymd(year, day, month);
    }
    // "3.13" is rather a number where points do not part dates.
    if (numbers.size() != 2 || (parts.only_points && pattern_.find('.') == std::string::npos)) return std::nullopt;
    if (numbers[1].is_year()) return DateTime::from_ymd(numbers[1].year(), numbers[0].value, 1);
    const bool day_first = order_.find('d') < order_.find('M');
    const int month = numbers[day_first ? 1 : 0].value;
    const int day = numbers[day_first ? 0 : 1].value;
    const auto date = DateTime::from_ymd(this_year, month, day);
    return date ? date : DateTime::from_ymd(this_year, day, month);
}

std::optional<DateTime> TypedDate::of_named_month(const Parts& parts, int this_year)
{
    const auto& numbers = parts.numbers;
    if (numbers.size() == 1 && numbers[0].is_year()) return DateTime::from_ymd(numbers[0].year(), parts.month, 1);
    if (numbers.size() == 1) return DateTime::from_ymd(this_year, parts.month, numbers[0].value);
    if (numbers.size() != 2) return std::nullopt;
    const bool year_first = numbers[0].is_year();
    return DateTime::from_ymd(numbers[year_first ? 0 : 1].year(), parts.month, numbers[year_first ? 1 : 0].value);
}

}  // namespace velora::terminal
