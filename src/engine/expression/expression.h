#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "engine/expression/definition_error.h"
#include "engine/expression/value_class.h"
#include "values/date_time.h"
#include "values/value.h"

namespace velora::engine {

/// Where a `$F{}`, `$V{}` or `$P{}` name leads: a slot of the environment and the class it is declared with.
struct Name {
    size_t slot = 0;
    ValueClass value_class = ValueClass::Object;
};

/// The names that an expression may use, asked for while it is compiled.
class Names {
public:
    virtual ~Names() = default;
    [[nodiscard]] virtual std::optional<Name> field(std::string_view name) const = 0;
    [[nodiscard]] virtual std::optional<Name> variable(std::string_view name) const = 0;
    [[nodiscard]] virtual std::optional<Name> parameter(std::string_view name) const = 0;
};

/// What an expression may ask of the run besides names. Dates are wall time in the zone.
struct Surroundings {
    std::string locale = "en_US";   ///< as ICU reads it
    std::string time_zone = "GMT";  ///< as ICU reads it
    DateTime now;                   ///< what `new Date()` gives
};

/// The values of one moment. A run has one for each moment it evaluates at (now, the row before, later).
class Environment {
public:
    virtual ~Environment() = default;
    [[nodiscard]] virtual const Value& field(size_t slot) const = 0;
    [[nodiscard]] virtual const Value& variable(size_t slot) const = 0;
    [[nodiscard]] virtual const Value& parameter(size_t slot) const = 0;
    /// The text of `$R{key}` and `str("key")`; what a missing key gives is the run's choice.
    [[nodiscard]] virtual std::optional<std::string> resource(std::string_view key) const = 0;
    [[nodiscard]] virtual const Surroundings& surroundings() const = 0;
};

/// A name that an expression uses, each listed once.
struct Reference {
    enum class Kind { Field, Variable, Parameter, Resource };
    Kind kind;
    size_t slot;  ///< 0 for a resource

    bool operator==(const Reference&) const = default;
};

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
/// @throws DefinitionError  with the place of the first thing that is outside the language or an unknown name
Expression compile(std::string_view text, const Names& names, Position where = {}, std::string_view element = {});

}  // namespace velora::engine
