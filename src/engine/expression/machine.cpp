#include <array>

#include "engine/expression/program.h"

namespace velora::engine {

namespace {

constexpr size_t kLongestText = 64U << 20;  // what joining may make; a definition cannot use up the memory

class Machine {
public:
    Machine(const Program& program, const Environment& environment) : program_(program), environment_(environment) {}

    /// Null as a whole where a method was called on nothing, or nothing was computed with or decided by.
    Cell result()
    {
        Cell cell = evaluate(static_cast<uint32_t>(program_.code.size() - 1));
        return broken_ ? Cell{} : cell;
    }

private:
    Cell evaluate(uint32_t at)
    {
        const Instruction* instruction = &program_.code[at];
        // the branch that is taken goes on in the loop: long chains of ?: need no stack
        while (instruction->op == Op::Choose) {
            const bool taken = is_true(needed(evaluate(operand(*instruction, 0))));
            instruction = &program_.code[operand(*instruction, taken ? 1 : 2)];
        }
        return evaluate(*instruction);
    }

    /// Marks the whole as broken where the value is nothing.
    Cell needed(Cell cell)
    {
        if (cell.is_null()) broken_ = true;
        return cell;
    }

    [[nodiscard]] uint32_t operand(const Instruction& instruction, uint32_t number) const
    {
        return program_.operands[instruction.first + number];
    }

    static bool is_true(const Cell& cell)
    {
        const bool* flag = cell.get_if<bool>();
        return flag != nullptr && *flag;
    }

    Cell evaluate(const Instruction& instruction)
    {
        switch (instruction.op) {
            case Op::Constant:
                return program_.constants[instruction.slot];
            case Op::Field:
                return cell::from(environment_.field(instruction.slot), instruction.result);
            case Op::Variable:
                return cell::from(environment_.variable(instruction.slot), instruction.result);
            case Op::Parameter:
                return cell::from(environment_.parameter(instruction.slot), instruction.result);
            case Op::Resource:
                return resource(instruction);
            case Op::Concat:
                return concatenated(instruction);
            case Op::And:
            case Op::Or:
                return logical(instruction);
            case Op::Not:
                return negated_flag(instruction);
            case Op::Negate:
                return needed(
                    arithmetic(Op::Subtract, instruction.result, cell::integer(0), evaluate(operand(instruction, 0))));
            case Op::Convert:
                return cell::converted(evaluate(operand(instruction, 0)), instruction.result);
            case Op::IsClass:
                return cell::boolean(evaluate(operand(instruction, 0)).value_class ==
                                     static_cast<ValueClass>(instruction.slot));
            case Op::IsNumber:
                return cell::boolean(is_number(evaluate(operand(instruction, 0)).value_class));
            case Op::Call:
                return called(instruction);
            default:
                return binary(instruction);
        }
    }

    Cell resource(const Instruction& instruction)
    {
        auto text = environment_.resource(*program_.constants[instruction.slot].get_if<std::string>());
        return text ? cell::text(std::move(*text)) : Cell{};
    }

    Cell chained(const Instruction& top)
    {
        std::vector<const Instruction*> links{&top};
        for (;;) {
            const Instruction& left = program_.code[operand(*links.back(), 0)];
            if (!is_long_chain(left)) break;
            links.push_back(&left);
        }
        Cell result = evaluate(operand(*links.back(), 0));
        for (; !links.empty(); links.pop_back()) {
            const Instruction& link = *links.back();
            result = needed(arithmetic(link.op, link.result, result, evaluate(operand(link, 1))));
        }
        return result;
    }

    Cell binary(const Instruction& instruction)
    {
        if (is_long_chain(instruction)) return chained(instruction);
        const Cell left = evaluate(operand(instruction, 0));
        const Cell right = evaluate(operand(instruction, 1));
        switch (instruction.op) {
            case Op::Equal:
            case Op::NotEqual:
                broken_ = broken_ || (left.is_null() && unboxed(operand(instruction, 0), operand(instruction, 1))) ||
                          (right.is_null() && unboxed(operand(instruction, 1), operand(instruction, 0)));
                return cell::boolean(cell::equal(left, right) == (instruction.op == Op::Equal));
            case Op::BitAnd:
            case Op::BitOr:
            case Op::BitXor:
            case Op::ShiftLeft:
            case Op::ShiftRight:
            case Op::ShiftRightZero:
                return needed(bitwise(instruction.op, left, right));
            case Op::Less:
            case Op::LessOrEqual:
            case Op::Greater:
            case Op::GreaterOrEqual:
                broken_ = broken_ || left.is_null() || right.is_null();
                return ordered(instruction.op, cell::compared(left, right));
            default:
                return needed(arithmetic(instruction.op, instruction.result, left, right));
        }
    }

