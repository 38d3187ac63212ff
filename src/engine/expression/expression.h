#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "engine/expression/definition_error.h"
#include "engine/expression/environment.h"

namespace velora::engine {

struct Program;

/// A compiled expression. Cheap to copy, safe to evaluate from several threads, empty by default.
///
/// Nothing in the language fails at run time: null in arithmetic, a method on null, an integer divided by zero,
/// a text position outside the text and an impossible cast all give null, and the field stays blank. Decimals
/// (`BigDecimal`) are computed exactly as a scaled 128-bit integer and handed out as `Fixed4` where four places
/// hold them, else as double; `text` keeps every place.
class Expression {
public:
    Expression() = default;
    explicit Expression(std::shared_ptr<const Program> program) : program_(std::move(program)) {}

    [[nodiscard]] explicit operator bool() const { return program_ != nullptr; }  ///< false when empty

    /// Null when empty. The result has the type of `result_class`, or is null.
    [[nodiscard]] Value evaluate(const Environment& environment) const;
    /// True only for a true truth value: null and everything else count as false.
    [[nodiscard]] bool is_true(const Environment& environment) const;
    /// What a field without a pattern shows: 3.0 for a double, 1.50 for a decimal with two places. None for null.
    [[nodiscard]] std::optional<std::string> text(const Environment& environment) const;

    [[nodiscard]] ValueClass result_class() const;  ///< `Object` where only the value tells
    [[nodiscard]] bool is_constant() const;         ///< uses no name, no date of the run, no locale
    [[nodiscard]] std::span<const Reference> references() const;

private:
    std::shared_ptr<const Program> program_;
};

/// Compiles an expression in the syntax that designers write.
///
/// @param where    place of the text's first character in the definition
/// @param element  what the message calls the thing that holds the expression
/// @return empty where it cannot be compiled and the names go on without it
/// @throws DefinitionError  with the place of the first thing that is outside the language or an unknown name
Expression compile(std::string_view text, const Names& names, Position where = {}, std::string_view element = {});

}  // namespace velora::engine
