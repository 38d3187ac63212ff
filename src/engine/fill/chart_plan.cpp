#include "engine/fill/chart_plan.h"

#include "engine/fill/plan_names.h"

namespace velora::engine {

std::unique_ptr<ChartPlan> plan_chart(const model::Chart& chart, const Names& names,
                                      const model::Definition& definition)
{
    const auto compiled = [&](const model::ExpressionText& text) {
        return text.present() ? compile(text.text, names, text.place, "chart") : Expression();
    };
    auto plan = std::make_unique<ChartPlan>();
    plan->chart = &chart;
    plan->title = compiled(chart.title);
    plan->subtitle = compiled(chart.subtitle);
    plan->category_axis = compiled(chart.category_axis_label);
    plan->value_axis = compiled(chart.value_axis_label);
    plan->increment_when = compiled(chart.increment_when);
    for (const auto& series : chart.series) {
        plan->series.push_back(
            {compiled(series.series), compiled(series.category), compiled(series.value), compiled(series.label)});
    }
    if (chart.reset == model::Moment::Group) plan->reset_group = group_index(definition, chart.reset_group, {});
    if (chart.increment == model::Moment::Group) {
        plan->increment_group = group_index(definition, chart.increment_group, {});
    }
    return plan;
}

}  // namespace velora::engine
