#include "engine/fill/rows/arithmetic.h"

#include <cmath>

#include "values/fault.h"
#include "values/number_text.h"

namespace velora::engine {

double as_double(const Value& value)
{
    switch (value.type()) {
        case Value::Type::Boolean:
            return *value.get_if<bool>() ? 1 : 0;
        case Value::Type::Integer:
            return static_cast<double>(*value.get_if<int64_t>());
        case Value::Type::Single:
            return static_cast<double>(*value.get_if<float>());
        case Value::Type::Double:
            return *value.get_if<double>();
        case Value::Type::Fixed:
            return value.get_if<Fixed4>()->to_double();
        case Value::Type::Text:
            return read_number(*value.get_if<std::string>()).value_or(0);
        default:
            return 0;
    }
}

Value as_class(double number, ValueClass value_class)
{
    if (std::isnan(number)) return {};
    if (is_integer(value_class)) {
        return std::abs(number) < 9.2e18 ? Value(static_cast<int64_t>(number)) : Value();
    }
    if (value_class == ValueClass::Float) return static_cast<float>(number);
    if (value_class == ValueClass::Decimal && std::abs(number) < 9.2e14) return Fixed4::from(number);
    return number;
}

bool fits_class(const Value& cell, ValueClass value_class)
{
    const auto type = cell.type();
    if (type == Value::Type::Null || value_class == ValueClass::Object) return true;
    if (is_integer(value_class)) return type == Value::Type::Integer;
    switch (value_class) {
        case ValueClass::Boolean:
            return type == Value::Type::Boolean;
        case ValueClass::Float:
            return type == Value::Type::Single;
        case ValueClass::Double:
            return type == Value::Type::Double;
        case ValueClass::Decimal:
            return type == Value::Type::Fixed || type == Value::Type::Double;
        case ValueClass::Date:
            return type == Value::Type::Date;
        case ValueClass::Text:
            return type == Value::Type::Text;
        default:
            return true;
    }
}

Value coerced(const Value& cell, ValueClass value_class)
{
    if (fits_class(cell, value_class)) return cell;
    if (is_number(value_class)) {
        const auto* text = cell.get_if<std::string>();
        if ((text && !read_number(*text)) || cell.type() == Value::Type::Date) return {};
        return as_class(as_double(cell), value_class);
    }
    try {
        if (value_class == ValueClass::Boolean) return to_bool(cell);
        if (value_class == ValueClass::Date) return cell.type() == Value::Type::Text ? Value(to_date(cell)) : Value();
        return value_class == ValueClass::Text ? Value(to_text(cell)) : cell;
    } catch (const Fault&) {
        return {};  // a cell that cannot be read as the field's class leaves the field blank
    }
}

Value sum_of(const Value& left, const Value& right, ValueClass value_class)
{
    const auto* a = left.get_if<int64_t>();
    const auto* b = right.get_if<int64_t>();
    int64_t whole = 0;
    if (a && b && !__builtin_add_overflow(*a, *b, &whole)) return whole;
    const auto* x = left.get_if<Fixed4>();
    const auto* y = right.get_if<Fixed4>();
    if (x && y && !__builtin_add_overflow(x->units(), y->units(), &whole)) return Fixed4::from_units(whole);
    return as_class(as_double(left) + as_double(right), value_class);
}

Value quotient_of(const Value& sum, const Value& count, ValueClass value_class)
{
    const double divisor = as_double(count);
    if (divisor == 0) return {};
    return as_class(as_double(sum) / divisor, value_class);
}

int compare_values(const Value& left, const Value& right)
{
    const auto* a = left.get_if<std::string>();
    const auto* b = right.get_if<std::string>();
    if (a && b) return a->compare(*b);
    const auto* x = left.get_if<DateTime>();
    const auto* y = right.get_if<DateTime>();
    if (x && y) return *x < *y ? -1 : (*x == *y ? 0 : 1);
    const double p = as_double(left);
    const double q = as_double(right);
    return p < q ? -1 : (p > q ? 1 : 0);
}

}  // namespace velora::engine
