#include "engine/expression/expression.h"

#include "engine/expression/program.h"
#include "engine/expression/token.h"

namespace velora::engine {

namespace {

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

/// The place of a byte of the text, whose first byte stands at `start`. Columns count characters.
Position place_of(std::string_view text, size_t offset, Position start)
{
    if (start.line == 0) start = {1, 1};
    for (const char c : text.substr(0, offset)) {
        if (c == '\n') {
            ++start.line;
            start.column = 1;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            ++start.column;
        }
    }
    return start;
}

}  // namespace

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

Expression compile(std::string_view text, const Names& names, Position where, std::string_view element)
{
    try {
        return Expression(compile_program(text, names));
    } catch (const SyntaxError& error) {
        const DefinitionError refused(place_of(text, error.offset(), where), std::string(element), error.what());
        if (names.goes_on_without(refused)) return {};
        throw refused;
    }
}

}  // namespace velora::engine
