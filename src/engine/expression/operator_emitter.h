#pragma once

#include <string_view>

#include "engine/expression/emitter.h"

namespace velora::engine {

struct Operator {
    std::string_view mark;
    int strength;
    Op op;
};

/// Null for what stands between no two operands.
const Operator* find_operator(const Token& token);

/// Writes what operators make of operands, whose classes are known by then.
class OperatorEmitter : protected Emitter {
protected:
    using Emitter::Emitter;

    /// @throws SyntaxError as all here, when the operator does not take such operands
    uint32_t combined(const Operator& sign, const Token& mark, uint32_t left, uint32_t right);
    /// `condition ? yes : no`
    uint32_t chosen(uint32_t condition, uint32_t yes, uint32_t no);
    uint32_t of_bits(const Operator& sign, const Token& mark, uint32_t left, uint32_t right);
    static void need(const Token& mark, ValueClass given, ValueClass wanted, std::string_view what);

private:
    uint32_t calculated(const Operator& sign, const Token& mark, uint32_t left, uint32_t right);
};

}  // namespace velora::engine
