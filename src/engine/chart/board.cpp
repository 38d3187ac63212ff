#include "engine/chart/board.h"

#include <algorithm>
#include <array>
#include <numbers>

#include "values/utf8.h"

namespace velora::engine {
namespace {

// No two are alike in grey print, and neighbours differ by more than a little: brightness 70, 176, 122, 210, 51, 227,
// 87, 193, 36, 160, 104, 143 of 255.
constexpr std::array kPalette = {
    Color{31, 78, 134, 255}, Color{244, 163, 64, 255},  Color{112, 138, 66, 255}, Color{190, 215, 240, 255},
    Color{120, 20, 32, 255}, Color{250, 232, 140, 255}, Color{96, 74, 130, 255},  Color{158, 209, 199, 255},
    Color{36, 36, 36, 255},  Color{214, 134, 150, 255}, Color{24, 136, 146, 255}, Color{143, 143, 143, 255},
};

}  // namespace

void ChartBoard::shape(Shape shape)
{
    drawing_.items.emplace_back(std::move(shape));
}

void ChartBoard::line(Point from, Point to, const Pen& pen)
{
    polyline({from, to}, pen);
}

void ChartBoard::polyline(const std::vector<Point>& points, const Pen& pen)
{
    Shape shape;
    shape.path.assign(points.begin(), points.end());
    shape.stroke = pen;
    drawing_.items.emplace_back(std::move(shape));
}

void ChartBoard::rectangle(const ChartArea& area, Color fill, const Pen& outline)
{
    polygon({{area.left, area.top}, {area.right, area.top}, {area.right, area.bottom}, {area.left, area.bottom}}, fill,
            outline);
}

void ChartBoard::polygon(std::vector<Point> points, Color fill, const Pen& outline)
{
    Shape shape;
    shape.path.assign(points.begin(), points.end());
    shape.closed = true;
    shape.filled = true;
    shape.fill = fill;
    shape.stroke = outline;
    drawing_.items.emplace_back(std::move(shape));
}

void ChartBoard::label(Point at, std::string text, const Font& font, HorizontalAlign align, float angle,
                       std::optional<Color> color)
{
    if (text.empty()) return;
    drawing_.items.emplace_back(Label{at, std::move(text), font, color.value_or(data.fore), align, angle});
}

void ChartBoard::middle_label(Point at, std::string text, const Font& font, HorizontalAlign align,
                              std::optional<Color> color)
{
    constexpr float kMiddleOfCapitals = 0.36F;  // above the base line, as a share of the size
    label({at.x, at.y + font.size * kMiddleOfCapitals}, std::move(text), font, align, 0, color);
}

void ChartBoard::marker(Point at, size_t series, Color color, float radius)
{
    const Pen outline{0.5F, LineStyle::Solid, darker(color)};
    const float r = radius;
    switch (series % 4) {
        case 0: {
            Shape circle;
            circle.path.emplace_back(Shape::Arc{at, r, 0, 2 * std::numbers::pi_v<float>});
            circle.closed = circle.filled = true;
            circle.fill = color;
            circle.stroke = outline;
            return shape(std::move(circle));
        }
        case 1:
            return rectangle({at.x - r, at.y - r, at.x + r, at.y + r}, color, outline);
        case 2:
            return polygon({{at.x, at.y - r * 1.2F}, {at.x + r * 1.1F, at.y + r}, {at.x - r * 1.1F, at.y + r}}, color,
                           outline);
        default:
            return polygon(
                {{at.x, at.y - r * 1.3F}, {at.x + r * 1.3F, at.y}, {at.x, at.y + r * 1.3F}, {at.x - r * 1.3F, at.y}},
                color, outline);
    }
}

std::string ChartBoard::fitted(const std::string& text, const Font& font, float width)
{
    if (text_width(text, font) <= width) return text;
    const std::string ellipsis = "\u2026";
    std::string best;
    for (size_t at = 0; at < text.size();) {
        at += utf8_at(text, at).size;
        const std::string front = text.substr(0, at) + ellipsis;
        if (text_width(front, font) > width) break;
        best = front;
    }
    return best;
}

Color ChartBoard::palette_color(size_t index) const
{
    if (!data.palette.empty()) return data.palette[index % data.palette.size()];
    return kPalette[index % kPalette.size()];
}

Color ChartBoard::series_color(size_t series) const
{
    return data.series[series].color.value_or(palette_color(series));
}

Color ChartBoard::slice_color(size_t category) const
{
    return category < data.slice_colors.size() ? data.slice_colors[category] : palette_color(category);
}

Color ChartBoard::interval_color(size_t interval) const
{
    return data.gauge.intervals[interval].color.value_or(palette_color(interval));
}

std::optional<double> chart_value(const ChartSeries& series, size_t category)
{
    if (category >= series.values.size()) return std::nullopt;
    const auto value = series.values[category];
    constexpr double kGreatest = 1e15;  // beyond it a drawing's coordinates and sums are no longer safe
    if (!value || !std::isfinite(*value)) return std::nullopt;
    return std::clamp(*value, -kGreatest, kGreatest);
}

Color darker(Color color)
{
    const auto part = [](uint8_t value) { return static_cast<uint8_t>(value * 6 / 10); };
    return {part(color.red), part(color.green), part(color.blue), color.alpha};
}

}  // namespace velora::engine
