#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/page/style.h"

namespace velora::engine {

/// Xy: points over a numeric or time axis. Unknown: a form that is not drawn; its name stands in its place.
enum class ChartKind : uint8_t { Pie, Bar, StackedBar, Line, Area, StackedArea, Xy, Meter, Thermometer, Unknown };
enum class LegendPosition : uint8_t { Bottom, Top, Left, Right };

struct XyPoint {
    double x, y;
};

struct ChartSeries {
    std::string name;
    std::vector<std::optional<double>> values;  ///< one for each category; none leaves a gap
    std::optional<Color> color;                 ///< none: from the chart's own palette
    std::vector<XyPoint> points{};              ///< of an xy chart, instead of values
};

/// A dial or a tube that shows one value.
struct ChartGauge {
    struct Interval {
        std::string label;
        double low, high;
        std::optional<Color> color;  ///< none: from the chart's own palette
    };
    std::optional<double> value;
    double low = 0, high = 100;
    std::vector<Interval> intervals;
    std::string units;
    std::string text;            ///< of the value; empty: the number and its units
    std::optional<double> tick;  ///< from a mark to the next
    float angle = 180;           ///< of the dial, in degrees
    std::optional<Color> face, needle, ticks, text_color;
};

/// What a chart shows. A pie shows its first series, one slice for each category.
struct ChartData {
    ChartKind kind = ChartKind::Bar;
    std::vector<std::string> categories;
    std::vector<ChartSeries> series;

    std::string title, subtitle;
    std::string category_axis, value_axis;  ///< axis labels
    bool horizontal = false;                ///< bars lie
    bool legend = true;
    LegendPosition legend_position = LegendPosition::Bottom;
    bool value_labels = false;        ///< numbers at bars and points
    bool lines = true;                ///< joining the points
    bool markers = true;              ///< dots on the points of lines
    bool filled = false;              ///< the ground below the lines of an xy chart
    std::string slice_label = "{0}";  ///< of a pie: {0} category, {1} value, {2} percentage; empty for none
    std::vector<Color> palette;       ///< empty: the built-in colours, which differ in grey print too
    std::vector<Color> slice_colors;  ///< of a pie, by category; may be shorter

    std::function<std::string(double)> mark_text;  ///< of the value axis; empty: as many decimals as it needs
    std::optional<double> least, most;             ///< of the value axis; none: as the values ask for

    bool dates = false;                         ///< x of an xy chart is a time, in milliseconds since 1970
    std::function<std::string(double)> x_text;  ///< of the x axis; empty: as many decimals as it needs
    /// A time by a pattern such as "d MMM".
    std::function<std::string(double, std::string_view)> date_text;
    std::optional<double> x_least, x_most;

    ChartGauge gauge;
    std::string unknown;  ///< name of a form that is not drawn

    Font title_font{"SansSerif", 14, true, false, false, false};
    Font subtitle_font{"SansSerif", 9, false, false, false, false};
    Font label_font{"SansSerif", 9, false, false, false, false};
    Color fore = kBlack;
    std::optional<Color> title_color, subtitle_color, legend_color;  ///< none: `fore`
};

}  // namespace velora::engine
