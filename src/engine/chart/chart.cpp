#include "engine/chart/chart.h"

#include <algorithm>
#include <cmath>

#include "engine/chart/axis.h"
#include "engine/chart/board.h"

namespace velora::engine {
namespace {

constexpr float kMargin = 6, kGap = 6, kSwatch = 8, kSwatchGap = 4, kEntryGap = 12;
constexpr float kLegendShare = 0.4F;  // of the drawing, at most

struct LegendEntry {
    std::string text;
    Color color;
    float width;  ///< of the text
};

std::vector<LegendEntry> legend_entries(ChartBoard& board, float room)
{
    std::vector<LegendEntry> entries;
    const ChartData& data = board.data;
    const bool pie = data.kind == ChartKind::Pie;
    const size_t count = pie ? data.categories.size() : data.series.size();
    for (size_t i = 0; i < count; ++i) {
        const std::string& name = pie ? data.categories[i] : data.series[i].name;
        std::string text = board.fitted(name, data.label_font, room - kSwatch - kSwatchGap);
        const float width = board.text_width(text, data.label_font);
        entries.push_back({std::move(text), pie ? board.slice_color(i) : board.series_color(i), width});
    }
    return entries;
}

void draw_entry(ChartBoard& board, const LegendEntry& entry, size_t index, Point at)
{
    const ChartData& data = board.data;
    const float half = kSwatch / 2;
    if (data.kind == ChartKind::Line && data.markers) {
        board.line({at.x, at.y}, {at.x + kSwatch, at.y}, {1.5F, LineStyle::Solid, entry.color});
        board.marker({at.x + half, at.y}, index, entry.color, half * 0.7F);
    } else {
        board.rectangle({at.x, at.y - half, at.x + kSwatch, at.y + half}, entry.color,
                        {0.5F, LineStyle::Solid, darker(entry.color)});
    }
    board.middle_label({at.x + kSwatch + kSwatchGap, at.y}, entry.text, data.label_font, HorizontalAlign::Left,
                       data.legend_color);
}

/// Entries side by side in centred rows; takes its room from the area.
void draw_level_legend(ChartBoard& board, ChartArea& area, const std::vector<LegendEntry>& entries)
{
    const float row_height = board.line_height(board.data.label_font) + 2;
    std::vector<std::vector<size_t>> rows(1);
    std::vector<float> widths(1, 0.0F);
    for (size_t i = 0; i < entries.size(); ++i) {
        const float width = entries[i].width + kSwatch + kSwatchGap;
        if (!rows.back().empty() && widths.back() + kEntryGap + width > area.width()) {
            rows.emplace_back();
            widths.push_back(0);
        }
        widths.back() += width + (rows.back().empty() ? 0 : kEntryGap);
        rows.back().push_back(i);
    }
    const auto most = static_cast<size_t>(std::max(1.0F, area.height() * kLegendShare / row_height));
    const size_t shown = std::min(rows.size(), most);
    const float height = static_cast<float>(shown) * row_height;
    const bool top = board.data.legend_position == LegendPosition::Top;
    float y = (top ? area.top : area.bottom - height) + row_height / 2;
    for (size_t row = 0; row < shown; ++row, y += row_height) {
        float x = area.middle_x() - widths[row] / 2;
        for (const size_t i : rows[row]) {
            draw_entry(board, entries[i], i, {x, y});
            x += entries[i].width + kSwatch + kSwatchGap + kEntryGap;
        }
    }
    if (top) {
        area.top += height + kGap;
    } else {
        area.bottom -= height + kGap;
    }
}

/// Entries below each other at one side.
void draw_upright_legend(ChartBoard& board, ChartArea& area, const std::vector<LegendEntry>& entries)
{
    const float row_height = board.line_height(board.data.label_font) + 2;
    float width = 0;
    for (const LegendEntry& entry : entries) width = std::max(width, entry.width);
    width += kSwatch + kSwatchGap;
    const size_t shown = std::min(entries.size(), static_cast<size_t>(std::max(1.0F, area.height() / row_height)));
    const bool left = board.data.legend_position == LegendPosition::Left;
    const float x = left ? area.left : area.right - width;
    float y = area.middle_y() - static_cast<float>(shown - 1) * row_height / 2;
    for (size_t i = 0; i < shown; ++i, y += row_height) draw_entry(board, entries[i], i, {x, y});
    if (left) {
        area.left += width + kGap;
    } else {
        area.right -= width + kGap;
    }
}

void draw_legend(ChartBoard& board, ChartArea& area)
{
    if (!board.data.legend) return;
    const bool level =
        board.data.legend_position == LegendPosition::Bottom || board.data.legend_position == LegendPosition::Top;
    const auto entries = legend_entries(board, level ? area.width() : area.width() * kLegendShare);
    if (entries.empty()) return;
    if (level) {
        draw_level_legend(board, area, entries);
    } else {
        draw_upright_legend(board, area, entries);
    }
}

void draw_heading(ChartBoard& board, ChartArea& area, const std::string& text, const Font& font,
                  std::optional<Color> color)
{
    if (text.empty()) return;
    const float height = board.line_height(font);
    board.label({area.middle_x(), area.top + font.size * 0.93F}, board.fitted(text, font, area.width()), font,
                HorizontalAlign::Center, 0, color);
    area.top += height + kGap / 2;
}

/// The chart in words, for those who cannot see it: its title and then each value with what it is of.
std::string in_words(const ChartData& data)
{
    constexpr size_t kMost = 2000;  // bytes; nobody listens longer
    std::string words = data.title;
    const auto mark = [&](double value) { return data.mark_text ? data.mark_text(value) : chart_number(value); };
    for (const ChartSeries& series : data.series) {
        const bool named = data.kind != ChartKind::Pie && !series.name.empty();
        std::string part = named ? series.name + ":" : "";
        for (size_t i = 0; i < std::min(series.values.size(), data.categories.size()); ++i) {
            const auto& value = series.values[i];
            if (!value || !std::isfinite(*value)) continue;
            part += (part.empty() || part.back() == ':' ? (part.empty() ? "" : " ") : ", ") + data.categories[i] + " " +
                    mark(*value);
            if (words.size() + part.size() > kMost) break;
        }
        if (words.size() + part.size() > kMost) return words + " …";
        words += (words.empty() ? "" : ". ") + part;
    }
    return words;
}

}  // namespace

std::shared_ptr<const Drawing> draw_chart(const ChartData& given, float width, float height, Measurer& measurer)
{
    auto drawing = std::make_shared<Drawing>();
    drawing->width = width;
    drawing->height = height;
    drawing->description = in_words(given);
    const ChartData data = given.kind == ChartKind::Pie ? with_small_slices_gathered(given) : given;
    ChartBoard board(*drawing, measurer, data);
    ChartArea area{kMargin, kMargin, width - kMargin, height - kMargin};
    if (!area.usable()) return drawing;
    draw_heading(board, area, data.title, data.title_font, data.title_color);
    draw_heading(board, area, data.subtitle, data.subtitle_font, data.subtitle_color);
    draw_legend(board, area);
    if (!area.usable()) return drawing;
    if (data.kind == ChartKind::Pie) {
        draw_pie(board, area);
    } else {
        draw_category_plot(board, area);
    }
    return drawing;
}

}  // namespace velora::engine
