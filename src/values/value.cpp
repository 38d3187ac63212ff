#include "values/value.h"

#include <cmath>
#include <limits>

#include "values/fault.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora {

namespace {

double serial_number(const DateTime& date)
{
    return date.serial_day() + date.second_of_day() / 86400.0;
}

template <class Integer>
Integer to_integer(const Value& value)
{
    const double rounded = std::nearbyint(to_number(value));
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max())) {
        throw fault::overflow();
    }
    return static_cast<Integer>(rounded);
}

}  // namespace

std::string to_text(const Value& value)
{
    switch (value.type()) {
        case Value::Type::Null:
            throw fault::null();
        case Value::Type::Boolean:
            return *value.get_if<bool>() ? "True" : "False";
        case Value::Type::Integer:
            return std::to_string(*value.get_if<int64_t>());
        case Value::Type::Date:
            return value.get_if<DateTime>()->iso();
        case Value::Type::Text:
            return *value.get_if<std::string>();
        default:
            return plain_text(to_number(value));
    }
}

double to_number(const Value& value)
{
    switch (value.type()) {
        case Value::Type::Null:
            throw fault::null();
        case Value::Type::Boolean:
            return *value.get_if<bool>() ? -1 : 0;
        case Value::Type::Integer:
            return static_cast<double>(*value.get_if<int64_t>());
        case Value::Type::Single:
            return *value.get_if<float>();
        case Value::Type::Double:
            return *value.get_if<double>();
        case Value::Type::Fixed:
            return value.get_if<Fixed4>()->to_double();
        case Value::Type::Date:
            return serial_number(*value.get_if<DateTime>());
        case Value::Type::Text:
            break;
    }
    const auto number = read_number(*value.get_if<std::string>());
    if (!number) throw fault::type_mismatch();
    return *number;
}

int32_t to_int32(const Value& value)
{
    return to_integer<int32_t>(value);
}

int16_t to_int16(const Value& value)
{
    return to_integer<int16_t>(value);
}

float to_single(double value)
{
    const auto single = static_cast<float>(value);
    if (!std::isfinite(single)) throw fault::overflow();
    return single;
}

float to_single(const Value& value)
{
    if (const auto* single = value.get_if<float>()) return *single;
    return to_single(to_number(value));
}

bool to_bool(const Value& value)
{
    if (const auto* text = value.get_if<std::string>()) {
        if (same_name(trimmed(*text), "True")) return true;
        if (same_name(trimmed(*text), "False")) return false;
    }
    return to_number(value) != 0;
}

DateTime to_date(const Value& value)
{
    if (value.is_null()) throw fault::null();
    if (const auto* date = value.get_if<DateTime>()) return *date;
    if (const auto* text = value.get_if<std::string>()) {
        if (const auto date = DateTime::from_iso(trimmed(*text))) return *date;
        throw fault::type_mismatch();
    }
    const double serial = to_number(value);
    const double day = std::floor(serial);
    if (!(day > -657435 && day < 2958466)) throw fault::overflow();
    constexpr int32_t kDay = 86400;
    const auto second = static_cast<int32_t>(std::lround((serial - day) * kDay));
    return {static_cast<int32_t>(day) + second / kDay, second % kDay};
}

std::optional<DateTime> date_in(const Value& value)
{
    if (const auto* date = value.get_if<DateTime>()) return *date;
    if (const auto* text = value.get_if<std::string>()) return DateTime::from_iso(trimmed(*text));
    return std::nullopt;
}

double numeric_value(const Value& value)
{
    if (value.get_if<std::string>() != nullptr) return leading_number(*value.get_if<std::string>());
    if (value.type() == Value::Type::Date) return leading_number(to_text(value));
    return to_number(value);
}

bool equals_number(const Value& value, double number)
{
    return !value.is_null() && to_number(value) == number;
}

std::string trimmed_text(const Value& value)
{
    if (const auto* text = value.get_if<std::string>()) return std::string(trimmed(*text));
    return to_text(value);
}

}  // namespace velora
