#include <algorithm>

#include "engine/definition/parts.h"
#include "values/text.h"

namespace velora::engine {

namespace {

using namespace model;

constexpr auto kTypes = std::to_array<std::string_view>(
    {"pie",    "pie3D",       "bar",     "bar3D",  "stackedBar", "stackedBar3D", "line",
     "area",   "stackedArea", "xyBar",   "xyLine", "xyArea",     "scatter",      "timeSeries",
     "bubble", "candlestick", "highLow", "gantt",  "meter",      "thermometer",  "multiAxis"});

void warn_axis_color(Chart&, const Attribute& attribute)
{
    attribute.warn("axes are drawn in the colour of the chart");
}

void warn_axis_font(Chart&, Tag& child)
{
    child.ignore_all();
    child.each_child([](Tag& font) {
        font.ignore_all();
        return true;
    });
    child.warn("axes are written in the font of the legend");
}

void keep_title_on_top(Chart&, const Attribute& attribute)
{
    if (attribute.text() != "Top") attribute.warn("titles stand on top");
}

constexpr auto kLegendPositions = std::to_array<Choice<LegendPosition>>({{"Bottom", LegendPosition::Bottom},
                                                                         {"Top", LegendPosition::Top},
                                                                         {"Left", LegendPosition::Left},
                                                                         {"Right", LegendPosition::Right}});

// clang-format off
constexpr auto kChartRules = std::to_array<AttributeRule<Chart>>({
    {"chartType",             set_nothing<Chart>},
    {"showLegend",            set_flag<&Chart::show_legend>},
    {"evaluationTime",        set_choice<&Chart::evaluation, kEvaluationTimes>},
    {"evaluationGroup",       set_text<&Chart::evaluation_group>},
    {"titlePosition",         keep_title_on_top},
    {"titleColor",            set_color<&Chart::title_color>},
    {"subtitleColor",         set_color<&Chart::subtitle_color>},
    {"legendPosition",        set_choice<&Chart::legend_position, kLegendPositions>},
    {"legendColor",           set_color<&Chart::legend_color>},
    {"legendBackgroundColor", set_nothing<Chart>},
    {"customizerClass",       [](Chart&, const Attribute& a) { a.warn("chart customizers are not run"); }},
    {"renderType",            set_nothing<Chart>},
    {"theme",                 set_nothing<Chart>},
});

constexpr auto kTitleRules = std::to_array<AttributeRule<Chart>>({
    {"position", keep_title_on_top},
    {"color",    set_color<&Chart::title_color>},
});
constexpr auto kSubtitleRules = std::to_array<AttributeRule<Chart>>({
    {"color", set_color<&Chart::subtitle_color>},
});
constexpr auto kLegendRules = std::to_array<AttributeRule<Chart>>({
    {"position",        set_choice<&Chart::legend_position, kLegendPositions>},
    {"textColor",       set_color<&Chart::legend_color>},
    {"color",           set_color<&Chart::legend_color>},
    {"backgroundColor", set_nothing<Chart>},
});

constexpr auto kOrientations = std::to_array<Choice<bool>>({{"Horizontal", true}, {"Vertical", false}});

constexpr auto kPeriods = std::to_array<Choice<TimePeriod>>({
    {"Year", TimePeriod::Year}, {"Quarter", TimePeriod::Quarter}, {"Month", TimePeriod::Month},
    {"Week", TimePeriod::Week}, {"Day", TimePeriod::Day}, {"Hour", TimePeriod::Hour}, {"Minute", TimePeriod::Minute},
    {"Second", TimePeriod::Second}, {"Milisecond", TimePeriod::Millisecond}, {"Millisecond", TimePeriod::Millisecond}});

constexpr auto kPlotRules = std::to_array<AttributeRule<Chart>>({
    {"showLabels",            set_flag<&Chart::show_labels>},
    {"orientation",           set_choice<&Chart::horizontal, kOrientations>},
    {"labelFormat",           set_text<&Chart::label_format>},
    {"valueAxisTickLabelMask", set_text<&Chart::value_axis_pattern>},
    {"kind",                  set_nothing<Chart>},
    {"legendLabelFormat",     set_nothing<Chart>},
    {"circular",              set_nothing<Chart>},
    {"showTickLabels",        set_nothing<Chart>},
    {"showTickMarks",         set_nothing<Chart>},
    {"showLines",             set_flag<&Chart::show_lines>},
    {"showShapes",            set_flag<&Chart::show_shapes>},
    {"yAxisTickLabelMask",    set_text<&Chart::value_axis_pattern>},
    {"xAxisTickLabelMask",    set_text<&Chart::category_axis_pattern>},
    {"timeAxisTickLabelMask", set_text<&Chart::category_axis_pattern>},
    {"categoryAxisTickLabelMask", set_nothing<Chart>},
    {"backcolor",             set_nothing<Chart>},
    {"backgroundAlpha",       set_nothing<Chart>},
    {"foregroundAlpha",       set_nothing<Chart>},
    {"labelRotation",         set_nothing<Chart>},
    {"depthFactor",           set_nothing<Chart>},
    {"xOffset",               set_nothing<Chart>},
    {"yOffset",               set_nothing<Chart>},
    {"categoryAxisLabelColor",     warn_axis_color},
    {"categoryAxisTickLabelColor", warn_axis_color},
    {"categoryAxisLineColor",      warn_axis_color},
    {"categoryAxisTickLabelRotation", set_nothing<Chart>},
    {"valueAxisLabelColor",        warn_axis_color},
    {"valueAxisTickLabelColor",    warn_axis_color},
    {"valueAxisLineColor",         warn_axis_color},
    {"xAxisLabelColor",            warn_axis_color},
    {"xAxisTickLabelColor",        warn_axis_color},
    {"xAxisLineColor",             warn_axis_color},
    {"yAxisLabelColor",            warn_axis_color},
    {"yAxisTickLabelColor",        warn_axis_color},
    {"yAxisLineColor",             warn_axis_color},
    {"timeAxisLabelColor",         warn_axis_color},
    {"timeAxisTickLabelColor",     warn_axis_color},
    {"timeAxisLineColor",          warn_axis_color},
    {"xAxisVerticalTickLabels",    set_nothing<Chart>},
    {"yAxisVerticalTickLabels",    set_nothing<Chart>},
    {"timeAxisVerticalTickLabels", set_nothing<Chart>},
    {"valueAxisVerticalTickLabels", set_nothing<Chart>},
    {"categoryAxisVerticalTickLabels", set_nothing<Chart>},
});

// A dial or a tube; the second name of each pair is that of the classic form.
constexpr auto kGaugeRules = std::to_array<AttributeRule<Gauge>>({
    {"units",                set_text<&Gauge::units>},
    {"tickInterval",         set_number<&Gauge::tick_interval>},
    {"tickCount",            set_nothing<Gauge>},
    {"meterAngle",           set_whole<&Gauge::angle, 0, 360>},
    {"angle",                set_whole<&Gauge::angle, 0, 360>},
    {"meterColor",           set_color<&Gauge::face>},
    {"meterBackgroundColor", set_color<&Gauge::face>},
    {"needleColor",          set_color<&Gauge::needle>},
    {"mercuryColor",         set_color<&Gauge::needle>},
    {"tickColor",            set_color<&Gauge::ticks>},
    {"shape",                set_nothing<Gauge>},
    {"valueLocation",        set_nothing<Gauge>},
    {"showValueLines",       set_nothing<Gauge>},
});

constexpr auto kIntervalRules = std::to_array<AttributeRule<Gauge::Interval>>({
    {"label",           set_text<&Gauge::Interval::label>},
    {"backgroundColor", set_color<&Gauge::Interval::color>},
    {"color",           set_color<&Gauge::Interval::color>},
    {"alpha",           set_number<&Gauge::Interval::alpha>},
});

constexpr auto kValueDisplayRules = std::to_array<AttributeRule<Gauge>>({
    {"color", set_color<&Gauge::value_color>},
    {"mask",  set_text<&Gauge::value_pattern>},
});

constexpr auto kRangeChildren = std::to_array<ChildRule<DataRange>>({
    {"lowExpression",  read_expression<&DataRange::low>},
    {"highExpression", read_expression<&DataRange::high>},
});

constexpr auto kDataRules = std::to_array<AttributeRule<Chart>>({
    {"kind",           set_nothing<Chart>},
    {"resetType",      set_choice<&Chart::reset, kMoments>},
    {"resetGroup",     set_text<&Chart::reset_group>},
    {"incrementType",  set_choice<&Chart::increment, kMoments>},
    {"incrementGroup", set_text<&Chart::increment_group>},
    {"timePeriod",     set_choice<&Chart::period, kPeriods>},
    {"maxCount",       set_nothing<Chart>},
    {"minPercentage",  set_nothing<Chart>},
});

constexpr auto kSeriesRules = std::to_array<AttributeRule<ChartSeries>>({
    {"autoSort", set_flag<&ChartSeries::in_order>},
});

constexpr auto kSeriesChildren = std::to_array<ChildRule<ChartSeries>>({
    {"seriesExpression",     read_expression<&ChartSeries::series>},
    {"categoryExpression",   read_expression<&ChartSeries::category>},
    {"keyExpression",        read_expression<&ChartSeries::category>},
    {"xValueExpression",     read_expression<&ChartSeries::category>},
    {"xvalueExpression",     read_expression<&ChartSeries::category>},
    {"timePeriodExpression", read_expression<&ChartSeries::category>},
    {"valueExpression",      read_expression<&ChartSeries::value>},
    {"yValueExpression",     read_expression<&ChartSeries::value>},
    {"yvalueExpression",     read_expression<&ChartSeries::value>},
    {"labelExpression",      read_expression<&ChartSeries::label>},
    {"itemHyperlink",        read_nothing<ChartSeries>},
    {"sectionHyperlink",     read_nothing<ChartSeries>},
});

constexpr auto kSeriesNames = std::to_array<std::string_view>({
    "series", "categorySeries", "pieSeries", "xySeries", "timeSeries"});
// clang-format on

template <auto font>
void read_chart_font(Chart& chart, Tag& child)
{
    child.read<FontAttributes>(font_rules(), chart.*font);
}

/// The fonts of the wrapped parts are called just "font".
template <auto font, const auto& rules>
void read_wrapped(Chart& chart, Tag& tag)
{
    tag.read<Chart>(rules, chart);
    tag.each_child([&](Tag& child) {
        if (child.name() != "font") return read_chart_child(chart, child);
        read_chart_font<font>(chart, child);
        return true;
    });
}

// -------------------------------------------------------------------------------------------------- dataset

void read_data(Chart& chart, Tag& tag)
{
    tag.read<Chart>(kDataRules, chart);
    ChartSeries direct;
    bool has_direct = false;
    tag.each_child([&](Tag& child) {
        const auto name = child.name();
        if (std::ranges::find(kSeriesNames, name) != kSeriesNames.end()) {
            ChartSeries& series = chart.series.emplace_back();
            child.read<ChartSeries>(kSeriesRules, series);
            child.each_child([&](Tag& part) { return read_child<ChartSeries>(kSeriesChildren, series, part); });
        } else if (name == "dataset") {
            read_data(chart, child);
        } else if (name == "datasetRun") {
            chart.run = read_dataset_run(child);
        } else if (name == "incrementWhenExpression") {
            chart.increment_when = child.expression();
        } else if (name == "otherKeyExpression" || name == "otherLabelExpression" || name == "otherSectionHyperlink") {
            child.ignore_all();
        } else if (read_child<ChartSeries>(kSeriesChildren, direct, child)) {
            has_direct = true;
        } else {
            return false;
        }
        return true;
    });
    if (has_direct) chart.series.push_back(std::move(direct));
}

// ----------------------------------------------------------------------------------------------------- plot

/// Colours come in any order with their number.
void read_series_color(Chart& chart, Tag& tag)
{
    struct Numbered {
        int order = 0;
        Color color;
    } out;
    static constexpr auto kRules =
        std::to_array<AttributeRule<Numbered>>({{"order", set_whole<&Numbered::order, 0, 999>},
                                                {"seriesOrder", set_whole<&Numbered::order, 0, 999>},
                                                {"color", set_color<&Numbered::color>}});
    tag.read<Numbered>(kRules, out);
    const auto at = static_cast<size_t>(out.order);
    if (chart.colors.size() <= at) chart.colors.resize(at + 1, Color{0, 0, 0, 0});
    chart.colors[at] = out.color;
}

template <auto pattern>
void read_axis_format(Chart& chart, Tag& tag)
{
    const auto mask = tag.value("tickLabelMask");
    if (!mask.empty()) chart.*pattern = mask;
    tag.ignore_all();
    tag.each_child([&](Tag& child) {
        if (child.name() == "axisFormat") read_axis_format<pattern>(chart, child);
        child.ignore_all();
        return true;
    });
}

void read_item_label(Chart& chart, Tag& tag)
{
    chart.show_values = true;
    tag.ignore_all();
    tag.each_child([](Tag& child) {
        child.ignore_all();
        return true;
    });
}

void read_plot(Chart& chart, Tag& tag);

/// A range stands in the element itself or, in the classic form, in one inside it.
void read_range(DataRange& range, Tag& tag)
{
    tag.each_child([&](Tag& child) {
        if (child.name() != "dataRange") return read_child<DataRange>(kRangeChildren, range, child);
        read_range(range, child);
        return true;
    });
}

void read_interval(Chart& chart, Tag& tag)
{
    auto& interval = chart.gauge.intervals.emplace_back();
    tag.read<Gauge::Interval>(kIntervalRules, interval);
    read_range(interval.range, tag);
}

/// The ranges of a tube have no names and no colours.
void read_tube_range(Chart& chart, Tag& tag)
{
    read_range(chart.gauge.intervals.emplace_back().range, tag);
}

void read_value_display(Chart& chart, Tag& tag)
{
    tag.read<Gauge>(kValueDisplayRules, chart.gauge);
    tag.each_child([&](Tag& child) {
        child.ignore_all();
        return child.name() == "font";
    });
}

constexpr auto kPlotChildren = std::to_array<ChildRule<Chart>>({
    // clang-format off
    {"plot",                        read_plot},
    {"seriesColor",                 read_series_color},
    {"itemLabel",                   read_item_label},
    {"categoryAxisLabelExpression", read_expression<&Chart::category_axis_label>},
    {"xAxisLabelExpression",        read_expression<&Chart::category_axis_label>},
    {"timeAxisLabelExpression",     read_expression<&Chart::category_axis_label>},
    {"valueAxisLabelExpression",    read_expression<&Chart::value_axis_label>},
    {"yAxisLabelExpression",        read_expression<&Chart::value_axis_label>},
    {"valueAxisFormat",             read_axis_format<&Chart::value_axis_pattern>},
    {"yAxisFormat",                 read_axis_format<&Chart::value_axis_pattern>},
    {"categoryAxisFormat",          read_axis_format<&Chart::category_axis_pattern>},
    {"xAxisFormat",                 read_axis_format<&Chart::category_axis_pattern>},
    {"timeAxisFormat",              read_axis_format<&Chart::category_axis_pattern>},
    {"categoryAxisLabelFont",       warn_axis_font},
    {"categoryAxisTickLabelFont",   warn_axis_font},
    {"valueAxisLabelFont",          warn_axis_font},
    {"valueAxisTickLabelFont",      warn_axis_font},
    {"xaxisLabelExpression",        read_expression<&Chart::category_axis_label>},
    {"yaxisLabelExpression",        read_expression<&Chart::value_axis_label>},
    {"xAxisLabelFont",              warn_axis_font},
    {"xAxisTickLabelFont",          warn_axis_font},
    {"yAxisLabelFont",              warn_axis_font},
    {"yAxisTickLabelFont",          warn_axis_font},
    {"timeAxisLabelFont",           warn_axis_font},
    {"timeAxisTickLabelFont",       warn_axis_font},
    {"domainAxisMinValueExpression", read_expression<&Chart::category_axis_least>},
    {"domainAxisMaxValueExpression", read_expression<&Chart::category_axis_most>},
    {"rangeAxisMinValueExpression", read_expression<&Chart::value_axis_least>},
    {"rangeAxisMaxValueExpression", read_expression<&Chart::value_axis_most>},
    {"dataRange",                   [](Chart& chart, Tag& tag) { read_range(chart.gauge.range, tag); }},
    {"valueDisplay",                read_value_display},
    {"tickLabelFont",               warn_axis_font},
    {"meterInterval",               read_interval},
    {"interval",                    read_interval},
    {"lowRange",                    read_tube_range},
    {"mediumRange",                 read_tube_range},
    {"highRange",                   read_tube_range},
    // clang-format on
});

void read_plot(Chart& chart, Tag& tag)
{
    tag.read<Chart>(kPlotRules, chart);
    tag.read<Gauge>(kGaugeRules, chart.gauge);
    tag.each_child([&](Tag& child) { return read_child<Chart>(kPlotChildren, chart, child); });
}

constexpr auto kChartChildren = std::to_array<ChildRule<Chart>>({
    // clang-format off
    {"dataset",            read_data},
    {"pieDataset",         read_data},
    {"categoryDataset",    read_data},
    {"xyDataset",          read_data},
    {"timeSeriesDataset",  read_data},
    {"valueDataset",       read_data},
    {"plot",               read_plot},
    {"piePlot",            read_plot},
    {"pie3DPlot",          read_plot},
    {"barPlot",            read_plot},
    {"bar3DPlot",          read_plot},
    {"linePlot",           read_plot},
    {"areaPlot",           read_plot},
    {"timeSeriesPlot",     read_plot},
    {"scatterPlot",        read_plot},
    {"meterPlot",          read_plot},
    {"thermometerPlot",    read_plot},
    {"chartTitle",         read_wrapped<&Chart::title_font, kTitleRules>},
    {"chartSubtitle",      read_wrapped<&Chart::subtitle_font, kSubtitleRules>},
    {"chartLegend",        read_wrapped<&Chart::legend_font, kLegendRules>},
    {"titleFont",          read_chart_font<&Chart::title_font>},
    {"subtitleFont",       read_chart_font<&Chart::subtitle_font>},
    {"legendFont",         read_chart_font<&Chart::legend_font>},
    {"titleExpression",    read_expression<&Chart::title>},
    {"subtitleExpression", read_expression<&Chart::subtitle>},
    // clang-format on
});

}  // namespace

std::string chart_type(std::string_view written)
{
    if (written.ends_with("Chart")) written.remove_suffix(5);
    const auto found = std::ranges::find_if(kTypes, [&](std::string_view type) { return same_name(type, written); });
    return found == kTypes.end() ? std::string() : std::string(*found);
}

std::span<const AttributeRule<Chart>> chart_rules()
{
    return kChartRules;
}

bool read_chart_child(Chart& target, Tag& child)
{
    return read_child<Chart>(kChartChildren, target, child);
}

}  // namespace velora::engine
