#include <array>

#include "engine/expression/program.h"

namespace velora::engine {

namespace {

constexpr size_t kLongestText = 64U << 20;  // what joining may make; a definition cannot use up the memory

class Machine {
public:
    Machine(const Program& program, const Environment& environment) : program_(program), environment_(environment) {}

    Cell evaluate(uint32_t at)
    {
        const Instruction* instruction = &program_.code[at];
        // the branch that is taken goes on in the loop: long chains of ?: need no stack
        while (instruction->op == Op::Choose) {
            const bool taken = is_true(evaluate(operand(*instruction, 0)));
            instruction = &program_.code[operand(*instruction, taken ? 1 : 2)];
        }
        return evaluate(*instruction);
    }

private:
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
                return arithmetic(Op::Subtract, instruction.result, cell::integer(0),
                                  evaluate(operand(instruction, 0)));
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

    Cell binary(const Instruction& instruction)
    {
        const Cell left = evaluate(operand(instruction, 0));
        const Cell right = evaluate(operand(instruction, 1));
        switch (instruction.op) {
            case Op::Equal:
                return cell::boolean(cell::equal(left, right));
            case Op::NotEqual:
                return cell::boolean(!cell::equal(left, right));
            case Op::Less:
            case Op::LessOrEqual:
            case Op::Greater:
            case Op::GreaterOrEqual:
                return ordered(instruction.op, cell::compared(left, right));
            default:
                return arithmetic(instruction.op, instruction.result, left, right);
        }
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

    /// The second operand is left alone when the first decides. Null is neither true nor false.
    Cell logical(const Instruction& instruction)
    {
        const bool decides = instruction.op == Op::Or;
        bool unknown = false;
        for (uint32_t at = 0; at < instruction.count; ++at) {
            const Cell cell = evaluate(operand(instruction, at));
            const bool* flag = cell.get_if<bool>();
            if (flag != nullptr && *flag == decides) return cell::boolean(decides);
            unknown = unknown || flag == nullptr;
        }
        return unknown ? Cell{} : cell::boolean(!decides);
    }

    Cell negated_flag(const Instruction& instruction)
    {
        const Cell cell = evaluate(operand(instruction, 0));
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
        if (!prepare(function, arguments)) return {};
        Call call{arguments, environment_, program_.formatters};
        return function.call(call);
    }

    const Program& program_;
    const Environment& environment_;
};

/// Whether a value can be handed on as it is for a name of that class.
bool is_of(const Value& value, ValueClass declared)
{
    switch (value.type()) {
        case Value::Type::Null:
            return true;
        case Value::Type::Boolean:
            return declared == ValueClass::Object || declared == ValueClass::Boolean;
        case Value::Type::Integer:
            return declared == ValueClass::Object || declared == ValueClass::Integer || declared == ValueClass::Long;
        case Value::Type::Single:
            return declared == ValueClass::Object || declared == ValueClass::Float;
        case Value::Type::Double:
            return declared == ValueClass::Object || declared == ValueClass::Double || declared == ValueClass::Decimal;
        case Value::Type::Fixed:
            return declared == ValueClass::Object || declared == ValueClass::Decimal;
        case Value::Type::Date:
            return declared == ValueClass::Object || (is_date(declared) && declared != ValueClass::SqlDate);
        case Value::Type::Text:
            return declared == ValueClass::Object || declared == ValueClass::Text;
    }
    return false;
}

/// The value behind an expression that is a name and nothing else; null when it is more.
const Value* lone_name(const Program& program, const Environment& environment)
{
    const Instruction& last = program.code.back();
    switch (last.op) {
        case Op::Field:
            return &environment.field(last.slot);
        case Op::Variable:
            return &environment.variable(last.slot);
        case Op::Parameter:
            return &environment.parameter(last.slot);
        default:
            return nullptr;
    }
}

std::string shown(const Cell& cell, const Program& program, const Surroundings& surroundings)
{
    if (is_date(cell.value_class)) {
        const std::string_view pattern = cell.value_class == ValueClass::SqlDate ? "short,hide" : "short,short";
        const auto formatter =
            program.formatters.get(FormatterCache::Kind::Date, pattern, surroundings.locale, surroundings.time_zone);
        if (formatter) return formatter->format(cell).value_or("");
    }
    std::string text;
    cell::append_text(cell, text);
    return text;
}

}  // namespace

Cell run(const Program& program, const Environment& environment)
{
    return Machine(program, environment).evaluate(static_cast<uint32_t>(program.code.size() - 1));
}

Value Expression::evaluate(const Environment& environment) const
{
    if (!program_) return {};
    if (const Value* value = lone_name(*program_, environment)) {
        if (is_of(*value, program_->code.back().result)) return *value;
    }
    return cell::to_value(run(*program_, environment));
}

bool Expression::is_true(const Environment& environment) const
{
    if (!program_) return false;
    const Cell result = run(*program_, environment);
    const bool* flag = result.get_if<bool>();
    return flag != nullptr && *flag;
}

std::optional<std::string> Expression::text(const Environment& environment) const
{
    if (!program_) return std::nullopt;
    if (const Value* value = lone_name(*program_, environment)) {
        if (value->is_null()) return std::nullopt;
        const bool plain = is_of(*value, program_->code.back().result);
        if (const auto* text = value->get_if<std::string>(); text != nullptr && plain) return *text;
    }
    const Cell result = run(*program_, environment);
    if (result.is_null() || result.get_if<std::shared_ptr<const Formatter>>() != nullptr) return std::nullopt;
    return shown(result, *program_, environment.surroundings());
}

ValueClass Expression::result_class() const
{
    return program_ ? program_->code.back().result : ValueClass::Null;
}

bool Expression::is_constant() const
{
    return !program_ || (program_->references.empty() && !program_->asks_the_run);
}

std::span<const Reference> Expression::references() const
{
    if (!program_) return {};
    return program_->references;
}

}  // namespace velora::engine
