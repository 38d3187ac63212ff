#include <algorithm>
#include <cmath>
#include <numbers>

#include "engine/chart/axis.h"
#include "engine/chart/board.h"
#include "engine/chart/plot_frame.h"

namespace velora::engine {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr float kRing = 0.8F;  // where the ring of the intervals begins, as a share of the radius

/// What the gauge shows: the ends of its scale in order, its value between them.
struct Reading {
    explicit Reading(const ChartGauge& gauge)
        : low(std::min(gauge.low, gauge.high)), high(std::max(gauge.low, gauge.high))
    {
        if (!std::isfinite(low) || !std::isfinite(high) || high - low < 1e-9 * std::max(std::abs(low), 1.0)) {
            low = 0;
            high = 100;
        }
    }
    [[nodiscard]] float share(double value) const
    {
        return static_cast<float>(std::clamp((value - low) / (high - low), 0.0, 1.0));
    }
    double low, high;
};

std::vector<double> marks_of(const ChartGauge& gauge, const Reading& reading)
{
    constexpr double kMostMarks = 40;
    const double tick = gauge.tick.value_or(0);
    std::vector<double> marks;
    const double count = tick > 0 && std::isfinite(tick) ? (reading.high - reading.low) / tick + 1e-6 : kMostMarks;
    if (count < kMostMarks) {
        for (int at = 0; at <= static_cast<int>(count); ++at) marks.push_back(reading.low + at * tick);
        return marks;
    }
    ValueScale scale(reading.low, reading.high, 5, false, false);
    scale.limit(reading.low, reading.high);
    return scale.marks();
}

class Dial {
public:
    Dial(ChartBoard& board, const ChartArea& area) : board_(board), gauge_(board.data.gauge), reading_(gauge_)
    {
        constexpr float kLeastAngle = 90, kMostAngle = 340;
        const float half = std::clamp(gauge_.angle, kLeastAngle, kMostAngle) / 2 * kPi / 180;
        from_ = -kPi / 2 - half;
        to_ = -kPi / 2 + half;
        place(area, half);
    }

    void draw()
    {
        if (radius_ < 8) return;
        band(from_, to_, 0, radius_, gauge_.face.value_or(Color{245, 245, 245, 255}));
        for (size_t at = 0; at < gauge_.intervals.size(); ++at) {
            const auto& interval = gauge_.intervals[at];
            const float begin = angle(std::min(interval.low, interval.high));
            const float end = angle(std::max(interval.low, interval.high));
            if (end > begin) band(begin, end, radius_ * kRing, radius_, board_.interval_color(at));
        }
        draw_marks();
        draw_needle();
        board_.label({center_.x, text_line_}, gauge_text(gauge_), value_font(), HorizontalAlign::Center, 0,
                     gauge_.text_color);
    }

private:
    [[nodiscard]] float angle(double value) const { return from_ + reading_.share(value) * (to_ - from_); }
    [[nodiscard]] Point on(float radius, float at) const
    {
        return {center_.x + radius * std::cos(at), center_.y + radius * std::sin(at)};
    }
    [[nodiscard]] Font value_font() const
    {
        Font font = board_.data.label_font;
        font.size += 3;
        font.bold = true;
        return font;
    }

    /// The largest circle whose shown part, marks around it and the value below fit.
    void place(const ChartArea& area, float half)
    {
        const Font& font = board_.data.label_font;
        float widest = 0;
        for (const double mark : marks_of(gauge_, reading_)) {
            widest = std::max(widest, board_.text_width(chart_number(mark), font));
        }
        const float below = std::max(0.12F, -std::cos(half));  // of the radius, under the middle
        const float room = board_.line_height(font) + kTextGap, value = board_.line_height(value_font());
        const float wide = area.width() / 2 - widest - kTextGap;
        radius_ = std::min(wide, (area.height() - room - value - kTextGap) / (1 + below));
        center_ = {area.middle_x(), area.top + room + radius_};
        text_line_ = center_.y + radius_ * below + kTextGap + value * 0.8F;
    }

    void band(float from, float to, float inner, float outer, Color color)
    {
        const int steps = std::max(2, static_cast<int>((to - from) / 0.06F));
        std::vector<Point> points;
        const auto at = [&](int step) {
            return from + (to - from) * static_cast<float>(step) / static_cast<float>(steps);
        };
        for (int step = 0; step <= steps; ++step) points.push_back(on(outer, at(step)));
        for (int step = steps; step >= 0 && inner > 0; --step) points.push_back(on(inner, at(step)));
        if (inner <= 0) points.push_back(center_);
        board_.polygon(std::move(points), color, {0.5F, LineStyle::Solid, darker(color)});
    }

