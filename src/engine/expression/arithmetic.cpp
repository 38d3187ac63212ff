#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/expression/program.h"

namespace velora::engine {

namespace {

/// Wraps around like the language's integers; an integer divided by zero is null.
Cell integer_arithmetic(Op op, ValueClass result, int64_t left, int64_t right)
{
    const auto a = static_cast<uint64_t>(left);
    const auto b = static_cast<uint64_t>(right);
    switch (op) {
        case Op::Add:
            return cell::integer(static_cast<int64_t>(a + b), result);
        case Op::Subtract:
            return cell::integer(static_cast<int64_t>(a - b), result);
        case Op::Multiply:
            return cell::integer(static_cast<int64_t>(a * b), result);
        default:
            break;
    }
    if (right == 0) return {};
    if (right == -1) return cell::integer(op == Op::Divide ? static_cast<int64_t>(0 - a) : 0, result);
    return cell::integer(op == Op::Divide ? left / right : left % right, result);
}

Cell real_arithmetic(Op op, ValueClass result, double left, double right)
{
    switch (op) {
        case Op::Add:
            return cell::number(left + right, result);
        case Op::Subtract:
            return cell::number(left - right, result);
        case Op::Multiply:
            return cell::number(left * right, result);
        case Op::Divide:
            return cell::number(left / right, result);
        default:
            return cell::number(std::fmod(left, right), result);
    }
}

Cell decimal_arithmetic(Op op, const Cell& left, const Cell& right)
{
    const auto a = cell::to_decimal(left);
    const auto b = cell::to_decimal(right);
    if (!a || !b) return {};
    switch (op) {
        case Op::Add:
            return cell::decimal(add(*a, *b));
        case Op::Subtract:
            return cell::decimal(subtract(*a, *b));
        case Op::Multiply:
            return cell::decimal(multiply(*a, *b));
        case Op::Divide:
            return cell::decimal(divide(*a, *b));
        default:
            return cell::decimal(remainder(*a, *b));
    }
}

/// Shifts by as many bits as the width leaves over.
int64_t shifted(Op op, int64_t value, int64_t by, bool wide)
{
    const auto bits = static_cast<unsigned>(by & (wide ? 63 : 31));
    if (op == Op::ShiftLeft) return static_cast<int64_t>(static_cast<uint64_t>(value) << bits);
    if (op == Op::ShiftRight) return value >> bits;
    return static_cast<int64_t>((wide ? static_cast<uint64_t>(value) : static_cast<uint32_t>(value)) >> bits);
}

Cell joined(const Cell& left, const Cell& right)
{
    std::string text;
    cell::append_text(left, text);
    cell::append_text(right, text);
    return cell::text(std::move(text));
}

}  // namespace

Cell bitwise(Op op, const Cell& left, const Cell& right)
{
    const bool shift = op == Op::ShiftLeft || op == Op::ShiftRight || op == Op::ShiftRightZero;
    const auto* left_flag = left.get_if<bool>();
    const auto* right_flag = right.get_if<bool>();
    if (left_flag != nullptr && right_flag != nullptr && !shift) {
        const bool result = op == Op::BitAnd  ? *left_flag && *right_flag
                            : op == Op::BitOr ? *left_flag || *right_flag
                                              : *left_flag != *right_flag;
        return cell::boolean(result);
    }
    const auto* a = left.get_if<int64_t>();
    const auto* b = right.get_if<int64_t>();
    if (a == nullptr || b == nullptr) return {};
    if (shift) {
        const auto result = std::max(left.value_class, ValueClass::Integer);
        return cell::integer(shifted(op, *a, *b, result == ValueClass::Long), result);
    }
    const auto result = std::max({left.value_class, right.value_class, ValueClass::Integer});
    return cell::integer(op == Op::BitAnd ? *a & *b : op == Op::BitOr ? *a | *b : *a ^ *b, result);
}

ValueClass promoted(ValueClass left, ValueClass right)
{
    if (!is_number(left) || !is_number(right)) return ValueClass::Object;
    const auto widest = std::max({left, right, ValueClass::Integer});
    const auto other = std::min(left, right);
    const bool real = other == ValueClass::Float || other == ValueClass::Double;
    return widest == ValueClass::Decimal && real ? ValueClass::Double : widest;
}

Cell arithmetic(Op op, ValueClass result, const Cell& left, const Cell& right)
{
    if (result == ValueClass::Object) {
        const bool text = left.value_class == ValueClass::Text || right.value_class == ValueClass::Text;
        if (op == Op::Add && text) return joined(left, right);
        result = promoted(left.value_class, right.value_class);
    }
    if (!is_number(left.value_class) || !is_number(right.value_class)) return {};
    if (is_integer(result)) return integer_arithmetic(op, result, cell::to_integer(left), cell::to_integer(right));
    if (result == ValueClass::Decimal) return decimal_arithmetic(op, left, right);
    return real_arithmetic(op, result, cell::to_double(left), cell::to_double(right));
}

}  // namespace velora::engine
