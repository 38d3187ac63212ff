#include "engine/chart/chart.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/chart/axis.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

namespace velora::engine {
namespace {

class ChartTest : public testing::Test {
protected:
    std::vector<std::string> labels(const ChartData& data, float width = 300, float height = 200)
    {
        drawing = draw_chart(data, width, height, measurer);
        std::vector<std::string> texts;
        for (const auto& item : drawing->items) {
            if (const auto* label = std::get_if<Label>(&item)) texts.push_back(label->text);
        }
        return texts;
    }

    /// Filled shapes of a colour.
    std::vector<Shape> filled(Color color) const
    {
        std::vector<Shape> shapes;
        for (const auto& item : drawing->items) {
            const auto* shape = std::get_if<Shape>(&item);
            if (shape != nullptr && shape->filled && shape->fill == color) shapes.push_back(*shape);
        }
        return shapes;
    }

    void expect_inside(float width, float height) const
    {
        for (const auto& item : drawing->items) {
            const auto* shape = std::get_if<Shape>(&item);
            if (shape == nullptr) continue;
            for (const auto& step : shape->path) {
                const auto* point = std::get_if<Point>(&step);
                if (point == nullptr) continue;
                EXPECT_TRUE(point->x >= 0 && point->x <= width && point->y >= 0 && point->y <= height)
                    << point->x << ' ' << point->y;
            }
        }
    }

    static ChartData sample(ChartKind kind)
    {
        ChartData data;
        data.kind = kind;
        data.title = "Title";
        data.categories = {"A", "B"};
        data.series = {{"Won", {10, 30}, Color{1, 1, 1, 255}}, {"Lost", {20, std::nullopt}, Color{2, 2, 2, 255}}};
        return data;
    }

    FontStore fonts{std::filesystem::path(VELORA_SOURCE_DIR) / "fonts"};
    Measurer measurer{fonts};
    std::shared_ptr<const Drawing> drawing;
};

float height_of(const Shape& bar)
{
    return std::abs(std::get<Point>(bar.path[2]).y - std::get<Point>(bar.path[0]).y);
}

TEST_F(ChartTest, EveryKindNamesItsTitleCategoriesAndSeries)
{
    for (const ChartKind kind : {ChartKind::Bar, ChartKind::StackedBar, ChartKind::Line, ChartKind::Area}) {
        EXPECT_THAT(labels(sample(kind)), testing::IsSupersetOf({"Title", "A", "B", "Won", "Lost", "0", "30"}));
        expect_inside(300, 200);
    }
    ChartData pie = sample(ChartKind::Pie);
    pie.slice_label = "{0} {1} {2}";
    EXPECT_THAT(labels(pie), testing::IsSupersetOf({"Title", "A 10 25.0%", "B 30 75.0%"}));
}

TEST_F(ChartTest, BarsAreAsLongAsTheirValues)
{
    for (const ChartKind kind : {ChartKind::Bar, ChartKind::StackedBar}) {
        labels(sample(kind));
        const auto won = filled({1, 1, 1, 255}), lost = filled({2, 2, 2, 255});
        ASSERT_EQ(won.size(), 3U) << "two bars and the legend";
        ASSERT_EQ(lost.size(), 2U) << "the gap has no bar";
    }
    labels(sample(ChartKind::Bar));
    std::vector<float> heights;
    for (const Shape& bar : filled({1, 1, 1, 255})) heights.push_back(height_of(bar));
    std::ranges::sort(heights);
    EXPECT_NEAR(heights[2], 3 * heights[1], 0.01);
}

TEST_F(ChartTest, SlicesTakeTheirShareOfTheCircle)
{
    ChartData data = sample(ChartKind::Pie);
    data.slice_colors = {{1, 1, 1, 255}, {2, 2, 2, 255}};
    labels(data);
    for (const Shape& shape : filled({2, 2, 2, 255})) {
        if (shape.path.size() != 2) continue;  // the legend's square
        const auto& arc = std::get<Shape::Arc>(shape.path[1]);
        EXPECT_NEAR(arc.to - arc.from, 1.5 * M_PI, 1e-4);
    }
}

TEST_F(ChartTest, OddDataAndSizesAreDrawnWithoutHarm)
{
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    for (const ChartKind kind :
         {ChartKind::Pie, ChartKind::Bar, ChartKind::StackedBar, ChartKind::Line, ChartKind::Area}) {
        ChartData data;
        data.kind = kind;
        EXPECT_NO_THROW(labels(data));
        data.categories.assign(300, std::string(200, 'W'));
        data.series.assign(40, {std::string(300, 'x'), {1e300, -1e300, kInfinite, NAN, 0, 1e-300}, {}});
        data.value_labels = true;
        for (const float size : {0.0F, 1.0F, 30.0F, 400.0F}) EXPECT_NO_THROW(labels(data, size, size)) << size;
        for (const auto& item : drawing->items) {
            const auto* label = std::get_if<Label>(&item);
            EXPECT_TRUE(label == nullptr || (std::isfinite(label->at.x) && std::isfinite(label->at.y)));
        }
    }
}

TEST(ValueScale, MarksAreRoundAndCoverTheValues)
{
    struct Case {
        double least, most;
        std::vector<std::string> marks;
    };
    for (const auto& c :
         {Case{0, 10, {"0", "2", "4", "6", "8", "10"}}, Case{-3, 22, {"-5", "0", "5", "10", "15", "20", "25"}},
          Case{0, 0.03, {"0.00", "0.01", "0.02", "0.03"}}, Case{0, 0, {"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"}},
          Case{5000, 41000, {"0", "10,000", "20,000", "30,000", "40,000", "50,000"}}}) {
        const ValueScale scale(c.least, c.most, 5);
        std::vector<std::string> marks;
        for (const double mark : scale.marks()) marks.push_back(scale.text(mark));
        EXPECT_EQ(marks, c.marks);
    }
}

TEST(ValueScale, CountsHaveMarksAtWholeNumbersOnly)
{
    struct Case {
        const char* why;
        double most;
        std::vector<double> expected;
    };
    for (const auto& c : {Case{"no 2.5", 10, {0, 5, 10}}, Case{"no half", 1, {0, 1}}, Case{"2, 4, 6", 6, {0, 2, 4, 6}},
                          Case{"25 is whole", 100, {0, 25, 50, 75, 100}}}) {
        EXPECT_EQ(ValueScale(0, c.most, 4, true).marks(), c.expected) << c.why;
    }
}

TEST_F(ChartTest, TheMarksOfTheValueAxisAreWrittenAsAsked)
{
    ChartData data;
    data.categories = {"a"};
    data.series = {{"s", {10.0}, {}}};
    data.mark_text = [](double mark) { return std::to_string(static_cast<int>(mark)) + " pcs"; };
    const auto texts = labels(data);
    EXPECT_NE(std::find(texts.begin(), texts.end(), "10 pcs"), texts.end());
    for (const auto& text : texts) EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << text;
}

}  // namespace
}  // namespace velora::engine