    /// Whether comparing asks for the number that the first operand does not have: where the other one is a literal or
    /// is worked out. The literal null may always be asked for.
    [[nodiscard]] bool unboxed(uint32_t nothing, uint32_t other) const
    {
        if (program_.code[nothing].op == Op::Constant) return false;
        const Instruction& instruction = program_.code[other];
        const bool plain = is_number(instruction.result) || instruction.result == ValueClass::Boolean;
        return plain && instruction.result != ValueClass::Decimal &&
               (instruction.op == Op::Constant || (instruction.op >= Op::Add && instruction.op <= Op::Negate));
    }

    static Cell ordered(Op op, std::optional<int> order)
    {
        if (!order) return {};
        switch (op) {
            case Op::Less:
                return cell::boolean(*order < 0);
            case Op::LessOrEqual:
                return cell::boolean(*order <= 0);
            case Op::Greater:
                return cell::boolean(*order > 0);
            default:
                return cell::boolean(*order >= 0);
        }
    }

    /// The second operand is left alone when the first decides.
    Cell logical(const Instruction& instruction)
    {
        const bool decides = instruction.op == Op::Or;
        for (uint32_t at = 0; at < instruction.count; ++at) {
            const Cell cell = needed(evaluate(operand(instruction, at)));
            const bool* flag = cell.get_if<bool>();
            if (flag == nullptr) return {};
            if (*flag == decides) return cell::boolean(decides);
        }
        return cell::boolean(!decides);
    }

    Cell negated_flag(const Instruction& instruction)
    {
        const Cell cell = needed(evaluate(operand(instruction, 0)));
        const bool* flag = cell.get_if<bool>();
        return flag == nullptr ? Cell{} : cell::boolean(!*flag);
    }

    Cell concatenated(const Instruction& instruction)
    {
        std::string text;
        for (uint32_t at = 0; at < instruction.count; ++at) {
            append(program_.code[operand(instruction, at)], text);
            if (text.size() > kLongestText) return {};
        }
        return cell::text(std::move(text));
    }

    /// Texts of names and constants are appended where they lie.
    void append(const Instruction& part, std::string& out)
    {
        if (const Value* value = named(part)) {
            if (const auto* text = value->get_if<std::string>(); text != nullptr && part.result == ValueClass::Text) {
                out += *text;
                return;
            }
            return cell::append_text(cell::from(*value, part.result), out);
        }
        if (part.op == Op::Constant) return cell::append_text(program_.constants[part.slot], out);
        cell::append_text(evaluate(static_cast<uint32_t>(&part - program_.code.data())), out);
    }

    [[nodiscard]] const Value* named(const Instruction& instruction) const
    {
        switch (instruction.op) {
            case Op::Field:
                return &environment_.field(instruction.slot);
            case Op::Variable:
                return &environment_.variable(instruction.slot);
            case Op::Parameter:
                return &environment_.parameter(instruction.slot);
            default:
                return nullptr;
        }
    }

    Cell called(const Instruction& instruction)
    {
        const Function& function = *program_.functions[instruction.slot];
        std::array<Cell, 4> few;
        std::vector<Cell> many;
        if (instruction.count > few.size()) many.resize(instruction.count);
        const auto arguments =
            instruction.count > few.size() ? std::span<Cell>(many) : std::span<Cell>(few).first(instruction.count);
        for (uint32_t at = 0; at < instruction.count; ++at) arguments[at] = evaluate(operand(instruction, at));
        if (!prepare(function, arguments)) return needed({});
        Call call{arguments, environment_, program_.formatters};
        const bool may_be_nothing =
            function.takes.find_first_of("o*") != std::string_view::npos || function.asks_the_run;
        return may_be_nothing ? function.call(call) : needed(function.call(call));
    }

    const Program& program_;
    const Environment& environment_;
    bool broken_ = false;
};

}  // namespace

Cell run(const Program& program, const Environment& environment)
{
    return Machine(program, environment).result();
}

}  // namespace velora::engine
