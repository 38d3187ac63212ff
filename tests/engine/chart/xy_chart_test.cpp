#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "engine/chart/chart.h"
#include "engine/chart/time_scale.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"
#include "values/date_time.h"

namespace velora::engine {
namespace {

constexpr Color kFirst{1, 2, 3, 255}, kSecond{4, 5, 6, 255};

double time_of(const char* iso)
{
    return static_cast<double>(DateTime::from_iso(iso)->unix_milliseconds());
}

class XyChart : public testing::Test {
protected:
    std::vector<std::string> drawn(const ChartData& data, float width = 300, float height = 200)
    {
        drawing = draw_chart(data, width, height, measurer);
        std::vector<std::string> texts;
        for (const auto& item : drawing->items) {
            if (const auto* label = std::get_if<Label>(&item)) texts.push_back(label->text);
        }
        return texts;
    }
    std::vector<Shape> shapes(const std::function<bool(const Shape&)>& wanted) const
    {
        std::vector<Shape> all;
        for (const auto& item : drawing->items) {
            if (const auto* shape = std::get_if<Shape>(&item); shape != nullptr && wanted(*shape))
                all.push_back(*shape);
        }
        return all;
    }
    /// Middles of the round signs of a colour, in their order, and of those of the legend none.
    std::vector<Point> signs(Color color) const
    {
        std::vector<Point> all;
        for (const Shape& shape : shapes([&](const Shape& s) { return s.filled && s.fill == color; })) {
            if (const auto* arc = std::get_if<Shape::Arc>(&shape.path[0])) all.push_back(arc->center);
        }
        return all;
    }
    void expect_inside(const char* why)
    {
        for (const Shape& shape : shapes([](const Shape&) { return true; })) {
            for (const auto& step : shape.path) {
                const auto* point = std::get_if<Point>(&step);
                if (point == nullptr) continue;
                EXPECT_TRUE(point->x >= -1 && point->x <= drawing->width + 1 && point->y >= -1 &&
                            point->y <= drawing->height + 1)
                    << why << ": " << point->x << ' ' << point->y;
            }
        }
    }

