#include "engine/fill/rows/group_changes.h"

namespace velora::engine {

void find_group_changes(const ReportPlan& plan, Variables& variables, const Environment& before,
                        const Environment& estimated, std::vector<bool>& changed)
{
    const auto has_changed = [&](const GroupPlan& group) {
        return group.expression && group.expression.evaluate(before) != group.expression.evaluate(estimated);
    };
    // variables that count an inner group may decide about an outer one
    if (plan.estimates_for_groups) {
        for (size_t index = 0; index < changed.size(); ++index) {
            changed[index] = has_changed(plan.groups[index]);
        }
        variables.increment_with_groups(changed);
        variables.estimate(estimated);
    }
    bool outer = false;
    for (size_t index = 0; index < changed.size(); ++index) {
        outer = outer || has_changed(plan.groups[index]);
        changed[index] = outer;
    }
}

}  // namespace velora::engine
