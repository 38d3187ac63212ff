#include "engine/expression/operator_emitter.h"

#include <algorithm>
#include <array>

namespace velora::engine {

namespace {

constexpr auto kOperators = std::to_array<Operator>({
    // clang-format off
    {"||", 1, Op::Or},
    {"&&", 2, Op::And},
    {"|",  3, Op::BitOr},
    {"^",  4, Op::BitXor},
    {"&",  5, Op::BitAnd},
    {"==", 6, Op::Equal},
    {"!=", 6, Op::NotEqual},
    {"<",  7, Op::Less},
    {"<=", 7, Op::LessOrEqual},
    {">",  7, Op::Greater},
    {">=", 7, Op::GreaterOrEqual},
    {"<<", 8, Op::ShiftLeft},
    {">>", 8, Op::ShiftRight},
    {">>>", 8, Op::ShiftRightZero},
    {"+",  9, Op::Add},
    {"-",  9, Op::Subtract},
    {"*",  10, Op::Multiply},
    {"/",  10, Op::Divide},
    {"%",  10, Op::Remainder},
    // clang-format on
});

bool comparable(ValueClass a, ValueClass b)
{
    const auto open = [](ValueClass c) { return c == ValueClass::Object || c == ValueClass::Null; };
    return open(a) || open(b) || a == b || (is_number(a) && is_number(b)) || (is_date(a) && is_date(b)) ||
           (is_text(a) && is_text(b));
}

std::string two_classes(std::string_view mark, std::string_view verb, ValueClass a, std::string_view joint,
                        ValueClass b)
{
    return quoted(mark) + " " + std::string(verb) + " " + std::string(class_name(a)) + " " + std::string(joint) + " " +
           std::string(class_name(b));
}

}  // namespace

const Operator* find_operator(const Token& token)
{
    if (token.kind != TokenKind::Mark) return nullptr;
    const auto found = std::ranges::find(kOperators, token.text, &Operator::mark);
    return found == kOperators.end() ? nullptr : &*found;
}

uint32_t OperatorEmitter::chosen(uint32_t condition, uint32_t yes, uint32_t no)
{
    const auto left = class_of(yes);
    const auto right = class_of(no);
    auto result = left == right || right == ValueClass::Null ? left
                  : left == ValueClass::Null                 ? right
                                                             : ValueClass::Object;
    const bool exact = left == ValueClass::Decimal || right == ValueClass::Decimal;
    if (left != right && is_number(left) && is_number(right) && !exact) {
        result = promoted(left, right);
        if (left != result) yes = emit(Op::Convert, result, {yes});
        if (right != result) no = emit(Op::Convert, result, {no});
    }
    return emit(Op::Choose, result, {condition, yes, no});
}

uint32_t OperatorEmitter::combined(const Operator& sign, const Token& mark, uint32_t left, uint32_t right)
{
    const auto a = class_of(left);
    const auto b = class_of(right);
    switch (sign.op) {
        case Op::And:
        case Op::Or:
            need(mark, a, ValueClass::Boolean, sign.mark);
            need(mark, b, ValueClass::Boolean, sign.mark);
            if (program().code[left].op == sign.op) return extended(left, right);
            return emit(sign.op, ValueClass::Boolean, {left, right});
        case Op::Equal:
        case Op::NotEqual:
        case Op::Less:
        case Op::LessOrEqual:
        case Op::Greater:
        case Op::GreaterOrEqual:
            if (!comparable(a, b)) fail(mark, two_classes(sign.mark, "does not compare", a, "with", b));
            return emit(sign.op, ValueClass::Boolean, {left, right});
        case Op::BitAnd:
        case Op::BitOr:
        case Op::BitXor:
        case Op::ShiftLeft:
        case Op::ShiftRight:
        case Op::ShiftRightZero:
            return of_bits(sign, mark, left, right);
        default:
            return calculated(sign, mark, left, right);
    }
}

uint32_t OperatorEmitter::of_bits(const Operator& sign, const Token& mark, uint32_t left, uint32_t right)
{
    const auto a = class_of(left);
    const auto b = class_of(right);
    const auto open = [](ValueClass c) { return c == ValueClass::Object || c == ValueClass::Null; };
    const bool flags = a == ValueClass::Boolean && b == ValueClass::Boolean;
    const bool shift = sign.op >= Op::ShiftLeft && sign.op <= Op::ShiftRightZero;
    if (flags && !shift) return emit(sign.op, ValueClass::Boolean, {left, right});
    if ((!is_integer(a) && !open(a)) || (!is_integer(b) && !open(b))) {
        fail(mark, two_classes(sign.mark, "takes whole numbers, not", a, "and", b));
    }
    const bool known = is_integer(a) && is_integer(b);
    return emit(sign.op, !known ? ValueClass::Object : shift ? promoted(a, a) : promoted(a, b), {left, right});
}

uint32_t OperatorEmitter::calculated(const Operator& sign, const Token& mark, uint32_t left, uint32_t right)
{
    const auto a = class_of(left);
    const auto b = class_of(right);
    if (sign.op == Op::Add && (a == ValueClass::Text || b == ValueClass::Text)) {
        if (program().code[left].op == Op::Concat) return extended(left, right);
        return emit(Op::Concat, ValueClass::Text, {left, right});
    }
    const auto computes = [](ValueClass c) { return is_number(c) || c == ValueClass::Object || c == ValueClass::Null; };
    if (!computes(a) || !computes(b)) fail(mark, two_classes(sign.mark, "takes numbers, not", a, "and", b));
    return emit(sign.op, promoted(a, b), {left, right});
}

void OperatorEmitter::need(const Token& mark, ValueClass given, ValueClass wanted, std::string_view what)
{
    if (given == wanted || given == ValueClass::Object || given == ValueClass::Null) return;
    fail(mark,
         quoted(what) + " takes a " + std::string(class_name(wanted)) + ", not a " + std::string(class_name(given)));
}

}  // namespace velora::engine
