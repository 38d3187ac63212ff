#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/page/style.h"

namespace velora::engine {

enum class ChartKind : uint8_t { Pie, Bar, StackedBar, Line, Area };
enum class LegendPosition : uint8_t { Bottom, Top, Left, Right };

struct ChartSeries {
    std::string name;
    std::vector<std::optional<double>> values;  ///< one for each category; none leaves a gap
    std::optional<Color> color;                 ///< none: from the chart's own palette
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
    bool markers = true;              ///< dots on the points of lines
    std::string slice_label = "{0}";  ///< of a pie: {0} category, {1} value, {2} percentage; empty for none
    std::vector<Color> palette;       ///< empty: the built-in colours, which differ in grey print too
    std::vector<Color> slice_colors;  ///< of a pie, by category; may be shorter

    std::function<std::string(double)> mark_text;  ///< of the value axis; empty: as many decimals as it needs

    Font title_font{"SansSerif", 14, true, false, false, false};
    Font subtitle_font{"SansSerif", 9, false, false, false, false};
    Font label_font{"SansSerif", 9, false, false, false, false};
    Color fore = kBlack;
    std::optional<Color> title_color, subtitle_color, legend_color;  ///< none: `fore`
};

}  // namespace velora::engine
