#include <algorithm>
#include <array>
#include <limits>

#include "engine/chart/axis.h"
#include "engine/chart/board.h"
#include "engine/chart/plot_frame.h"
#include "engine/chart/time_scale.h"

namespace velora::engine {
namespace {

constexpr float kPointsPerMark = 28;  // room that a mark of the upright axis takes
constexpr float kMarker = 2.5F;       // half of a sign's size

struct Range {
    double least = std::numeric_limits<double>::infinity(), most = -least;

    void add(double value)
    {
        least = std::min(least, value);
        most = std::max(most, value);
    }
    [[nodiscard]] Range or_nothing() const { return least <= most ? *this : Range{0, 0}; }
};

struct Mark {
    double value;
    std::string text;
};

/// Points over a numeric or a time axis.
class XyPlot {
public:
    XyPlot(ChartBoard& board, const ChartArea& area) : board_(board), data_(board.data), area_(area) {}

    void draw()
    {
        find_scales();
        make_room();
        if (!area_.usable()) return;
        draw_axes();
        for (size_t series = 0; series < data_.series.size(); ++series) draw_series(series);
    }

private:
    [[nodiscard]] float across(double x) const
    {
        return area_.left + static_cast<float>((x - x_.least) / (x_.most - x_.least)) * area_.width();
    }
    [[nodiscard]] float up(double y) const
    {
        return area_.bottom - static_cast<float>((y - y_.least) / (y_.most - y_.least)) * area_.height();
    }
    [[nodiscard]] bool shown(const XyPoint& point) const
    {
        return point.x >= x_.least && point.x <= x_.most && point.y >= y_.least && point.y <= y_.most;
    }

    void find_scales();
    void find_x(Range range);
    void make_room();
    void draw_axes();
    void draw_series(size_t series);
    void draw_run(const std::vector<Point>& run, size_t series);

    ChartBoard& board_;
    const ChartData& data_;
    ChartArea area_;
    float left_edge_ = 0;  ///< of everything, labels included
    Range x_, y_;
    std::vector<Mark> x_marks_, y_marks_;
};

void XyPlot::find_scales()
{
    Range x, y;
    for (const ChartSeries& series : data_.series) {
        for (const XyPoint& point : series.points) {
            if (!std::isfinite(point.x) || !std::isfinite(point.y)) continue;
            x.add(point.x);
            y.add(point.y);
        }
    }
    if (data_.filled) y.add(0);
    y = y.or_nothing();
    const int marks = std::clamp(static_cast<int>(area_.height() / kPointsPerMark), 2, 10);
    ValueScale scale(y.least, y.most, marks, false, false);
    scale.limit(data_.least, data_.most);
    y_ = {scale.least(), scale.most()};
    for (const double mark : scale.marks()) {
        y_marks_.push_back({mark, data_.mark_text ? data_.mark_text(mark) : scale.text(mark)});
    }
    find_x(x.or_nothing());
}

void XyPlot::find_x(Range range)
{
    constexpr float kPointsPerDate = 60, kPointsPerNumber = 44;
    if (data_.dates) {
        const TimeScale scale(data_.x_least.value_or(range.least), data_.x_most.value_or(range.most),
                              std::clamp(static_cast<int>(area_.width() / kPointsPerDate), 1, 12));
        x_ = {scale.least(), scale.most()};
        for (const double mark : scale.marks()) {
            std::string text = data_.x_text      ? data_.x_text(mark)
                               : data_.date_text ? data_.date_text(mark, scale.pattern())
                                                 : chart_number(mark);
            x_marks_.push_back({mark, std::move(text)});
        }
        return;
    }
    ValueScale scale(range.least, range.most, std::clamp(static_cast<int>(area_.width() / kPointsPerNumber), 2, 10),
                     false, false);
    scale.limit(data_.x_least, data_.x_most);
    x_ = {scale.least(), scale.most()};
    for (const double mark : scale.marks()) {
        x_marks_.push_back({mark, data_.x_text ? data_.x_text(mark) : scale.text(mark)});
    }
}

/// Takes room from the area for the axes' marks and titles.
void XyPlot::make_room()
{
    const Font& font = data_.label_font;
    const float line = board_.line_height(font);
    const ChartArea outer = area_;
    left_edge_ = outer.left;
    float widest = 0;
    for (const Mark& mark : y_marks_) widest = std::max(widest, board_.text_width(mark.text, font));
    if (!data_.category_axis.empty()) area_.bottom -= line + kTextGap;
    if (!data_.value_axis.empty()) area_.left += line + kTextGap;
    area_.left += widest + kTick + kTextGap;
    area_.top += line / 2;
    area_.bottom -= line + kTick;
    area_.right -= kMarker;
    if (!area_.usable()) return;
    draw_axis_titles(board_, area_, outer, data_.category_axis, data_.value_axis);
}

void XyPlot::draw_axes()
{
    const Font& font = data_.label_font;
    for (const Mark& mark : y_marks_) {
        const float at = up(mark.value);
        board_.line({area_.left, at}, {area_.right, at}, kGrid);
        board_.middle_label({area_.left - kTick - kTextGap, at}, mark.text, font, HorizontalAlign::Right);
    }
    float free = left_edge_;  // marks that would stand on others are left out, but for their line
    for (const Mark& mark : x_marks_) {
        const float at = across(mark.value);
        board_.line({at, area_.top}, {at, area_.bottom}, kGrid);
        const float half = board_.text_width(mark.text, font) / 2;
        const float middle = std::min(at, area_.right + kMarker - half);
        if (middle - half < free) continue;
        free = middle + half + kTextGap;
        board_.label({middle, area_.bottom + kTick + font.size * 0.95F}, mark.text, font, HorizontalAlign::Center);
    }
    if (y_.least < 0 && y_.most > 0) board_.line({area_.left, up(0)}, {area_.right, up(0)}, kAxis);
    board_.line({area_.left, area_.bottom}, {area_.right, area_.bottom}, kAxis);
    board_.line({area_.left, area_.top}, {area_.left, area_.bottom}, kAxis);
}

/// Points beyond the ends of an axis part the line.
void XyPlot::draw_series(size_t series)
{
    std::vector<Point> run;
    for (const XyPoint& point : data_.series[series].points) {
        if (shown(point)) {
            run.push_back({across(point.x), up(point.y)});
            continue;
        }
        draw_run(run, series);
        run.clear();
    }
    draw_run(run, series);
}

void XyPlot::draw_run(const std::vector<Point>& run, size_t series)
{
    constexpr std::array kWays = {LineStyle::Solid, LineStyle::Dashed, LineStyle::Dotted};
    constexpr uint8_t kSeeThrough = 150;
    const Color color = board_.series_color(series);
    if (data_.filled && run.size() > 1) {
        const float ground = up(std::clamp(0.0, y_.least, y_.most));
        std::vector<Point> area = run;
        area.push_back({run.back().x, ground});
        area.push_back({run.front().x, ground});
        Color fill = color;
        if (data_.series.size() > 1) fill.alpha = kSeeThrough;
        board_.polygon(std::move(area), fill);
    }
    if (data_.lines && run.size() > 1) board_.polyline(run, {1.5F, kWays.at(series % kWays.size()), color});
    if (!data_.markers && (data_.lines || data_.filled) && run.size() > 1) return;
    for (const Point& at : run) board_.marker(at, series, color, kMarker);
}

}  // namespace

void draw_xy_plot(ChartBoard& board, const ChartArea& area)
{
    XyPlot(board, area).draw();
}

}  // namespace velora::engine
