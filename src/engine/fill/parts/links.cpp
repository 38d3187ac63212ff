#include "engine/fill/parts/links.h"

#include "engine/fill/rows/arithmetic.h"

namespace velora::engine {

LinkState evaluate_link(const LinkPlan& plan, const Environment& environment)
{
    const auto text = [&](const Expression& expression) {
        return expression.text(environment).value_or(std::string());
    };
    const auto number = [&](const Expression& expression) {
        return static_cast<int32_t>(as_double(expression.evaluate(environment)));
    };
    LinkState state;
    if (plan.anchor_name) {
        state.anchor.name = text(plan.anchor_name);
        state.anchor.bookmark_level = plan.level ? number(plan.level) : plan.bookmark_level;
    }
    if (plan.when && !plan.when.is_true(environment)) return state;
    state.link.kind = plan.kind;
    if (plan.reference) state.link.target = text(plan.reference);
    if (plan.anchor) state.link.anchor = text(plan.anchor);
    if (plan.page) state.link.page = number(plan.page);
    if (plan.tooltip) state.link.tooltip = text(plan.tooltip);
    return state;
}

}  // namespace velora::engine
