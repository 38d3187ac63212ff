#pragma once

#include <vector>

#include "engine/fill/rows/variables.h"

namespace velora::engine {

/// By group: whether it ends between the row before and the one to come, since its expression or that of a group around
/// it changes. Variables that are incremented with a group that ends are incremented.
void find_group_changes(const ReportPlan& plan, Variables& variables, const Environment& before,
                        const Environment& estimated, std::vector<bool>& changed);

}  // namespace velora::engine
