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
    std::vector<Value> returned;   ///< as many as the plan has return values
    std::vector<Waiting> waiting;  ///< for the end of the outermost report; the paths begin in `elements`
    int height = 0;
};

/// The plan for the moment: the one that is given, or that of the name which the row gives. Null, and a warning, when
/// there is none.
const NestedPlan* plan_of(Run& around, const NestedPlan& nested, Moment moment);

NestedPrint fill_nested(Run& around, const NestedPlan& nested, Moment moment);

/// Hands each row of a nested report to `take`, counted.
void read_nested(Run& around, const NestedPlan& nested, Moment moment,
                 const std::function<void(const Environment&)>& take);

}  // namespace velora::engine
