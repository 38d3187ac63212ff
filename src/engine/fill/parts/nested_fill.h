#pragma once

#include <functional>
#include <vector>

#include "engine/fill/parts/run.h"
#include "engine/plan/nested_plan.h"

namespace velora::engine {

/// What a nested report prints, on one page without an end.
struct NestedPrint {
    std::vector<Element> elements;
    std::vector<int> row_ends;  ///< where its bands end, which are good places to go over to another page
    std::vector<Source> sources;
    int height = 0;
};

NestedPrint fill_nested(Run& around, const NestedPlan& nested, Moment moment);

/// Hands each row of a nested report to `take`, counted.
void read_nested(Run& around, const NestedPlan& nested, Moment moment,
                 const std::function<void(const Environment&)>& take);

}  // namespace velora::engine
