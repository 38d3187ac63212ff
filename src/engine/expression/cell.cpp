#include "engine/expression/cell.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "engine/expression/utf16.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

int64_t wrapped(int64_t value, ValueClass value_class)
{
    switch (value_class) {
        case ValueClass::Byte:
            return static_cast<int8_t>(value);
        case ValueClass::Short:
            return static_cast<int16_t>(value);
        case ValueClass::Character:
            return static_cast<uint16_t>(value);
        case ValueClass::Integer:
            return static_cast<int32_t>(value);
        default:
            return value;
    }
}

int64_t cut_to_integer(double value)
{
    constexpr double kLimit = 9223372036854775808.0;
    if (std::isnan(value)) return 0;
    if (value >= kLimit) return std::numeric_limits<int64_t>::max();
    if (value < -kLimit) return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);
}

/// A double that becomes an Integer stops at the ends of its range, as a cast does.
int64_t cut_to_class(double value, ValueClass value_class)
{
    const int64_t whole = cut_to_integer(value);
    if (value_class == ValueClass::Long) return whole;
    constexpr int64_t kLeast = std::numeric_limits<int32_t>::min();
    constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
    return wrapped(std::min(std::max(whole, kLeast), kMost), value_class);
}

Cell natural(const Value& value)
{
    switch (value.type()) {
        case Value::Type::Null:
            return {};
        case Value::Type::Boolean:
            return cell::boolean(*value.get_if<bool>());
        case Value::Type::Integer: {
            const int64_t whole = *value.get_if<int64_t>();
            const bool fits = whole == static_cast<int32_t>(whole);
            return cell::integer(whole, fits ? ValueClass::Integer : ValueClass::Long);
        }
        case Value::Type::Single:
            return cell::number(*value.get_if<float>(), ValueClass::Float);
        case Value::Type::Double:
            return cell::number(*value.get_if<double>());
        case Value::Type::Fixed:
            return cell::decimal(Decimal::from(*value.get_if<Fixed4>()));
        case Value::Type::Date:
            return cell::date(*value.get_if<DateTime>(), ValueClass::Timestamp);
        case Value::Type::Text:
            return cell::text(*value.get_if<std::string>());
    }
    return {};
}

Cell number_from_text(std::string_view text, ValueClass to)
{
    const auto decimal = Decimal::from_text(trimmed(text));
    if (is_integer(to)) {
        if (!decimal || decimal->scale() != 0) return {};
        const auto whole = decimal->to_integer();
        if (!whole || wrapped(*whole, to) != *whole) return {};
        return cell::integer(*whole, to);
    }
    if (to == ValueClass::Decimal) return cell::decimal(decimal);
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return {};
    return cell::number(value, to);
}

Cell to_number_class(const Cell& from, ValueClass to)
{
    if (const auto* text = from.get_if<std::string>()) {
        if (to != ValueClass::Character) return number_from_text(*text, to);
        return text->empty() ? Cell{} : cell::integer(utf16_unit(*text, 0).value_or(0), ValueClass::Character);
    }
    if (is_date(from.value_class) && to == ValueClass::Long)
        return cell::integer(from.get_if<DateTime>()->unix_milliseconds(), to);
    if (!is_number(from.value_class)) return {};
    if (to == ValueClass::Decimal) return cell::decimal(cell::to_decimal(from));
    if (!is_integer(to)) return cell::number(cell::to_double(from), to);
    if (const auto* number = from.get_if<double>()) return cell::integer(cut_to_class(*number, to), to);
    return cell::integer(cell::to_integer(from), to);
}

Cell to_boolean(const Cell& from)
{
    if (const auto* text = from.get_if<std::string>()) return cell::boolean(same_name(trimmed(*text), "true"));
    if (is_number(from.value_class)) return cell::boolean(cell::to_double(from) != 0);
    return {};
}

Cell to_date(const Cell& from, ValueClass to)
{
    std::optional<DateTime> date;
    if (const auto* held = from.get_if<DateTime>()) date = *held;
    if (const auto* text = from.get_if<std::string>()) date = DateTime::from_iso(trimmed(*text));
    if (from.value_class == ValueClass::Long) date = DateTime::from_unix_milliseconds(*from.get_if<int64_t>());
    if (!date) return {};
    return cell::date(to == ValueClass::SqlDate ? date->date_only() : *date, to);
}

void append_padded(std::string& out, int value, int width)
{
    const auto digits = std::to_string(value);
    out.append(static_cast<size_t>(std::max(0, width - static_cast<int>(digits.size()))), '0').append(digits);
}

