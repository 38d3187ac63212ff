#include "engine/plan/chart_plan.h"

#include "engine/plan/plan_names.h"

namespace velora::engine {

namespace {

struct KindName {
    std::string_view name;
    ChartKind kind;
};
// clang-format off
constexpr KindName kKinds[] = {
    {"pie",        ChartKind::Pie},        {"pie3D",        ChartKind::Pie},
    {"bar",        ChartKind::Bar},        {"bar3D",        ChartKind::Bar},        {"xyBar", ChartKind::Bar},
    {"stackedBar", ChartKind::StackedBar}, {"stackedBar3D", ChartKind::StackedBar},
    {"line",       ChartKind::Line},       {"xyLine",       ChartKind::Xy},         {"timeSeries", ChartKind::Xy},
    {"scatter",    ChartKind::Xy},         {"xyArea",       ChartKind::Xy},
    {"area",       ChartKind::Area},       {"stackedArea",  ChartKind::StackedArea},
    {"meter",      ChartKind::Meter},      {"thermometer",  ChartKind::Thermometer},
};
// clang-format on

}  // namespace

std::optional<ChartKind> chart_kind(std::string_view name)
{
    for (const auto& kind : kKinds) {
        if (kind.name == name) return kind.kind;
    }
    return std::nullopt;
}

std::unique_ptr<ChartPlan> plan_chart(const model::Chart& chart, const Names& names,
                                      const model::Definition& definition, std::unique_ptr<NestedPlan> rows,
                                      Refusals* refusals)
{
    std::optional<PlanNames> own_names;
    if (rows) own_names.emplace(*rows->report, refusals);
    const Names& names_of_rows = own_names ? *own_names : names;
    const auto compiled_with = [](const Names& known, const model::ExpressionText& text) {
        return text.present() ? compile(text.text, known, text.place, "chart") : Expression();
    };
    const auto compiled = [&](const model::ExpressionText& text) { return compiled_with(names, text); };
    const auto of_row = [&](const model::ExpressionText& text) { return compiled_with(names_of_rows, text); };
    auto plan = std::make_unique<ChartPlan>();
    plan->chart = &chart;
    plan->title = compiled(chart.title);
    plan->subtitle = compiled(chart.subtitle);
    plan->category_axis = compiled(chart.category_axis_label);
    plan->value_axis = compiled(chart.value_axis_label);
    const auto range = [&](const model::ExpressionText& low, const model::ExpressionText& high) {
        return RangePlan{compiled(low), compiled(high)};
    };
    plan->value_ends = range(chart.value_axis_least, chart.value_axis_most);
    plan->category_ends = range(chart.category_axis_least, chart.category_axis_most);
    plan->gauge = range(chart.gauge.range.low, chart.gauge.range.high);
    for (const auto& interval : chart.gauge.intervals) {
        plan->intervals.push_back(range(interval.range.low, interval.range.high));
    }
    plan->increment_when = of_row(chart.increment_when);
    for (const auto& series : chart.series) {
        plan->series.push_back(
            {of_row(series.series), of_row(series.category), of_row(series.value), of_row(series.label)});
    }
    if (rows) {
        plan->rows = std::move(rows);
        return plan;
    }
    if (chart.reset == model::Moment::Group) plan->reset_group = group_index(definition, chart.reset_group, {});
    if (chart.increment == model::Moment::Group) {
        plan->increment_group = group_index(definition, chart.increment_group, {});
    }
    return plan;
}

}  // namespace velora::engine
