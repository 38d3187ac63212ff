#include <algorithm>
#include <numbers>

#include "engine/chart/axis.h"
#include "engine/chart/board.h"
#include "engine/chart/plot_frame.h"

namespace velora::engine {
namespace {

constexpr float kPointsPerMark = 28;  // room that one mark of the value axis takes
constexpr float kSlant = -std::numbers::pi_v<float> / 4;
constexpr float kNumberGap = 3;     // from a bar's end to its number
constexpr float kMarker = 2.5F;     // half of a sign's size
constexpr float kBarShare = 0.75F;  // of the room of a category
constexpr float kMostBar = 60;      // points; a single bar need not fill the page

bool is_stacked(ChartKind kind)
{
    return kind == ChartKind::StackedBar || kind == ChartKind::StackedArea;
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
        draw_values();
        for (const Number& number : numbers_) draw_number(number);
    }

private:
    /// A number that is to stand at the end of a bar or above a point.
    struct Number {
        std::string text;
        Point end;
        bool negative;
        float gap;      ///< from the end
        ChartArea bar;  ///< whose number it is
    };

    [[nodiscard]] bool is_bar() const { return data_.kind == ChartKind::Bar || data_.kind == ChartKind::StackedBar; }
    [[nodiscard]] ValueScale make_scale() const;
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
        const auto share = static_cast<float>(std::clamp(scale_.share(value), 0.0, 1.0));
        return lying_ ? area_.left + share * area_.width() : area_.bottom - share * area_.height();
    }

    void make_room();
    void draw_axes();
    void draw_category_labels();
    void draw_values();
    void draw_bars();
    ChartArea draw_bar(size_t series, float from, float to, double start, double end);
    void note_value(double at, double value, float middle, const ChartArea& bar = {});
    void draw_number(const Number& number);
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
    std::vector<Number> numbers_;
    std::vector<ChartArea> taken_;  ///< by bars and by the numbers that are written
};

/// Numbers at the ends of bars have room on the axis.
ValueScale Plot::make_scale() const
{
    auto [least, most] = value_range(data_);
    const float room = lying_ ? area_.width() / 2 : area_.height();
    if (data_.value_labels && is_bar() && area_.usable()) {
        float longest = data_.label_font.size;
        for (const double end : {least, most}) {
            if (lying_) longest = std::max(longest, board_.text_width(chart_number(end), data_.label_font));
        }
        const double more = (most - least) * std::min((longest + kNumberGap + 1) / room, 0.3F);
        if (least < 0 && !is_stacked(data_.kind)) least -= more;
        if (most > 0) most += more;
    }
    const int marks = std::clamp(static_cast<int>(room / kPointsPerMark), 2, 10);
    ValueScale scale(least, most, marks, shows_whole_numbers());
    scale.limit(data_.least, data_.most);
    return scale;
}

void Plot::draw_values()
{
    switch (data_.kind) {
        case ChartKind::Line:
            return draw_lines();
        case ChartKind::Area:
        case ChartKind::StackedArea:
            return draw_areas();
        default:
            return draw_bars();
    }
}

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
    draw_axis_titles(board_, area_, outer, below, beside);
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

ChartArea Plot::draw_bar(size_t series, float from, float to, double start, double end)
{
    const float low = across(start), high = across(end);
    const ChartArea bar = lying_ ? ChartArea{std::min(low, high), from, std::max(low, high), to}
                                 : ChartArea{from, std::min(low, high), to, std::max(low, high)};
    const Color color = board_.series_color(series);
    board_.rectangle(bar, color, {0.5F, LineStyle::Solid, darker(color)});
    taken_.push_back(bar);
    return bar;
}

void Plot::note_value(double at, double value, float middle, const ChartArea& bar)
{
    if (!data_.value_labels) return;
    const float end = across(at);
    numbers_.push_back({chart_number(value), lying_ ? Point{end, middle} : Point{middle, end}, at < 0,
                        kNumberGap + (data_.kind == ChartKind::Line && data_.markers ? kMarker : 0), bar});
}

/// A number is left out where it would stand on another one, on a bar that is not its own, or on the names of the axis.
void Plot::draw_number(const Number& number)
{
    const Font& font = data_.label_font;
    const float width = board_.text_width(number.text, font) + 1, gap = number.negative ? -number.gap : number.gap;
    const float capitals = font.size * 0.73F;
    const HorizontalAlign align = !lying_           ? HorizontalAlign::Center
                                  : number.negative ? HorizontalAlign::Right
                                                    : HorizontalAlign::Left;
    Point at = lying_ ? Point{number.end.x + gap, number.end.y + capitals / 2}
                      : Point{number.end.x, number.negative ? number.end.y - gap + capitals : number.end.y - gap};
    const float left = !lying_ ? at.x - width / 2 : number.negative ? at.x - width : at.x;
    const ChartArea place{left, at.y - font.size * 0.9F, left + width, at.y};
    const auto meets = [&](const ChartArea& other) {
        return place.left < other.right && other.left < place.right && place.top < other.bottom &&
               other.top < place.bottom;
    };
    if (place.left < area_.left - 1 && lying_) return;
    for (const ChartArea& other : taken_) {
        const bool own = other.left == number.bar.left && other.top == number.bar.top;
        if (!own && meets(other)) return;
    }
    taken_.push_back(place);
    board_.label(at, number.text, font, align);
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
            const ChartArea bar = draw_bar(series, from, from + width, start, start + *value);
            if (!is_stacked(data_.kind)) note_value(*value, *value, from + width / 2, bar);
            base += *value;
        }
        if (is_stacked(data_.kind) && up > 0) note_value(up, up + down, first + width / 2);
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
        if (data_.lines) draw_line_parts(series, {1.5F, kWays.at(series % kWays.size()), color});
        for (size_t category = 0; category < data_.categories.size(); ++category) {
            const auto value = chart_value(data_.series[series], category);
            if (!value) continue;
            const Point at{along(category), across(*value)};
            if (data_.markers) board_.marker(at, series, color, kMarker);
            if (data_.markers) taken_.push_back({at.x - kMarker, at.y - kMarker, at.x + kMarker, at.y + kMarker});
            note_value(*value, *value, along(category), taken_.empty() ? ChartArea{} : taken_.back());
        }
    }
}

/// Areas stand on each other where they are stacked, else each on zero.
void Plot::draw_areas()
{
    constexpr uint8_t kSeeThrough = 150;
    const bool stacked = is_stacked(data_.kind);
    std::vector<double> ground(data_.categories.size());
    for (size_t series = 0; series < data_.series.size() && !ground.empty(); ++series) {
        Color fill = board_.series_color(series);
        std::vector<Point> edge, filled;
        for (size_t category = 0; category < ground.size(); ++category) {
            filled.push_back({along(category), across(ground[category])});
            const auto value = chart_value(data_.series[series], category);
            const double top = ground[category] + value.value_or(0);
            edge.push_back({along(category), across(top)});
            if (value) note_value(top, *value, along(category));
            if (stacked) ground[category] = top;
        }
        filled.insert(filled.end(), edge.rbegin(), edge.rend());
        const Color line = darker(fill);
        fill.alpha = data_.series.size() > 1 && !stacked ? kSeeThrough : fill.alpha;
        board_.polygon(std::move(filled), fill);
        board_.polyline(edge, {1.25F, LineStyle::Solid, line});
    }
}

}  // namespace

void draw_category_plot(ChartBoard& board, const ChartArea& area)
{
    Plot(board, area).draw();
}

}  // namespace velora::engine