void append_time(const DateTime::Parts& parts, std::string& out)
{
    append_padded(out, parts.hour, 2);
    append_padded(out += ':', parts.minute, 2);
    append_padded(out += ':', parts.second, 2);
}

/// The fixed written forms: "Sat Nov 21 01:44:13 GMT 2026", "2026-11-21 01:44:13.0", "2026-11-21", "01:44:13".
void append_date(const DateTime& date, ValueClass value_class, std::string& out)
{
    constexpr std::array kDays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto parts = date.parts();
    if (value_class == ValueClass::Time) return append_time(parts, out);
    if (value_class == ValueClass::SqlDate) {
        out += date.date_only().iso();
        return;
    }
    if (value_class == ValueClass::Timestamp) {
        out.append(date.date_only().iso()).append(" ");
        append_time(parts, out);
        out += ".0";
        return;
    }
    out.append(kDays[static_cast<size_t>(date.weekday())]).append(" ");
    out.append(kMonths[static_cast<size_t>(parts.month - 1)]).append(" ");
    append_padded(out, parts.day, 2);
    append_time(parts, out += ' ');
    append_padded(out += " GMT ", parts.year, 4);
}

int sign(std::strong_ordering order)
{
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

std::optional<int> compared_numbers(const Cell& left, const Cell& right)
{
    if (is_integer(left.value_class) && is_integer(right.value_class)) {
        return sign(*left.get_if<int64_t>() <=> *right.get_if<int64_t>());
    }
    if (left.get_if<double>() == nullptr && right.get_if<double>() == nullptr) {
        return sign(compare(*cell::to_decimal(left), *cell::to_decimal(right)));
    }
    const double a = cell::to_double(left);
    const double b = cell::to_double(right);
    if (std::isnan(a) || std::isnan(b)) return std::nullopt;
    return a < b ? -1 : a > b ? 1 : 0;
}

/// "[a, b]", "{key=value}"
void append_list(const std::vector<Cell>& parts, bool map, std::string& out)
{
    out += map ? '{' : '[';
    for (size_t at = 0; at < parts.size(); ++at) {
        if (at > 0) out += map && at % 2 == 1 ? "=" : ", ";
        cell::append_text(parts[at], out);
    }
    out += map ? '}' : ']';
}

}  // namespace

namespace cell {

Cell boolean(bool value)
{
    return {ValueClass::Boolean, value};
}

Cell integer(int64_t value, ValueClass value_class)
{
    return {value_class, wrapped(value, value_class)};
}

Cell number(double value, ValueClass value_class)
{
    if (value_class == ValueClass::Float) value = static_cast<double>(static_cast<float>(value));
    return {value_class, value};
}

Cell decimal(const std::optional<Decimal>& value)
{
    if (!value) return {};
    return {ValueClass::Decimal, *value};
}

Cell date(DateTime value, ValueClass value_class)
{
    return {value_class, value};
}

Cell text(std::string value)
{
    return {ValueClass::Text, std::move(value)};
}

Cell list(std::vector<Cell> parts, ValueClass value_class)
{
    return {value_class, std::make_shared<const std::vector<Cell>>(std::move(parts))};
}

Cell from(const Value& value, ValueClass declared)
{
    Cell cell = natural(value);
    if (declared == ValueClass::Object || cell.value_class == declared) return cell;
    return converted(std::move(cell), declared);
}

Value to_value(const Cell& cell)
{
    if (const auto* flag = cell.get_if<bool>()) return *flag;
    if (cell.value_class == ValueClass::Character) {
        std::string text;
        append_text(cell, text);
        return text;
    }
    if (const auto* whole = cell.get_if<int64_t>()) return *whole;
    if (const auto* number = cell.get_if<double>()) {
        if (!std::isfinite(*number)) return {};
        if (cell.value_class == ValueClass::Float) return static_cast<float>(*number);
        return *number;
    }
    if (const auto* decimal = cell.get_if<Decimal>()) return decimal->to_value();
    if (const auto* date = cell.get_if<DateTime>()) return *date;
    if (const auto* text = cell.get_if<std::string>()) return *text;
    return {};
}

Cell converted(Cell cell, ValueClass to)
{
    if (cell.value_class == to || cell.is_null() || to == ValueClass::Object) return cell;
    if (to == ValueClass::Text) {
        if (cell.get_if<std::shared_ptr<const Formatter>>() != nullptr) return {};
        std::string out;
        append_text(cell, out);
        return text(std::move(out));
    }
    if (is_number(to)) return to_number_class(cell, to);
    if (to == ValueClass::Boolean) return to_boolean(cell);
    if (is_date(to)) return to_date(cell, to);
    return {};
}

void append_text(const Cell& cell, std::string& out)
{
    if (const auto* text = cell.get_if<std::string>()) {
        out += *text;
    } else if (cell.value_class == ValueClass::Character) {
        const auto unit = static_cast<char16_t>(*cell.get_if<int64_t>());
        append_utf16(out, {&unit, 1});
    } else if (const auto* whole = cell.get_if<int64_t>()) {
        std::array<char, 24> digits{};
        out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), *whole).ptr);
    } else if (const auto* flag = cell.get_if<bool>()) {
        out += *flag ? "true" : "false";
    } else if (const auto* number = cell.get_if<double>()) {
        out += number_text(*number, cell.value_class == ValueClass::Float);
    } else if (const auto* decimal = cell.get_if<Decimal>()) {
        out += decimal->text();
    } else if (const auto* date = cell.get_if<DateTime>()) {
        append_date(*date, cell.value_class, out);
    } else if (const auto* list = cell.get_if<Cell::List>()) {
        append_list(**list, cell.value_class == ValueClass::Map, out);
    } else {
        out += "null";
    }
}

