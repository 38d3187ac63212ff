#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/definition/model.h"
#include "engine/expression/expression.h"
#include "engine/page/style.h"

namespace velora::engine {

/// What a kind of element looks like when neither it nor its style says anything.
enum class LookKind : uint8_t { Text, Graphic, Image, Frame };

/// Everything an element takes from its style, resolved.
struct Look {
    Style style;
    model::Markup markup = model::Markup::None;
    bool blank_when_null = false;
};

/// One layer of a style: it counts always, or while its condition holds.
struct StyleLayer {
    Expression condition;  ///< empty: always
    const model::StyleAttributes* attributes = nullptr;
};

/// The layers of a named style with those of its parents, the weakest first.
struct StylePlan {
    std::string name;
    std::vector<StyleLayer> layers;
    size_t conditions = 0;  ///< number of layers with a condition, at most 64
};

/// The look of an element under a style; bit n of `holding` tells whether the n-th condition holds.
Look resolve_look(const StylePlan* plan, uint64_t holding, const model::StyleAttributes& own, LookKind kind);

/// The layers of every style of a definition.
///
/// @throws DefinitionError for a condition that cannot be compiled and for styles that inherit from each other in a
///         circle
class StylePlans {
public:
    StylePlans(const model::Definition& definition, const Names& names);

    /// The style of that name; the default style for the empty name. Null when there is none.
    [[nodiscard]] const StylePlan* find(std::string_view name) const;

private:
    std::map<std::string, StylePlan, std::less<>> plans_;
    const StylePlan* default_ = nullptr;
};

}  // namespace velora::engine