    void draw_marks()
    {
        const Font& font = board_.data.label_font;
        const Color color = gauge_.ticks.value_or(kAxisColor);
        for (const double mark : marks_of(gauge_, reading_)) {
            const float at = angle(mark);
            board_.line(on(radius_, at), on(radius_ + kTick, at), {0.75F, LineStyle::Solid, color});
            const float side = std::cos(at);
            const HorizontalAlign align = side > 0.2F    ? HorizontalAlign::Left
                                          : side < -0.2F ? HorizontalAlign::Right
                                                         : HorizontalAlign::Center;
            Point text = on(radius_ + kTick + kTextGap, at);
            text.y += font.size * 0.3F * std::sin(at);  // above on top, beside at the sides
            board_.middle_label(text, chart_number(mark), font, align, color);
        }
    }

    void draw_needle()
    {
        const float hub = std::max(2.0F, radius_ * 0.05F);
        const Color color = gauge_.needle.value_or(board_.data.fore);
        if (gauge_.value && std::isfinite(*gauge_.value)) {
            const float at = angle(*gauge_.value);
            board_.polygon({on(hub, at - kPi / 2), on(radius_ * 0.92F, at), on(hub, at + kPi / 2)}, color);
        }
        Shape circle;
        circle.path.emplace_back(Shape::Arc{center_, hub, 0, 2 * kPi});
        circle.closed = circle.filled = true;
        circle.fill = color;
        board_.shape(std::move(circle));
    }

    ChartBoard& board_;
    const ChartGauge& gauge_;
    Reading reading_;
    float from_ = 0, to_ = 0, radius_ = 0, text_line_ = 0;
    Point center_;
};

/// A tube: the value as a column, the intervals beside it.
void draw_tube(ChartBoard& board, const ChartArea& area)
{
    const ChartGauge& gauge = board.data.gauge;
    const Reading reading(gauge);
    const Font& font = board.data.label_font;
    const float line = board.line_height(font), width = std::min(24.0F, area.width() / 4);
    const ChartArea tube{area.middle_x() - width / 2, area.top + line / 2, area.middle_x() + width / 2,
                         area.bottom - line * 1.5F};
    if (!tube.usable()) return;
    const auto height = [&](double value) { return tube.bottom - reading.share(value) * tube.height(); };
    board.rectangle(tube, gauge.face.value_or(Color{245, 245, 245, 255}), kAxis);
    for (size_t at = 0; at < gauge.intervals.size(); ++at) {
        const auto& interval = gauge.intervals[at];
        const float top = height(std::max(interval.low, interval.high));
        const float bottom = height(std::min(interval.low, interval.high));
        if (bottom > top) board.rectangle({tube.right + 2, top, tube.right + 7, bottom}, board.interval_color(at));
    }
    const Color mercury = gauge.needle.value_or(Color{120, 20, 32, 255});
    if (gauge.value && std::isfinite(*gauge.value)) {
        board.rectangle({tube.left + width / 4, height(*gauge.value), tube.right - width / 4, tube.bottom}, mercury);
    }
    for (const double mark : marks_of(gauge, reading)) {
        board.line({tube.left - kTick, height(mark)}, {tube.left, height(mark)}, kAxis);
        board.middle_label({tube.left - kTick - kTextGap, height(mark)}, chart_number(mark), font,
                           HorizontalAlign::Right);
    }
    board.label({area.middle_x(), area.bottom - line * 0.2F}, gauge_text(gauge), font, HorizontalAlign::Center, 0,
                gauge.text_color);
}

}  // namespace

std::string gauge_text(const ChartGauge& gauge)
{
    if (!gauge.value || !std::isfinite(*gauge.value)) return "–";
    if (!gauge.text.empty()) return gauge.text;
    return chart_number(*gauge.value) + (gauge.units.empty() ? "" : " " + gauge.units);
}

void draw_gauge(ChartBoard& board, const ChartArea& area)
{
    if (board.data.kind == ChartKind::Thermometer) return draw_tube(board, area);
    Dial(board, area).draw();
}

}  // namespace velora::engine
