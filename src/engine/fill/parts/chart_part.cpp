#include "engine/fill/parts/chart_part.h"

#include "engine/expression/pattern.h"
#include "engine/fill/parts/nested_fill.h"
#include "engine/fill/rows/arithmetic.h"

namespace velora::engine {

using model::EvaluationTime;
using ReportPart = model::Moment;

namespace {

// clang-format off
constexpr std::pair<model::LegendPosition, LegendPosition> kLegends[] = {
    {model::LegendPosition::Bottom, LegendPosition::Bottom}, {model::LegendPosition::Top, LegendPosition::Top},
    {model::LegendPosition::Left, LegendPosition::Left}, {model::LegendPosition::Right, LegendPosition::Right},
};
// clang-format on

void lay(Font& font, const model::FontAttributes& own)
{
    if (own.name) font.family = *own.name;
    if (own.size) font.size = *own.size;
    if (own.bold) font.bold = *own.bold;
    if (own.italic) font.italic = *own.italic;
}

}  // namespace

bool ChartFeed::is_pie() const
{
    return chart_kind(plan_.chart->type) == ChartKind::Pie;
}

void ChartFeed::count(const Environment& now)
{
    row_.clear();
    if (plan_.increment_when && !plan_.increment_when.is_true(now)) return;
    for (const auto& series : plan_.series) {
        const Value value = series.value.evaluate(now);
        row_.push_back({is_pie() ? std::string() : series.series.text(now).value_or(std::string()),
                        series.category.text(now).value_or(std::string()),
                        value.is_null() ? std::nullopt : std::optional(as_double(value))});
    }
    if (plan_.chart->increment != ReportPart::None && !plan_.rows) return;
    for (const auto& point : row_) {
        add(point);
    }
}

void ChartFeed::add(const Point& point)
{
    const auto [category, new_category] = category_index_.try_emplace(point.category, categories_.size());
    if (new_category) categories_.push_back(point.category);
    const auto [series, new_series] = series_index_.try_emplace(point.series, series_.size());
    if (new_series) series_.push_back({point.series, {}, {}});
    auto& values = series_[series->second].values;
    if (values.size() <= category->second) values.resize(category->second + 1);
    values[category->second] = point.value;
}

void ChartFeed::begin(ReportPart part, const std::vector<bool>& changed)
{
    const model::Chart& chart = *plan_.chart;
    const auto falls = [&](ReportPart asked, int group) {
        if (part == ReportPart::Page) return asked == ReportPart::Page || asked == ReportPart::Column;
        if (part == ReportPart::Group) return asked == ReportPart::Group && changed[static_cast<size_t>(group)];
        return asked == part;
    };
    if (part != ReportPart::Report && falls(chart.increment, plan_.increment_group)) take_waiting();
    if (!falls(chart.reset, plan_.reset_group)) return;
    categories_.clear();
    series_.clear();
    category_index_.clear();
    series_index_.clear();
}

void ChartFeed::take_waiting()
{
    if (plan_.chart->increment == ReportPart::None) return;
    for (const auto& point : row_) {
        add(point);
    }
    row_.clear();
}

void ChartFeed::describe(ChartData& data, const Environment& environment, const Style& style) const
{
    const model::Chart& chart = *plan_.chart;
    const auto text = [&](const Expression& expression) {
        return expression.text(environment).value_or(std::string());
    };
    data.kind = chart_kind(chart.type).value_or(ChartKind::Bar);
    data.title = text(plan_.title);
    data.subtitle = text(plan_.subtitle);
    data.category_axis = text(plan_.category_axis);
    data.value_axis = text(plan_.value_axis);
    data.horizontal = chart.horizontal;
    data.legend = chart.show_legend.value_or(true);
    for (const auto& [written, position] : kLegends) {
        if (written == chart.legend_position) data.legend_position = position;
    }
    data.value_labels = chart.show_values || chart.show_labels;
    if (!chart.label_format.empty()) data.slice_label = chart.label_format;
    data.fore = style.fore;
    data.title_color = chart.title_color;
    data.subtitle_color = chart.subtitle_color;
    data.legend_color = chart.legend_color;
    for (Font* font : {&data.title_font, &data.subtitle_font, &data.label_font}) font->family = style.font.family;
    lay(data.title_font, chart.title_font);
    lay(data.subtitle_font, chart.subtitle_font);
    lay(data.label_font, chart.legend_font);
    if (chart.value_axis_pattern.empty()) return;
    const auto pattern = std::make_shared<Pattern>(chart.value_axis_pattern, environment.surroundings());
    data.mark_text = [pattern](double mark) { return pattern->format(Value(mark)); };
}

ChartData ChartFeed::data(const Environment& environment, const Style& style) const
{
    ChartData data;
    describe(data, environment, style);
    data.categories = categories_;
    data.series = series_;
    for (auto& series : data.series) {
        series.values.resize(categories_.size());
    }
    const auto& colors = plan_.chart->colors;  // without alpha: not stated
    if (data.kind == ChartKind::Pie) {
        const auto stated = [](const Color& color) { return color.alpha != 0; };
        if (std::all_of(colors.begin(), colors.end(), stated)) data.slice_colors = colors;
        return data;
    }
    for (size_t index = 0; index < std::min(colors.size(), data.series.size()); ++index) {
        if (colors[index].alpha != 0) data.series[index].color = colors[index];
    }
    return data;
}

ChartPart::ChartPart(Run& run, const PartPlan& plan, const BandState& band)
    : Part(run, plan, band), feed_(std::make_shared<ChartFeed>(*plan.chart))
{
    if (!plan.chart->rows) run.charts.push_back(feed_);
}

void ChartPart::evaluate(Moment moment)
{
    reset();
    moment_ = moment;
    evaluate_print_when(moment);
    if (print_when_holds_) dress_ = &dress(moment);
}

std::shared_ptr<const Drawing> ChartPart::drawn(Moment moment, const Place& place)
{
    if (plan_.chart->rows) {
        feed_ = std::make_shared<ChartFeed>(*plan_.chart);
        read_nested(run_, *plan_.chart->rows, moment, [&](const Environment& row) { feed_->count(row); });
    }
    return draw_chart(feed_->data(run_.at(moment), *dress_->style), static_cast<float>(place.width),
                      static_cast<float>(place.height), run_.measurer);
}

void ChartPart::emit(Emission& emission)
{
    Element& element = add(emission, dress_->style);
    element.content = Graphic{};
    if (plan_.evaluation == EvaluationTime::Now) {
        element.content = Graphic{drawn(moment_, element.place)};
    } else if (plan_.evaluation == EvaluationTime::Auto) {
        await(emission, {EvaluationTime::Report, kNoGroup, nullptr});
    } else {
        await(emission, awaited());
    }
}

void ChartPart::resolve(Waiting&, Element& element, Moment moment)
{
    dress_ = &dress(moment);
    element.content = Graphic{drawn(moment, element.place)};
}

}  // namespace velora::engine
