#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "values/value.h"

namespace velora {

/// Field types of the pipe, with the codes that definitions and foreign readers of the pipe know.
namespace ado {

enum Type : uint8_t {
    Integer = 3,
    Single = 4,
    Date = 7,
    Boolean = 11,
    TinyInt = 16,
    DBTimeStamp = 135,
    VarChar = 200,
};

struct TypeRecord {
    Type type;
    std::string_view name;  ///< as a person reads it
    Value::Type cell;       ///< what a cell of the type holds
};

// clang-format off
inline constexpr auto kTypes = std::to_array<TypeRecord>({
    {VarChar,     "text",          Value::Type::Text},
    {Integer,     "integer",       Value::Type::Integer},
    {Single,      "single",        Value::Type::Single},
    {Date,        "date",          Value::Type::Date},
    {Boolean,     "boolean",       Value::Type::Boolean},
    {TinyInt,     "tiny integer",  Value::Type::Integer},
    {DBTimeStamp, "date and time", Value::Type::Date},
});
// clang-format on

/// By its code; text for a code that is none.
constexpr const TypeRecord& type_record(int code)
{
    for (const auto& record : kTypes) {
        if (record.type == code) return record;
    }
    return kTypes.front();
}

/// By its name; text for a name that is none.
constexpr const TypeRecord& type_record(std::string_view name)
{
    for (const auto& record : kTypes) {
        if (record.name == name) return record;
    }
    return kTypes.front();
}

}  // namespace ado

}  // namespace velora
