#pragma once

#include <memory>
#include <vector>

#include "engine/chart/chart.h"
#include "engine/plan/nested_plan.h"
#include "engine/plan/plan.h"

namespace velora::engine {

struct SeriesPlan {
    Expression series, category, value, label;
};

struct RangePlan {
    Expression low, high;
};

/// A chart of a definition with its expressions compiled.
struct ChartPlan {
    const model::Chart* chart = nullptr;
    Expression title, subtitle, category_axis, value_axis, increment_when;
    std::vector<SeriesPlan> series;
    RangePlan value_ends, category_ends;  ///< of the axes
    RangePlan gauge;
    std::vector<RangePlan> intervals;  ///< of the gauge
    std::unique_ptr<NestedPlan> rows;  ///< of a sub-dataset; null when the rows of the report feed the chart
    int reset_group = kNoGroup;
    int increment_group = kNoGroup;
};

/// The form in which a chart of that name is drawn; none when it is not.
std::optional<ChartKind> chart_kind(std::string_view name);

std::unique_ptr<ChartPlan> plan_chart(const model::Chart& chart, const Names& names,
                                      const model::Definition& definition, std::unique_ptr<NestedPlan> rows,
                                      Refusals* refusals);

}  // namespace velora::engine
