#include <algorithm>
#include <numbers>

#include "engine/chart/axis.h"
#include "engine/chart/board.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora::engine {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr float kLeader = 8;  ///< from the pie's edge to the bend of a leader line

struct Slice {
    size_t category;
    double value;
    float from, to;  ///< angles, clockwise from twelve o'clock
    std::string label;
    [[nodiscard]] float middle() const { return (from + to) / 2; }
    [[nodiscard]] bool on_right() const { return middle() < kPi; }
};

std::string slice_label(const ChartData& data, size_t category, double value, double total)
{
    std::string text = replaced(data.slice_label, "{0}", data.categories[category]);
    text = replaced(text, "{1}", chart_number(value));
    return replaced(text, "{2}", format_number(value / total * 100, 1) + "%");
}

std::vector<Slice> slices_of(const ChartData& data)
{
    std::vector<Slice> slices;
    if (data.series.empty()) return slices;
    double total = 0;
    for (size_t i = 0; i < data.categories.size(); ++i) {
        const double value = chart_value(data.series.front(), i).value_or(0);
        if (value <= 0) continue;
        slices.push_back({i, value, 0, 0, {}});
        total += value;
    }
    double angle = 0;
    for (Slice& slice : slices) {
        slice.from = static_cast<float>(angle);
        angle += slice.value / total * 2 * std::numbers::pi;
        slice.to = static_cast<float>(angle);
        slice.label = slice_label(data, slice.category, slice.value, total);
    }
    return slices;
}

Point on_circle(Point center, float radius, float angle)
{
    return {center.x + radius * std::sin(angle), center.y - radius * std::cos(angle)};
}

void draw_slice(ChartBoard& board, const Slice& slice, Point center, float radius)
{
    Shape shape;
    const bool whole = slice.to - slice.from > 2 * kPi - 1e-4F;
    if (!whole) shape.path.emplace_back(center);
    shape.path.emplace_back(Shape::Arc{center, radius, slice.from - kPi / 2, slice.to - kPi / 2});
    shape.closed = shape.filled = true;
    shape.fill = board.slice_color(slice.category);
    shape.stroke = {0.75F, LineStyle::Solid, kWhite};
    board.shape(std::move(shape));
}

/// Labels of one side, from top to bottom, moved apart so that none stands over another.
void draw_labels(ChartBoard& board, std::vector<const Slice*> side, Point center, float radius, const ChartArea& area,
                 bool right)
{
    const Font& font = board.data.label_font;
    const float height = board.line_height(font);
    std::ranges::sort(side, {}, [&](const Slice* slice) { return on_circle(center, radius, slice->middle()).y; });
    const auto room = static_cast<size_t>(std::max(area.height() / height, 0.0F));
    while (side.size() > room) side.erase(std::ranges::min_element(side, {}, &Slice::value));
    std::vector<float> heights;
    for (size_t i = 0; i < side.size(); ++i) {
        const float wanted = on_circle(center, radius + kLeader, side[i]->middle()).y;
        heights.push_back(i == 0 ? std::max(wanted, area.top + height / 2) : std::max(wanted, heights.back() + height));
    }
    float lowest = area.bottom - height / 2;
    for (size_t i = side.size(); i-- > 0; lowest = heights[i] - height) heights[i] = std::min(heights[i], lowest);
    const float side_x = center.x + (radius + 2 * kLeader) * (right ? 1 : -1);
    const float end_x = side_x + (right ? 3.0F : -3.0F);
    const float width = right ? area.right - end_x : end_x - area.left;
    for (size_t i = 0; i < side.size(); ++i) {
        const Point edge = on_circle(center, radius, side[i]->middle());
        const Point bend = on_circle(center, radius + kLeader / 2, side[i]->middle());
        board.polyline({edge, bend, {side_x, heights[i]}}, {0.5F, LineStyle::Solid, kAxisColor});
        board.middle_label({end_x, heights[i]}, board.fitted(side[i]->label, font, width), font,
                           right ? HorizontalAlign::Left : HorizontalAlign::Right);
    }
}

}  // namespace

void draw_pie(ChartBoard& board, const ChartArea& area)
{
    const std::vector<Slice> slices = slices_of(board.data);
    const Point center{area.middle_x(), area.middle_y()};
    const bool labels = !board.data.slice_label.empty();
    float widest = 0;
    for (const Slice& slice : slices) widest = std::max(widest, board.text_width(slice.label, board.data.label_font));
    widest = std::min(widest, area.width() * 0.34F);
    const float across = area.width() / 2 - (labels ? widest + 2 * kLeader + 4 : 2);
    const float down = area.height() / 2 - (labels ? kLeader : 2);
    const float radius = std::max(std::min(across, down), 4.0F);
    if (slices.empty()) {
        Shape circle;
        circle.path.emplace_back(Shape::Arc{center, radius, 0, 2 * kPi});
        circle.closed = true;
        circle.stroke = {0.75F, LineStyle::Dashed, kAxisColor};
        board.shape(std::move(circle));
        return;
    }
    std::vector<const Slice*> left, right;
    for (const Slice& slice : slices) {
        draw_slice(board, slice, center, radius);
        if (!slice.label.empty()) (slice.on_right() ? right : left).push_back(&slice);
    }
    draw_labels(board, right, center, radius, area, true);
    draw_labels(board, left, center, radius, area, false);
}

}  // namespace velora::engine
