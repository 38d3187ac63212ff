#include <algorithm>
#include <numbers>

#include "engine/chart/axis.h"
#include "engine/chart/board.h"

namespace velora::engine {
namespace {

constexpr float kPointsPerMark = 28;  // room that one mark of the value axis takes
constexpr float kTick = 3, kTextGap = 3;
constexpr float kSlant = -std::numbers::pi_v<float> / 4;
constexpr float kBarShare = 0.75F;  // of the room of a category
constexpr float kMostBar = 60;      // points; a single bar need not fill the page
constexpr Pen kGrid{0.5F, LineStyle::Solid, kGridColor};
constexpr Pen kAxis{0.75F, LineStyle::Solid, kAxisColor};

bool is_stacked(ChartKind kind)
{
    return kind == ChartKind::StackedBar;
}

std::pair<double, double> value_range(const ChartData& data)
{
    double least = 0, most = 0;
    for (size_t category = 0; category < data.categories.size(); ++category) {
        double up = 0, down = 0;
        for (const ChartSeries& series : data.series) {
            const double value = chart_value(series, category).value_or(0);
            least = std::min(least, value);
            most = std::max(most, value);
            double& stack = value < 0 ? down : up;
            stack += value;
        }
        if (!is_stacked(data.kind)) continue;
        least = std::min(least, down);
        most = std::max(most, up);
    }
    return {least, most};
}

/// Where categories and values stand. "Along" is the direction of the categories, "across" that of the values.
class Plot {
public:
    Plot(ChartBoard& board, const ChartArea& area)
        : board_(board), data_(board.data), lying_(data_.horizontal && is_bar()), area_(area), scale_(make_scale())
    {
    }

    void draw()
    {
        make_room();
        if (!area_.usable()) return;
        draw_axes();
        switch (data_.kind) {
            case ChartKind::Line:
                return draw_lines();
            case ChartKind::Area:
                return draw_areas();
            default:
                return draw_bars();
        }
    }

private:
    [[nodiscard]] bool is_bar() const { return data_.kind == ChartKind::Bar || is_stacked(data_.kind); }
    [[nodiscard]] ValueScale make_scale() const
    {
        const auto [least, most] = value_range(data_);
        const float room = lying_ ? area_.width() / 2 : area_.height();
        return {least, most, std::clamp(static_cast<int>(room / kPointsPerMark), 2, 10), shows_whole_numbers()};
    }
    /// Marks between whole numbers would all look like their neighbours.
    [[nodiscard]] bool shows_whole_numbers() const
    {
        return data_.mark_text &&
               (data_.mark_text(0.5) == data_.mark_text(0) || data_.mark_text(0.5) == data_.mark_text(1));
    }
    [[nodiscard]] std::string mark_text(double mark) const
    {
        return data_.mark_text ? data_.mark_text(mark) : scale_.text(mark);
    }
    [[nodiscard]] float slot() const
    {
        return (lying_ ? area_.height() : area_.width()) /
               static_cast<float>(std::max<size_t>(data_.categories.size(), 1));
    }
    [[nodiscard]] float along(size_t category) const
    {
        return (lying_ ? area_.top : area_.left) + (static_cast<float>(category) + 0.5F) * slot();
    }
    [[nodiscard]] float across(double value) const
    {
        const auto share = static_cast<float>(scale_.share(value));
        return lying_ ? area_.left + share * area_.width() : area_.bottom - share * area_.height();
    }

    void make_room();
    void draw_axes();
    void draw_category_labels();
    void draw_titles(const ChartArea& outer);
    void draw_bars();
    void draw_bar(size_t series, float from, float to, double start, double end);
    void draw_value(double at, double value, float middle);
    void draw_lines();
    void draw_line_parts(size_t series, const Pen& pen);
    void draw_areas();

