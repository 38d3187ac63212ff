#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velora::engine {

/// What a definition declares a field, variable or parameter to be. It decides how arithmetic is done: 7 / 2 is 3
/// between integers, 3.5 where one side is a float or double, exact where one side is a decimal.
enum class ValueClass : uint8_t {
    Object,  ///< known only when the value is there
    Null,
    Boolean,
    Character,
    Byte,
    Short,
    Integer,
    Long,
    Float,
    Double,
    Decimal,
    Date,       ///< java.util.Date
    SqlDate,    ///< a day without a time
    Time,       ///< a time of day
    Timestamp,  ///< as databases give it
    Text,
    List,  ///< there only while an expression is worked out
    Map,   ///< the same; keys and values in turn
};

/// The class of a declared type name ("java.math.BigDecimal", "Integer", "int"). None for one that is outside the
/// language; such a value can be handed on but not computed with.
std::optional<ValueClass> value_class(std::string_view declared);

/// The short name a message shows: "Integer", "BigDecimal", "String".
std::string_view class_name(ValueClass value_class);

constexpr bool is_integer(ValueClass c)
{
    return c >= ValueClass::Character && c <= ValueClass::Long;
}
/// A letter in single quotes is a character in one dialect of the language and a text in the other.
constexpr bool is_text(ValueClass c)
{
    return c == ValueClass::Text || c == ValueClass::Character;
}
constexpr bool is_date(ValueClass c)
{
    return c >= ValueClass::Date && c <= ValueClass::Timestamp;
}
constexpr bool is_number(ValueClass c)
{
    return c >= ValueClass::Character && c <= ValueClass::Decimal;
}

}  // namespace velora::engine
