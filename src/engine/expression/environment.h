#pragma once

#include <cstddef>
#include <optional>
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
    /// An expression that stands for the name: of a parameter whose class is no plain value, such as a format, a list
    /// or a map, the default. It has to live as long as the names.
    std::string_view stands_for = {};
};

/// The names that an expression may use, asked for while it is compiled.
class Names {
public:
    virtual ~Names() = default;
    [[nodiscard]] virtual std::optional<Name> field(std::string_view name) const = 0;
    [[nodiscard]] virtual std::optional<Name> variable(std::string_view name) const = 0;
    [[nodiscard]] virtual std::optional<Name> parameter(std::string_view name) const = 0;
    /// Whether an expression that cannot be compiled is left out rather than thrown: it gives nothing then.
    virtual bool goes_on_without(const DefinitionError&) const { return false; }
    /// What the definition says of itself, by the name that expressions have for it: "getPageWidth".
    [[nodiscard]] virtual std::optional<Value> of_report(std::string_view) const { return std::nullopt; }
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

}  // namespace velora::engine
