#include "engine/expression/value_class.h"

#include <algorithm>
#include <array>

namespace velora::engine {

namespace {

struct Declared {
    std::string_view name;
    ValueClass value_class;
};

/// Names without their package. The first name of a class is the one that messages show.
constexpr auto kDeclared = std::to_array<Declared>({
    // clang-format off
    {"Object",      ValueClass::Object},
    {"null",        ValueClass::Null},
    {"Boolean",     ValueClass::Boolean},
    {"boolean",     ValueClass::Boolean},
    {"Character",   ValueClass::Character},
    {"char",        ValueClass::Character},
    {"Byte",        ValueClass::Byte},
    {"byte",        ValueClass::Byte},
    {"Short",       ValueClass::Short},
    {"short",       ValueClass::Short},
    {"Integer",     ValueClass::Integer},
    {"int",         ValueClass::Integer},
    {"Long",        ValueClass::Long},
    {"long",        ValueClass::Long},
    {"BigInteger",  ValueClass::Long},
    {"Float",       ValueClass::Float},
    {"float",       ValueClass::Float},
    {"Double",      ValueClass::Double},
    {"double",      ValueClass::Double},
    {"BigDecimal",  ValueClass::Decimal},
    {"Date",        ValueClass::Date},
    {"java.sql.Date", ValueClass::SqlDate},
    {"LocalDate",   ValueClass::SqlDate},
    {"Time",        ValueClass::Time},
    {"Timestamp",   ValueClass::Timestamp},
    {"LocalDateTime", ValueClass::Timestamp},
    {"String",      ValueClass::Text},
    {"CharSequence", ValueClass::Text},
    {"Number",      ValueClass::Object},
    {"Comparable",  ValueClass::Object},
    {"list",        ValueClass::List},
    {"map",         ValueClass::Map},
    // clang-format on
});

constexpr auto kPackages =
    std::to_array<std::string_view>({"", "java.lang.", "java.math.", "java.util.", "java.sql.", "java.time."});

}  // namespace

std::optional<ValueClass> value_class(std::string_view declared)
{
    if (declared == "java.sql.Date") return ValueClass::SqlDate;
    const auto dot = declared.rfind('.');
    const auto from = dot == std::string_view::npos ? 0 : dot + 1;
    if (std::ranges::find(kPackages, declared.substr(0, from)) == kPackages.end()) return std::nullopt;
    const auto found = std::ranges::find(kDeclared, declared.substr(from), &Declared::name);
    if (found == kDeclared.end()) return std::nullopt;
    return found->value_class;
}

std::string_view class_name(ValueClass value_class)
{
    const auto found = std::ranges::find(kDeclared, value_class, &Declared::value_class);
    return found == kDeclared.end() ? "Object" : found->name;
}

}  // namespace velora::engine
