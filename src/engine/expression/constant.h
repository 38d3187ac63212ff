#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "engine/expression/expression.h"

/// What expressions give before there is any row.
namespace velora::engine {

/// For an expression that may use no name.
class NoNames : public Names {
public:
    [[nodiscard]] std::optional<Name> field(std::string_view) const override { return {}; }
    [[nodiscard]] std::optional<Name> variable(std::string_view) const override { return {}; }
    [[nodiscard]] std::optional<Name> parameter(std::string_view) const override { return {}; }
};

/// Whether the expression looks at nothing of the rows.
bool looks_at_parameters_only(const Expression& expression);

/// The value where nothing but parameters is known; everything else is null.
/// @param parameters  by slot; those behind the last one are null
Value evaluate_constant(const Expression& expression, std::span<const Value> parameters = {});
/// The same as the text that a field would show. None for null.
std::optional<std::string> constant_text(const Expression& expression, std::span<const Value> parameters = {});

}  // namespace velora::engine
