#include <algorithm>
#include <functional>
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
    std::vector<std::string> lines;  ///< of the label
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
        slices.push_back({i, value, 0, 0, {}, {}});
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
    const float line = board.line_height(font);
    size_t lines = 1;
    for (const Slice* slice : side) lines = std::max(lines, slice->lines.size());
    const float height = line * static_cast<float>(lines);
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
        float y = heights[i] - line * static_cast<float>(side[i]->lines.size() - 1) / 2;
        for (const std::string& text : side[i]->lines) {
            board.middle_label({end_x, y}, board.fitted(text, font, width), font,
                               right ? HorizontalAlign::Left : HorizontalAlign::Right);
            y += line;
        }
    }
}

/// The label on one line, or on two, parted at the blank that leaves them most alike.
std::vector<std::string> label_lines(ChartBoard& board, const std::string& label, float room)
{
    const Font& font = board.data.label_font;
    if (board.text_width(label, font) <= room) return {label};
    std::vector<std::string> best{label};
    float narrowest = board.text_width(label, font);
    for (size_t blank = label.find(' '); blank != std::string::npos; blank = label.find(' ', blank + 1)) {
        std::vector<std::string> parts{label.substr(0, blank), label.substr(blank + 1)};
        const float width = std::max(board.text_width(parts[0], font), board.text_width(parts[1], font));
        if (width >= narrowest) continue;
        narrowest = width;
        best = std::move(parts);
    }
    return best;
}

/// Breaks the labels so that the pie stays large; where there are many, they keep to one line.
/// @return the room that the longest line takes
float break_labels(ChartBoard& board, std::vector<Slice>& slices, const ChartArea& area)
{
    constexpr float kShare = 0.22F, kMostShare = 0.34F;  // of the area's width
    const Font& font = board.data.label_font;
    const bool few = static_cast<float>(slices.size()) * board.line_height(font) < area.height();
    float widest = 0;
    for (Slice& slice : slices) {
        slice.lines = few ? label_lines(board, slice.label, area.width() * kShare) : std::vector{slice.label};
        for (const std::string& line : slice.lines) widest = std::max(widest, board.text_width(line, font));
    }
    return std::min(widest, area.width() * kMostShare);
}

}  // namespace

ChartData with_small_slices_gathered(ChartData data)
{
    constexpr double kThin = 0.02;  // of the whole
    constexpr size_t kMostSlices = 12;
    constexpr size_t kFewest = 3;  // fewer gain nothing by standing together
    const std::vector<Slice> slices = slices_of(data);
    std::vector<const Slice*> by_size;
    double total = 0;
    for (const Slice& slice : slices) {
        by_size.push_back(&slice);
        total += slice.value;
    }
    std::ranges::stable_sort(by_size, std::greater(), [](const Slice* slice) { return slice->value; });
    size_t kept = std::min(by_size.size(), kMostSlices - 1);
    if (by_size.size() == kMostSlices) kept = kMostSlices;
    while (kept > 0 && by_size[kept - 1]->value < total * kThin) --kept;
    if (by_size.size() - kept < kFewest || kept == 0) return data;
    double rest = 0;
    std::vector<bool> gathered(data.categories.size());
    for (size_t at = kept; at < by_size.size(); ++at) {
        rest += by_size[at]->value;
        gathered[by_size[at]->category] = true;
    }
    ChartData fewer = data;
    fewer.categories.clear();
    fewer.slice_colors.clear();
    fewer.series.assign(1, {data.series.front().name, {}, {}});
    for (size_t category = 0; category < data.categories.size(); ++category) {
        if (gathered[category]) continue;
        fewer.categories.push_back(data.categories[category]);
        fewer.series.front().values.push_back(chart_value(data.series.front(), category));
        if (category < data.slice_colors.size()) fewer.slice_colors.push_back(data.slice_colors[category]);
    }
    fewer.categories.push_back("… (" + std::to_string(by_size.size() - kept) + ")");
    fewer.series.front().values.emplace_back(rest);
    constexpr Color kOfTheRest{191, 191, 191, 255};
    if (fewer.slice_colors.size() + 1 == fewer.categories.size()) fewer.slice_colors.push_back(kOfTheRest);
    return fewer;
}

void draw_pie(ChartBoard& board, const ChartArea& area)
{
    std::vector<Slice> slices = slices_of(board.data);
    const Point center{area.middle_x(), area.middle_y()};
    const bool labels = !board.data.slice_label.empty();
    const float widest = break_labels(board, slices, area);
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