    ChartBoard& board_;
    const ChartData& data_;
    bool lying_;
    ChartArea area_;
    ValueScale scale_;
    bool slanted_ = false;
    float left_edge_ = 0;   ///< of everything, labels included
    float mark_room_ = 0;   ///< longest label of the value axis
    float label_room_ = 0;  ///< longest category label
};

/// Takes room from the area for the axes' labels and titles.
void Plot::make_room()
{
    const Font& font = data_.label_font;
    const float line = board_.line_height(font);
    const ChartArea outer = area_;
    left_edge_ = area_.left;
    float names = 0;
    for (const double mark : scale_.marks())
        mark_room_ = std::max(mark_room_, board_.text_width(mark_text(mark), font));
    for (const std::string& name : data_.categories) names = std::max(names, board_.text_width(name, font));
    const std::string& below = lying_ ? data_.value_axis : data_.category_axis;
    const std::string& beside = lying_ ? data_.category_axis : data_.value_axis;
    if (!below.empty()) area_.bottom -= line + kTextGap;
    if (!beside.empty()) area_.left += line + kTextGap;
    area_.top += line / 2;
    if (lying_) {
        label_room_ = std::min(names, outer.width() * 0.35F);
        area_.left += label_room_ + kTick + kTextGap;
        area_.left = std::max(area_.left, outer.left + mark_room_ / 2);
        area_.bottom -= line + kTick;
        area_.right -= mark_room_ / 2;
    } else {
        area_.left += mark_room_ + kTick + kTextGap;
        slanted_ = names > slot() - 2;
        label_room_ = slanted_ ? std::min(names, outer.height() * 0.5F) : slot();
        area_.bottom -= kTick + (slanted_ ? label_room_ * 0.71F + line * 0.71F : line);
    }
    draw_titles(outer);
}

void Plot::draw_titles(const ChartArea& outer)
{
    const Font& font = data_.label_font;
    const std::string& below = lying_ ? data_.value_axis : data_.category_axis;
    const std::string& beside = lying_ ? data_.category_axis : data_.value_axis;
    board_.label({area_.middle_x(), outer.bottom - font.size * 0.24F}, board_.fitted(below, font, area_.width()), font,
                 HorizontalAlign::Center);
    board_.label({outer.left + font.size * 0.93F, area_.middle_y()}, board_.fitted(beside, font, area_.height()), font,
                 HorizontalAlign::Center, -std::numbers::pi_v<float> / 2);
}

void Plot::draw_axes()
{
    const Font& font = data_.label_font;
    float free = area_.left - mark_room_;  // a lying axis leaves out the marks that would stand on others
    for (const double mark : scale_.marks()) {
        const float at = across(mark);
        if (lying_) {
            board_.line({at, area_.top}, {at, area_.bottom}, kGrid);
            const float half = board_.text_width(mark_text(mark), font) / 2;
            if (at - half < free) continue;
            free = at + half + kTextGap;
            board_.label({at, area_.bottom + kTick + font.size * 0.95F}, mark_text(mark), font,
                         HorizontalAlign::Center);
        } else {
            board_.line({area_.left, at}, {area_.right, at}, kGrid);
            board_.middle_label({area_.left - kTick - kTextGap, at}, mark_text(mark), font, HorizontalAlign::Right);
        }
    }
    const float zero = across(0);
    if (lying_) {
        board_.line({zero, area_.top}, {zero, area_.bottom}, kAxis);
    } else {
        board_.line({area_.left, zero}, {area_.right, zero}, kAxis);
        board_.line({area_.left, area_.top}, {area_.left, area_.bottom}, kAxis);
    }
    draw_category_labels();
}

void Plot::draw_category_labels()
{
    const Font& font = data_.label_font;
    const float line = board_.line_height(font);
    // Where even slanted labels would touch, only every second, third, ... is shown.
    const auto every = static_cast<size_t>(std::max(1.0F, std::ceil(line * (slanted_ ? 1.2F : 1.0F) / slot())));
    const size_t step = lying_ || slanted_ ? every : 1;
    for (size_t i = 0; i < data_.categories.size(); i += step) {
        // the first of slanted labels have no room to their left but that of the value axis
        const float room = slanted_ ? std::min(label_room_, (along(i) - left_edge_) / std::cos(kSlant)) : label_room_;
        const std::string name = board_.fitted(data_.categories[i], font, room);
        if (lying_) {
            board_.middle_label({area_.left - kTick - kTextGap, along(i)}, name, font, HorizontalAlign::Right);
        } else if (slanted_) {
            board_.label({along(i) + font.size * 0.3F, area_.bottom + kTick + font.size * 0.7F}, name, font,
                         HorizontalAlign::Right, kSlant);
        } else {
            board_.label({along(i), area_.bottom + kTick + font.size * 0.95F}, name, font, HorizontalAlign::Center);
        }
    }
}

void Plot::draw_bar(size_t series, float from, float to, double start, double end)
{
    const float low = across(start), high = across(end);
    const ChartArea bar = lying_ ? ChartArea{std::min(low, high), from, std::max(low, high), to}
                                 : ChartArea{from, std::min(low, high), to, std::max(low, high)};
    const Color color = board_.series_color(series);
    board_.rectangle(bar, color, {0.5F, LineStyle::Solid, darker(color)});
}

/// The number at the end of a bar or above a point.
void Plot::draw_value(double at, double value, float middle)
{
    if (!data_.value_labels) return;
    const Font& font = data_.label_font;
    const float end = across(at);
    const bool down = at < 0;
    if (lying_) {
        board_.middle_label({end + (down ? -3.0F : 3.0F), middle}, chart_number(value), font,
                            down ? HorizontalAlign::Right : HorizontalAlign::Left);
    } else {
        board_.label({middle, down ? end + font.size : end - 3}, chart_number(value), font, HorizontalAlign::Center);
    }
}

void Plot::draw_bars()
{
    const size_t beside = is_stacked(data_.kind) ? 1 : std::max<size_t>(data_.series.size(), 1);
    const float width = std::min(slot() * kBarShare / static_cast<float>(beside), kMostBar);
    for (size_t category = 0; category < data_.categories.size(); ++category) {
        double up = 0, down = 0;
        const float first = along(category) - width * static_cast<float>(beside) / 2;
        for (size_t series = 0; series < data_.series.size(); ++series) {
            const auto value = chart_value(data_.series[series], category);
            if (!value) continue;
            const float from = first + (is_stacked(data_.kind) ? 0 : static_cast<float>(series) * width);
            double& base = *value < 0 ? down : up;
            const double start = is_stacked(data_.kind) ? base : 0;
            draw_bar(series, from, from + width, start, start + *value);
            if (!is_stacked(data_.kind)) draw_value(*value, *value, from + width / 2);
            base += *value;
        }
        if (is_stacked(data_.kind) && up > 0) draw_value(up, up + down, first + width / 2);
    }
}

/// A gap in the values parts the line.
void Plot::draw_line_parts(size_t series, const Pen& pen)
{
    std::vector<Point> part;
    for (size_t category = 0; category <= data_.categories.size(); ++category) {
        const auto value =
            category < data_.categories.size() ? chart_value(data_.series[series], category) : std::nullopt;
        if (value) {
            part.push_back({along(category), across(*value)});
            continue;
        }
        if (part.size() > 1) board_.polyline(part, pen);
        part.clear();
    }
}

void Plot::draw_lines()
{
    constexpr std::array kWays = {LineStyle::Solid, LineStyle::Dashed, LineStyle::Dotted};
    for (size_t series = 0; series < data_.series.size(); ++series) {
        const Color color = board_.series_color(series);
        draw_line_parts(series, {1.5F, kWays.at(series % kWays.size()), color});
        for (size_t category = 0; category < data_.categories.size(); ++category) {
            const auto value = chart_value(data_.series[series], category);
            if (!value) continue;
            if (data_.markers) board_.marker({along(category), across(*value)}, series, color, 2.5F);
            draw_value(*value, *value, along(category));
        }
    }
}

void Plot::draw_areas()
{
    constexpr uint8_t kSeeThrough = 150;
    for (size_t series = 0; series < data_.series.size(); ++series) {
        Color fill = board_.series_color(series);
        std::vector<Point> outline;
        for (size_t category = 0; category < data_.categories.size(); ++category) {
            const double value = chart_value(data_.series[series], category).value_or(0);
            outline.push_back({along(category), across(value)});
        }
        if (outline.empty()) continue;
        std::vector<Point> filled = outline;
        filled.push_back({outline.back().x, across(0)});
        filled.push_back({outline.front().x, across(0)});
        const Color edge = darker(fill);
        fill.alpha = data_.series.size() > 1 ? kSeeThrough : fill.alpha;
        board_.polygon(std::move(filled), fill);
        board_.polyline(outline, {1.25F, LineStyle::Solid, edge});
        for (size_t category = 0; category < data_.categories.size(); ++category) {
            const auto value = chart_value(data_.series[series], category);
            if (value) draw_value(*value, *value, along(category));
        }
    }
}

}  // namespace

void draw_category_plot(ChartBoard& board, const ChartArea& area)
{
    Plot(board, area).draw();
}

}  // namespace velora::engine