double to_double(const Cell& cell)
{
    if (const auto* number = cell.get_if<double>()) return *number;
    if (const auto* whole = cell.get_if<int64_t>()) return static_cast<double>(*whole);
    if (const auto* decimal = cell.get_if<Decimal>()) return decimal->to_double();
    return 0;
}

int64_t to_integer(const Cell& cell)
{
    if (const auto* whole = cell.get_if<int64_t>()) return *whole;
    if (const auto* decimal = cell.get_if<Decimal>()) return decimal->to_integer().value_or(0);
    return cut_to_integer(to_double(cell));
}

std::optional<Decimal> to_decimal(const Cell& cell)
{
    if (const auto* decimal = cell.get_if<Decimal>()) return *decimal;
    if (const auto* whole = cell.get_if<int64_t>()) return Decimal::from(*whole);
    if (const auto* number = cell.get_if<double>()) return Decimal::from(*number);
    return std::nullopt;
}

std::optional<int> compared(const Cell& left, const Cell& right)
{
    if (is_number(left.value_class) && is_number(right.value_class)) return compared_numbers(left, right);
    const auto* left_text = left.get_if<std::string>();
    const auto* right_text = right.get_if<std::string>();
    if (left_text != nullptr && right_text != nullptr) return left_text->compare(*right_text);
    if (is_text(left.value_class) && is_text(right.value_class)) {
        return compared(converted(left, ValueClass::Text), converted(right, ValueClass::Text));
    }
    if (is_date(left.value_class) && is_date(right.value_class)) {
        return sign(*left.get_if<DateTime>() <=> *right.get_if<DateTime>());
    }
    const auto* left_flag = left.get_if<bool>();
    const auto* right_flag = right.get_if<bool>();
    if (left_flag != nullptr && right_flag != nullptr) return int{*left_flag} - int{*right_flag};
    return std::nullopt;
}

bool equal(const Cell& left, const Cell& right)
{
    if (left.is_null() || right.is_null()) return left.is_null() && right.is_null();
    return compared(left, right) == 0;
}

}  // namespace cell

std::string number_text(double value, bool single)
{
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
    // the least numbers are written with two digits
    if (!single && std::abs(value) == std::numeric_limits<double>::denorm_min())
        return value < 0 ? "-4.9E-324" : "4.9E-324";
    if (single && std::abs(value) == static_cast<double>(std::numeric_limits<float>::denorm_min())) {
        return value < 0 ? "-1.4E-45" : "1.4E-45";
    }
    std::array<char, 64> buffer{};
    char* const begin = buffer.data();
    char* const end = begin + buffer.size();
    const double magnitude = std::abs(value);
    const bool plain = magnitude == 0 || (magnitude >= 1e-3 && magnitude < 1e7);
    const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
    char* const stop = single ? std::to_chars(begin, end, static_cast<float>(value), format).ptr
                              : std::to_chars(begin, end, value, format).ptr;
    std::string text(begin, stop);
    const auto exponent = text.find('e');
    std::string mantissa = text.substr(0, exponent);
    if (mantissa.find('.') == std::string::npos) mantissa += ".0";
    if (exponent == std::string::npos) return mantissa;
    int power = 0;
    const char* digits = text.data() + exponent + 1;
    std::from_chars(*digits == '+' ? digits + 1 : digits, text.data() + text.size(), power);
    return mantissa + "E" + std::to_string(power);
}

}  // namespace velora::engine
