#include "engine/fill/parts/chart_part.h"

#include <algorithm>

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

std::optional<double> number_of(const Expression& expression, const Environment& environment)
{
    if (!expression) return std::nullopt;
    const Value value = expression.evaluate(environment);
    if (value.is_null()) return std::nullopt;
    if (const auto* date = value.get_if<DateTime>()) return static_cast<double>(date->unix_milliseconds());
    return as_double(value);
}

DateTime date_at(double time)
{
    return DateTime::from_unix_milliseconds(static_cast<int64_t>(time));
}

/// The beginning of the period in which a time falls.
DateTime period_start(const DateTime& time, model::TimePeriod period)
{
    const auto at = time.parts();
    const auto day = [](int year, int month) { return DateTime::from_ymd(year, month, 1).value_or(DateTime()); };
    constexpr int kMinute = 60, kHour = 3600;
    const int second = time.second_of_day();
    switch (period) {
        case model::TimePeriod::Year:
            return day(at.year, 1);
        case model::TimePeriod::Quarter:
            return day(at.year, (at.month - 1) / 3 * 3 + 1);
        case model::TimePeriod::Month:
            return day(at.year, at.month);
        case model::TimePeriod::Week:
            return {time.serial_day() - (time.weekday() + 6) % 7, 0};
        case model::TimePeriod::Day:
            return time.date_only();
        case model::TimePeriod::Hour:
            return {time.serial_day(), second / kHour * kHour};
        case model::TimePeriod::Minute:
            return {time.serial_day(), second / kMinute * kMinute};
        case model::TimePeriod::Second:
        case model::TimePeriod::Millisecond:
            break;
    }
    return time;
}

/// Where a point stands on the x axis; none for what is neither a number nor a time.
std::optional<double> x_of(const Value& value, const model::Chart& chart)
{
    if (chart.type == "timeSeries") {
        const auto date = date_in(value);
        if (!date) return std::nullopt;
        return static_cast<double>(period_start(*date, chart.period).unix_milliseconds());
    }
    if (value.is_null()) return std::nullopt;
    if (const auto* date = value.get_if<DateTime>()) return static_cast<double>(date->unix_milliseconds());
    return as_double(value);
}

}  // namespace

ChartFeed::ChartFeed(const ChartPlan& plan)
    : plan_(plan), kind_(chart_kind(plan.chart->type).value_or(ChartKind::Unknown))
{
}

ChartFeed::Point ChartFeed::point_of(const SeriesPlan& series, const Environment& now) const
{
    const Value value = series.value.evaluate(now);
    Point point;
    if (!value.is_null()) point.value = as_double(value);
    if (kind_ != ChartKind::Pie) point.series = series.series.text(now).value_or(std::string());
    if (kind_ == ChartKind::Xy) {
        point.x = x_of(series.category.evaluate(now), *plan_.chart);
    } else {
        point.category = series.category.text(now).value_or(std::string());
    }
    return point;
}

void ChartFeed::count(const Environment& now)
{
    row_.clear();
    if (plan_.increment_when && !plan_.increment_when.is_true(now)) return;
    for (const auto& series : plan_.series) row_.push_back(point_of(series, now));
    if (plan_.chart->increment != ReportPart::None && !plan_.rows) return;
    for (const auto& point : row_) {
        add(point);
    }
}

void ChartFeed::add(const Point& point)
{
    if (kind_ == ChartKind::Meter || kind_ == ChartKind::Thermometer) {
        value_ = point.value;
        return;
    }
    const auto [series, is_new] = series_index_.try_emplace(point.series, series_.size());
    if (is_new) series_.push_back({point.series, {}, {}});
    add_to(series_[series->second], point);
}

