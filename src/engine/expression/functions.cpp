#include "engine/expression/functions.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numbers>

namespace velora::engine {

namespace {

std::array<std::span<const Function>, 5> families()
{
    return {text_functions(), number_functions(), date_functions(), format_functions(), list_functions()};
}

bool accepts(char letter, ValueClass given)
{
    if (given == ValueClass::Object || given == ValueClass::Null) return true;
    switch (letter) {
        case 't':
            return given == ValueClass::Text || given == ValueClass::Character;
        case 'i':
            return is_integer(given);
        case 'n':
        case 'f':
        case 'm':
            return is_number(given);
        case 'd':
            return is_date(given);
        case 'b':
            return given == ValueClass::Boolean;
        case 'F':
            return false;
        case 'L':
            return given == ValueClass::List;
        case 'M':
            return given == ValueClass::Map;
        default:
            return true;
    }
}

bool accepts(std::string_view takes, std::span<const ValueClass> given)
{
    const bool open = takes.ends_with('*');
    if (open) takes.remove_suffix(1);
    if (open ? given.size() < takes.size() : given.size() != takes.size()) return false;
    return std::ranges::equal(takes, given.first(takes.size()),
                              [](char letter, ValueClass c) { return accepts(letter, c); });
}

/// Makes one argument fit its letter; false when it cannot be.
bool prepare(char letter, Cell& argument)
{
    if (letter == 'o' || letter == '*') return true;
    if (argument.is_null()) return false;
    const bool formatter = argument.get_if<std::shared_ptr<const Formatter>>() != nullptr;
    if (letter == 'F') return formatter;
    if (formatter || !accepts(letter, argument.value_class)) return false;
    if (letter == 't') argument = cell::converted(std::move(argument), ValueClass::Text);
    if (letter == 'f') argument = cell::converted(std::move(argument), ValueClass::Double);
    if (letter == 'm') argument = cell::converted(std::move(argument), ValueClass::Decimal);
    return !argument.is_null();
}

struct Constant {
    std::string_view owner;
    std::string_view name;
    Cell (*value)();
};

template <int64_t value, ValueClass value_class = ValueClass::Integer>
Cell whole()
{
    return cell::integer(value, value_class);
}

// clang-format off
constexpr auto kConstants = std::to_array<Constant>({
    {"Boolean", "TRUE",  [] { return cell::boolean(true); }},
    {"Boolean", "FALSE", [] { return cell::boolean(false); }},
    {"Math", "PI", [] { return cell::number(std::numbers::pi); }},
    {"Math", "E",  [] { return cell::number(std::numbers::e); }},
    {"Integer", "MAX_VALUE", whole<std::numeric_limits<int32_t>::max()>},
    {"Integer", "MIN_VALUE", whole<std::numeric_limits<int32_t>::min()>},
    {"Long", "MAX_VALUE", whole<std::numeric_limits<int64_t>::max(), ValueClass::Long>},
    {"Long", "MIN_VALUE", whole<std::numeric_limits<int64_t>::min(), ValueClass::Long>},
    {"Double", "MAX_VALUE", [] { return cell::number(std::numeric_limits<double>::max()); }},
    {"Double", "MIN_VALUE", [] { return cell::number(std::numeric_limits<double>::denorm_min()); }},
    {"Double", "NaN", [] { return cell::number(std::numeric_limits<double>::quiet_NaN()); }},
    {"Double", "POSITIVE_INFINITY", [] { return cell::number(std::numeric_limits<double>::infinity()); }},
    {"Double", "NEGATIVE_INFINITY", [] { return cell::number(-std::numeric_limits<double>::infinity()); }},
    {"Float", "MAX_VALUE", [] { return cell::number(std::numeric_limits<float>::max(), ValueClass::Float); }},
    {"Float", "MIN_VALUE", [] { return cell::number(std::numeric_limits<float>::denorm_min(), ValueClass::Float); }},
    {"Short", "MAX_VALUE", whole<std::numeric_limits<int16_t>::max(), ValueClass::Short>},
    {"Short", "MIN_VALUE", whole<std::numeric_limits<int16_t>::min(), ValueClass::Short>},
    {"Byte", "MAX_VALUE", whole<std::numeric_limits<int8_t>::max(), ValueClass::Byte>},
    {"Byte", "MIN_VALUE", whole<std::numeric_limits<int8_t>::min(), ValueClass::Byte>},
    {"BigDecimal", "ZERO", [] { return cell::decimal(Decimal::from(int64_t{0})); }},
    {"BigDecimal", "ONE",  [] { return cell::decimal(Decimal::from(int64_t{1})); }},
    {"BigDecimal", "TEN",  [] { return cell::decimal(Decimal::from(int64_t{10})); }},
    {"BigDecimal", "ROUND_UP",        whole<0>},
    {"BigDecimal", "ROUND_DOWN",      whole<1>},
    {"BigDecimal", "ROUND_CEILING",   whole<2>},
    {"BigDecimal", "ROUND_FLOOR",     whole<3>},
    {"BigDecimal", "ROUND_HALF_UP",   whole<4>},
    {"BigDecimal", "ROUND_HALF_DOWN", whole<5>},
    {"BigDecimal", "ROUND_HALF_EVEN", whole<6>},
    {"RoundingMode", "UP",        whole<0>},
    {"RoundingMode", "DOWN",      whole<1>},
    {"RoundingMode", "CEILING",   whole<2>},
    {"RoundingMode", "FLOOR",     whole<3>},
    {"RoundingMode", "HALF_UP",   whole<4>},
    {"RoundingMode", "HALF_DOWN", whole<5>},
    {"RoundingMode", "HALF_EVEN", whole<6>},
    {"DateFormat", "FULL",    whole<0>},
    {"DateFormat", "LONG",    whole<1>},
    {"DateFormat", "MEDIUM",  whole<2>},
    {"DateFormat", "DEFAULT", whole<2>},
    {"DateFormat", "SHORT",   whole<3>},
    {"Locale", "ENGLISH", [] { return cell::text("en"); }},
    {"Locale", "US",      [] { return cell::text("en_US"); }},
    {"Locale", "UK",      [] { return cell::text("en_GB"); }},
    {"Locale", "CANADA",  [] { return cell::text("en_CA"); }},
    {"Locale", "GERMAN",  [] { return cell::text("de"); }},
    {"Locale", "GERMANY", [] { return cell::text("de_DE"); }},
    {"Locale", "FRENCH",  [] { return cell::text("fr"); }},
    {"Locale", "FRANCE",  [] { return cell::text("fr_FR"); }},
    {"Locale", "ITALY",   [] { return cell::text("it_IT"); }},
    {"Locale", "ITALIAN", [] { return cell::text("it"); }},
    {"Locale", "CANADA_FRENCH", [] { return cell::text("fr_CA"); }},
    {"Locale", "JAPAN",   [] { return cell::text("ja_JP"); }},
    {"Locale", "CHINA",   [] { return cell::text("zh_CN"); }},
    {"Locale", "KOREA",   [] { return cell::text("ko_KR"); }},
    {"Locale", "ROOT",    [] { return cell::text("root"); }},
});
// clang-format on

}  // namespace

std::optional<Cell> class_constant(std::string_view owner, std::string_view name)
{
    const auto found = std::ranges::find_if(
        kConstants, [&](const Constant& constant) { return constant.owner == owner && constant.name == name; });
    if (found == kConstants.end()) return std::nullopt;
    return found->value();
}

bool has_function(std::string_view owner, std::string_view name)
{
    return std::ranges::any_of(families(), [&](std::span<const Function> family) {
        return std::ranges::any_of(family, [&](const Function& f) { return f.owner == owner && f.name == name; });
    });
}

const Function* find_function(std::string_view owner, std::string_view name, std::span<const ValueClass> arguments)
{
    for (const auto family : families()) {
        for (const Function& function : family) {
            if (function.owner == owner && function.name == name && accepts(function.takes, arguments)) {
                return &function;
            }
        }
    }
    return nullptr;
}

bool prepare(const Function& function, std::span<Cell> arguments)
{
    for (size_t at = 0; at < arguments.size(); ++at) {
        const char letter = at < function.takes.size() ? function.takes[at] : '*';
        if (!prepare(letter, arguments[at])) return false;
    }
    return true;
}

}  // namespace velora::engine
