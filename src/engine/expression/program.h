#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "engine/expression/environment.h"
#include "engine/expression/functions.h"

namespace velora::engine {

enum class Op : uint8_t {
    // clang-format off
    Constant, Field, Variable, Parameter, Resource,
    Add, Subtract, Multiply, Divide, Remainder, Negate,
    Concat, Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual,
    And, Or, Not, BitAnd, BitOr, BitXor, ShiftLeft, ShiftRight, ShiftRightZero, Choose, Convert, IsClass, IsNumber, Call,
    // clang-format on
};

/// One instruction; its operands are other instructions. `result` is the class it gives (or null), and for
/// arithmetic also the class it computes in; `Object` is decided by the values.
struct Instruction {
    Op op = Op::Constant;
    ValueClass result = ValueClass::Object;
    uint16_t depth = 1;  ///< of the operands below it
    uint32_t slot = 0;   ///< of a name, a constant or a function
    uint32_t first = 0;  ///< first operand in `Program::operands`
    uint32_t count = 0;
};

constexpr bool is_arithmetic(Op op)
{
    return op >= Op::Add && op <= Op::Remainder;
}

/// Arithmetic that leans to the left over many terms, as a + b + c ... does. It is worked off without going deeper, so
/// its depth grows no more.
constexpr bool is_long_chain(const Instruction& instruction)
{
    constexpr uint16_t kLong = 100;
    return instruction.depth >= kLong && is_arithmetic(instruction.op);
}

struct Program {
    std::vector<Instruction> code;  ///< the last one gives the result
    std::vector<uint32_t> operands;
    std::vector<Cell> constants;
    std::vector<const Function*> functions;
    std::vector<Reference> references;
    bool asks_the_run = false;
    mutable FormatterCache formatters;
};

/// Computes with two cells as `result` says; null where that is impossible.
Cell arithmetic(Op op, ValueClass result, const Cell& left, const Cell& right);
/// The bits of two whole numbers or truth values; null for anything else.
Cell bitwise(Op op, const Cell& left, const Cell& right);
/// The class that arithmetic between two classes is done in.
ValueClass promoted(ValueClass left, ValueClass right);

/// The result of a program for an environment.
Cell run(const Program& program, const Environment& environment);

/// @throws SyntaxError
std::shared_ptr<const Program> compile_program(std::string_view text, const Names& names);

}  // namespace velora::engine