void ChartFeed::add_to(ChartSeries& series, const Point& point)
{
    if (kind_ == ChartKind::Xy) {
        if (point.x && point.value) series.points.push_back({*point.x, *point.value});
        return;
    }
    const auto [category, is_new] = category_index_.try_emplace(point.category, categories_.size());
    if (is_new) categories_.push_back(point.category);
    if (series.values.size() <= category->second) series.values.resize(category->second + 1);
    series.values[category->second] = point.value;
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
    value_.reset();
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
    data.kind = kind_;
    data.unknown = chart.type;
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
    describe_axes(data, environment);
    describe_gauge(data, environment);
}

void ChartFeed::describe_axes(ChartData& data, const Environment& environment) const
{
    const model::Chart& chart = *plan_.chart;
    const auto& surroundings = environment.surroundings();
    data.lines = chart.show_lines && (chart.type != "xyArea");
    data.markers = chart.show_shapes && chart.type != "xyArea";
    data.filled = chart.type == "xyArea";
    data.dates = chart.type == "timeSeries";
    data.least = number_of(plan_.value_ends.low, environment);
    data.most = number_of(plan_.value_ends.high, environment);
    data.x_least = number_of(plan_.category_ends.low, environment);
    data.x_most = number_of(plan_.category_ends.high, environment);
    data.date_text = [surroundings](double time, std::string_view written) {
        return Pattern(written, surroundings).format(Value(date_at(time)));
    };
    if (!chart.value_axis_pattern.empty()) {
        const auto pattern = std::make_shared<Pattern>(chart.value_axis_pattern, surroundings);
        data.mark_text = [pattern](double mark) { return pattern->format(Value(mark)); };
    }
    if (!chart.category_axis_pattern.empty()) {
        const auto pattern = std::make_shared<Pattern>(chart.category_axis_pattern, surroundings);
        const bool dates = data.dates;
        data.x_text = [pattern, dates](double x) { return pattern->format(dates ? Value(date_at(x)) : Value(x)); };
    }
}

void ChartFeed::describe_gauge(ChartData& data, const Environment& environment) const
{
    const model::Gauge& gauge = plan_.chart->gauge;
    ChartGauge& shown = data.gauge;
    shown.value = value_;
    shown.low = number_of(plan_.gauge.low, environment).value_or(shown.low);
    shown.high = number_of(plan_.gauge.high, environment).value_or(shown.high);
    for (size_t at = 0; at < plan_.intervals.size(); ++at) {
        const auto& written = gauge.intervals[at];
        auto color = written.color;
        if (color) color->alpha = static_cast<uint8_t>(std::clamp(written.alpha, 0.0F, 1.0F) * 255);
        shown.intervals.push_back({written.label, number_of(plan_.intervals[at].low, environment).value_or(shown.low),
                                   number_of(plan_.intervals[at].high, environment).value_or(shown.high), color});
    }
    shown.units = gauge.units;
    if (!gauge.value_pattern.empty() && value_) {
        shown.text = Pattern(gauge.value_pattern, environment.surroundings()).format(Value(*value_));
        if (!gauge.units.empty()) shown.text += " " + gauge.units;
    }
    if (gauge.tick_interval) shown.tick = *gauge.tick_interval;
    shown.angle = static_cast<float>(gauge.angle);
    shown.face = gauge.face;
    shown.needle = gauge.needle;
    shown.ticks = gauge.ticks;
    shown.text_color = gauge.value_color;
}

/// Points by their x; of a time series the last one of each period.
void ChartFeed::sort_points(ChartData& data) const
{
    const bool as_they_come = std::ranges::any_of(plan_.chart->series, [](const auto& each) { return !each.in_order; });
    if (as_they_come && !data.dates) return;
    for (ChartSeries& series : data.series) {
        std::ranges::stable_sort(series.points, {}, &XyPoint::x);
        if (!data.dates) continue;
        std::vector<XyPoint> last;
        for (const XyPoint& point : series.points) {
            if (last.empty() || last.back().x != point.x) last.push_back(point);
            last.back() = point;
        }
        series.points = std::move(last);
    }
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
    sort_points(data);
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