    FontStore fonts{std::filesystem::path(VELORA_SOURCE_DIR) / "fonts"};
    Measurer measurer{fonts};
    std::shared_ptr<const Drawing> drawing;
};

ChartData points(std::vector<XyPoint> first)
{
    ChartData data;
    data.kind = ChartKind::Xy;
    data.legend = false;
    data.series = {{"a", {}, kFirst, std::move(first)}};
    return data;
}

TEST_F(XyChart, PointsStandWhereTheirNumbersSay)
{
    ChartData data = points({{0, 10}, {1, 40}, {10, 20}});
    EXPECT_THAT(drawn(data), testing::IsSupersetOf({"0", "10", "20", "40"}));
    const auto at = signs(kFirst);
    ASSERT_EQ(at.size(), 3U);
    EXPECT_NEAR((at[2].x - at[0].x) / (at[1].x - at[0].x), 10, 0.01);
    EXPECT_NEAR((at[0].y - at[1].y) / (at[0].y - at[2].y), 3, 0.01);
    const auto lines = [&] {
        return shapes([](const Shape& s) { return !s.filled && s.stroke.color == kFirst; }).size();
    };
    EXPECT_EQ(lines(), 1U);
    data.x_most = 5;
    drawn(data);
    EXPECT_EQ(signs(kFirst).size(), 2U) << "what is beyond the axis is not drawn";
    data.lines = false;
    drawn(data);
    EXPECT_EQ(lines(), 0U);
    expect_inside("cut");
}

TEST_F(XyChart, ValuesFarFromZeroFillTheHeight)
{
    drawn(points({{0, 1000}, {1, 1010}}));
    const auto at = signs(kFirst);
    EXPECT_GT(at[0].y - at[1].y, 100);
}

TEST(TimeScale, MarksStandWherePeriodsBegin)
{
    struct Case {
        const char *from, *to;
        int marks;
        const char *pattern, *first, *second;
    };
    for (const auto& c : {
             Case{"2026-01-05", "2026-04-20", 5, "MMM yyyy", "2026-02-01", "2026-03-01"},
             Case{"2025-11-05", "2026-09-20", 5, "MMM yyyy", "2026-01-01", "2026-04-01"},
             Case{"2026-02-20", "2026-03-24", 5, "d MMM", "2026-02-23", "2026-03-02"},
             Case{"2026-02-27", "2026-03-02", 4, "d MMM", "2026-02-27", "2026-02-28"},
             Case{"2026-02-27T08:10", "2026-02-27T10:50", 4, "HH:mm", "2026-02-27T09:00:00", "2026-02-27T10:00:00"},
             Case{"1988-05-01", "2026-05-01", 5, "yyyy", "1990-01-01", "2000-01-01"},
         }) {
        const TimeScale scale(time_of(c.from), time_of(c.to), c.marks);
        EXPECT_EQ(scale.pattern(), c.pattern) << c.from;
        ASSERT_GE(scale.marks().size(), 2U) << c.from;
        const auto mark = [&](size_t at) {
            return DateTime::from_unix_milliseconds(static_cast<int64_t>(scale.marks()[at])).iso();
        };
        EXPECT_EQ(mark(0), c.first) << c.from;
        EXPECT_EQ(mark(1), c.second) << c.from;
    }
    EXPECT_LE(TimeScale(-1e300, 1e300, 5).marks().size(), 12U);
    EXPECT_EQ(TimeScale(0, 0, 5).marks().size(), 2U) << "no time at all is a second";
}

TEST_F(XyChart, TimesAreWrittenAtTheirMarksAndInWords)
{
    ChartData data = points({{time_of("2026-01-05"), 4}, {time_of("2026-04-20"), 8}});
    data.dates = true;
    data.date_text = [](double time, std::string_view pattern) {
        return DateTime::from_unix_milliseconds(static_cast<int64_t>(time)).iso() + " " + std::string(pattern);
    };
    EXPECT_THAT(drawn(data, 300), testing::Contains("2026-04-01 MMM yyyy"));
    EXPECT_EQ(drawing->description, "a: 2026-01-05 d MMM yyyy 4, 2026-04-20 d MMM yyyy 8");
}

TEST_F(XyChart, TheNeedlePointsAtTheValue)
{
    struct Case {
        const char* why;
        double value, degrees;  ///< from three o'clock, clockwise
        std::string text;
    };
    for (const auto& c : {Case{"the start", 20, 170, "20 km"}, Case{"the middle", 60, 270, "60 km"},
                          Case{"a quarter", 40, 220, "40 km"}, Case{"beyond the end", 300, 370, "300 km"}}) {
        ChartData data;
        data.kind = ChartKind::Meter;
        data.gauge.low = 20;
        data.gauge.high = 100;
        data.gauge.angle = 200;
        data.gauge.value = c.value;
        data.gauge.needle = kFirst;
        data.gauge.units = "km";
        data.gauge.intervals = {{"Low", 20, 40, kSecond}};
        EXPECT_THAT(drawn(data), testing::IsSupersetOf({c.text, std::string("Low"), std::string("20")}));
        EXPECT_EQ(drawing->description, c.text);
        const auto needle = shapes([](const Shape& s) { return s.fill == kFirst && s.path.size() == 3; });
        ASSERT_EQ(needle.size(), 1U);
        const auto hub = signs(kFirst).at(0);
        const auto tip = std::get<Point>(needle[0].path[1]);
        const double angle = std::atan2(tip.y - hub.y, tip.x - hub.x) * 180 / std::numbers::pi;
        EXPECT_NEAR(std::remainder(angle - c.degrees, 360), 0, 0.1) << c.why;
    }
}

TEST_F(XyChart, OddDataLeaveNothingOutsideTheBox)
{
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    const std::vector<XyPoint> odd[] = {{},
                                        {{1, 1}},
                                        {{kInfinite, 1}, {NAN, 2}, {3, NAN}},
                                        {{1e300, -1e300}, {0, 0}},
                                        {{1e15, 1e15}, {1e15 + 1, 1e15}},
                                        {{1e-300, 1e-300}, {0, 0}}};
    for (const auto& set : odd) {
        for (const float size : {0.0F, 5.0F, 40.0F, 200.0F}) {
            for (const bool dates : {false, true}) {
                ChartData data = points(set);
                data.dates = dates;
                data.filled = dates;
                drawn(data, size, size);
                expect_inside("points");
            }
        }
    }
    for (const double value : {0.0, -5.0, 1e300, kInfinite, -kInfinite, static_cast<double>(NAN)}) {
        for (const ChartKind kind : {ChartKind::Meter, ChartKind::Thermometer, ChartKind::Unknown}) {
            for (const float size : {0.0F, 5.0F, 40.0F, 200.0F}) {
                ChartData data;
                data.kind = kind;
                data.unknown = "candlestick";
                data.gauge.value = value;
                data.gauge.high = value;
                data.gauge.tick = value;
                data.gauge.intervals = {{"x", value, -value, {}}};
                drawn(data, size, size);
                expect_inside("gauge");
            }
        }
    }
}

}  // namespace
}  // namespace velora::engine
