#pragma once

#include <cmath>
#include <string>

#include "engine/chart/chart_data.h"
#include "engine/page/drawing.h"
#include "engine/text/measurer.h"

namespace velora::engine {

/// A part of the drawing, in points from its upper left corner.
struct ChartArea {
    float left = 0, top = 0, right = 0, bottom = 0;

    [[nodiscard]] float width() const { return right - left; }
    [[nodiscard]] float height() const { return bottom - top; }
    [[nodiscard]] float middle_x() const { return (left + right) / 2; }
    [[nodiscard]] float middle_y() const { return (top + bottom) / 2; }
    [[nodiscard]] bool usable() const { return width() > 4 && height() > 4; }
};

/// Puts shapes and labels on a drawing.
class ChartBoard {
public:
    ChartBoard(Drawing& drawing, Measurer& measurer, const ChartData& chart)
        : data(chart), drawing_(drawing), measurer_(measurer)
    {
    }

    const ChartData& data;

    void line(Point from, Point to, const Pen& pen);
    void polyline(const std::vector<Point>& points, const Pen& pen);
    void rectangle(const ChartArea& area, Color fill, const Pen& outline = {});
    void polygon(std::vector<Point> points, Color fill, const Pen& outline = {});
    void shape(Shape shape);
    /// `at` is on the base line.
    void label(Point at, std::string text, const Font& font, HorizontalAlign align, float angle = 0,
               std::optional<Color> color = {});
    /// The label's vertical middle is at `at.y`.
    void middle_label(Point at, std::string text, const Font& font, HorizontalAlign align,
                      std::optional<Color> color = {});
    /// One of the signs that tell series apart without colours.
    void marker(Point at, size_t series, Color color, float radius);

    [[nodiscard]] float text_width(const std::string& text, const Font& font) { return measurer_.width(text, font); }
    [[nodiscard]] float line_height(const Font& font) { return measurer_.line_height(font); }
    /// The text, or its front part with an ellipsis where it is wider than `width`.
    [[nodiscard]] std::string fitted(const std::string& text, const Font& font, float width);

    [[nodiscard]] Color series_color(size_t series) const;
    [[nodiscard]] Color slice_color(size_t category) const;
    [[nodiscard]] Color interval_color(size_t interval) const;  ///< of a gauge

private:
    [[nodiscard]] Color palette_color(size_t index) const;

    Drawing& drawing_;
    Measurer& measurer_;
};

/// The value of a series at a category; none for a gap and for what is no finite number.
std::optional<double> chart_value(const ChartSeries& series, size_t category);

/// Colour for a thin line beside a filled shape of the given colour.
Color darker(Color color);

inline constexpr Color kGridColor{217, 217, 217, 255};
inline constexpr Color kAxisColor{102, 102, 102, 255};

/// A pie's data with what would be too thin to be told apart put together as one slice at the end.
ChartData with_small_slices_gathered(ChartData data);
void draw_pie(ChartBoard& board, const ChartArea& area);
/// Bars, lines and areas over a category axis.
void draw_category_plot(ChartBoard& board, const ChartArea& area);
/// Points over a numeric or a time axis.
void draw_xy_plot(ChartBoard& board, const ChartArea& area);
/// The value of a gauge as it is written, a dash for none.
std::string gauge_text(const ChartGauge& gauge);
/// A dial or a tube with one value.
void draw_gauge(ChartBoard& board, const ChartArea& area);

}  // namespace velora::engine
