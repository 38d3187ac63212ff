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

bool is_gauge(const ChartData& data)
{
    return data.kind == ChartKind::Meter || data.kind == ChartKind::Thermometer;
}

/// What the chart has a colour for: slices, intervals that have a name, or series.
std::vector<std::pair<std::string, Color>> named_colors(const ChartBoard& board)
{
    const ChartData& data = board.data;
    std::vector<std::pair<std::string, Color>> names;
    if (data.kind == ChartKind::Pie) {
        for (size_t i = 0; i < data.categories.size(); ++i)
            names.emplace_back(data.categories[i], board.slice_color(i));
    } else if (is_gauge(data)) {
        for (size_t i = 0; i < data.gauge.intervals.size(); ++i) {
            const std::string& label = data.gauge.intervals[i].label;
            if (!label.empty()) names.emplace_back(label, board.interval_color(i));
        }
    } else if (data.kind != ChartKind::Unknown) {
        for (size_t i = 0; i < data.series.size(); ++i) names.emplace_back(data.series[i].name, board.series_color(i));
    }
    return names;
}

std::vector<LegendEntry> legend_entries(ChartBoard& board, float room)
{
    std::vector<LegendEntry> entries;
    const Font& font = board.data.label_font;
    for (const auto& [name, color] : named_colors(board)) {
        std::string text = board.fitted(name, font, room - kSwatch - kSwatchGap);
        const float width = board.text_width(text, font);
        entries.push_back({std::move(text), color, width});
    }
    return entries;
}

void draw_entry(ChartBoard& board, const LegendEntry& entry, size_t index, Point at)
{
    const ChartData& data = board.data;
    const float half = kSwatch / 2;
    const bool with_lines = data.kind == ChartKind::Line || data.kind == ChartKind::Xy;
    if (with_lines && data.markers && !data.filled) {
        if (data.lines) board.line({at.x, at.y}, {at.x + kSwatch, at.y}, {1.5F, LineStyle::Solid, entry.color});
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

/// The values of a series in words, each with what it is of.
std::string series_in_words(const ChartData& data, const ChartSeries& series, size_t room)
{
    const auto mark = [&](double value) { return data.mark_text ? data.mark_text(value) : chart_number(value); };
    const auto at = [&](double x) {
        if (data.x_text) return data.x_text(x);
        return data.dates && data.date_text ? data.date_text(x, "d MMM yyyy") : chart_number(x);
    };
    std::string words = data.kind != ChartKind::Pie && !series.name.empty() ? series.name + ":" : "";
    const auto add = [&](const std::string& of, double value) {
        if (!std::isfinite(value) || words.size() > room) return;
        words += (words.empty() ? "" : words.back() == ':' ? " " : ", ") + of + " " + mark(value);
    };
    for (size_t i = 0; i < std::min(series.values.size(), data.categories.size()); ++i) {
        if (series.values[i]) add(data.categories[i], *series.values[i]);
    }
    for (const XyPoint& point : series.points) {
        if (words.size() > room) break;
        if (std::isfinite(point.x)) add(at(point.x), point.y);
    }
    return words;
}

/// The chart in words, for those who cannot see it: its title and then what it shows.
std::string in_words(const ChartData& data)
{
    constexpr size_t kMost = 2000;  // bytes; nobody listens longer
    std::string words = data.title;
    const auto add = [&](const std::string& part) { words += (words.empty() ? "" : ". ") + part; };
    if (is_gauge(data)) {
        add(gauge_text(data.gauge));
        return words;
    }
    for (const ChartSeries& series : data.series) {
        const std::string part = series_in_words(data, series, kMost - std::min(words.size(), kMost));
        if (words.size() + part.size() > kMost) return words + " …";
        add(part);
    }
    return words;
}

/// In the place of a form that is not drawn stands its name.
void draw_unknown(ChartBoard& board, const ChartArea& area)
{
    board.rectangle(area, kWhite, {0.75F, LineStyle::Dashed, kAxisColor});
    board.middle_label({area.middle_x(), area.middle_y()},
                       board.fitted(board.data.unknown, board.data.label_font, area.width()), board.data.label_font,
                       HorizontalAlign::Center, kAxisColor);
}

void draw_plot(ChartBoard& board, const ChartArea& area)
{
    switch (board.data.kind) {
        case ChartKind::Pie:
            return draw_pie(board, area);
        case ChartKind::Xy:
            return draw_xy_plot(board, area);
        case ChartKind::Meter:
        case ChartKind::Thermometer:
            return draw_gauge(board, area);
        case ChartKind::Unknown:
            return draw_unknown(board, area);
        default:
            return draw_category_plot(board, area);
    }
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
    draw_plot(board, area);
    return drawing;
}

}  // namespace velora::engine
