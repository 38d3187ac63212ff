#include "engine/chart/chart.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

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

TEST_F(ChartTest, NumbersAtBarsAndPointsDoNotStandOverEachOther)
{
    struct Box {
        float left, right, top, bottom;
    };
    for (const ChartKind kind : {ChartKind::Bar, ChartKind::StackedBar, ChartKind::Line}) {
        ChartData data;
        data.kind = kind;
        data.value_labels = true;
        data.legend = false;
        data.series = {{"a", {}, {}}, {"b", {}, {}}};
        for (int at = 0; at < 40; ++at) {
            data.categories.push_back("c");
            data.series[0].values.emplace_back(500 + at * 37 % 101);
            data.series[1].values.emplace_back(100 + at * 37 % 101);
        }
        labels(data);
        std::vector<Box> numbers;
        for (const auto& item : drawing->items) {
            const auto* label = std::get_if<Label>(&item);
            if (label == nullptr || label->align != HorizontalAlign::Center || label->text.size() < 3) continue;
            const float half = measurer.width(label->text, label->font) / 2;
            numbers.push_back(
                {label->at.x - half, label->at.x + half, label->at.y - label->font.size * 0.8F, label->at.y});
        }
        EXPECT_GT(numbers.size(), 4U) << "some are shown";
        for (size_t one = 0; one < numbers.size(); ++one) {
            for (size_t other = one + 1; other < numbers.size(); ++other) {
                const Box &a = numbers[one], &b = numbers[other];
                EXPECT_FALSE(a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom)
                    << static_cast<int>(kind) << ": " << one << " and " << other;
            }
        }
    }
}

TEST_F(ChartTest, ColoursOfTheirOwnAreToldApartInGreyPrint)
{
    ChartData data;
    data.categories = {"c"};
    for (int at = 0; at < 12; ++at) data.series.push_back({"s", {1}, {}});
    labels(data, 400, 300);
    std::vector<double> greys;
    for (const auto& item : drawing->items) {
        const auto* shape = std::get_if<Shape>(&item);
        if (shape == nullptr || !shape->filled) continue;
        greys.push_back(0.299 * shape->fill.red + 0.587 * shape->fill.green + 0.114 * shape->fill.blue);
    }
    ASSERT_EQ(greys.size(), 24U) << "an entry of the legend and a bar each";
    for (size_t one = 12; one < 24; ++one) {
        if (one > 12) {
            EXPECT_GT(std::abs(greys[one] - greys[one - 1]), 35) << one << " is not like the one before it";
        }
        for (size_t other = one + 1; other < 24; ++other) {
            EXPECT_GT(std::abs(greys[one] - greys[other]), 12) << one << " and " << other;
        }
    }
}

TEST_F(ChartTest, StackedAreasStandOnEachOther)
{
    ChartData data = sample(ChartKind::StackedArea);
    data.series[1].values[1] = 40;
    EXPECT_THAT(labels(data), testing::Contains("80")) << "the axis goes up to 30 and 40";
    const auto lower = filled({1, 1, 1, 255}), upper = filled({2, 2, 2, 255});
    ASSERT_EQ(lower.size(), 2U) << "with the legend's";
    const auto tops = [](const Shape& area) { return std::pair{area.path[3], area.path[2]}; };
    EXPECT_EQ(tops(lower[1]), (std::pair{upper[1].path[0], upper[1].path[1]}));
}

TEST_F(ChartTest, TheValueAxisEndsWhereItIsAskedTo)
{
    ChartData data = sample(ChartKind::Bar);
    data.least = 5;
    data.most = 25;
    EXPECT_THAT(labels(data), testing::AllOf(testing::Contains("25"), testing::Not(testing::Contains("30")),
                                             testing::Not(testing::Contains("0"))));
    expect_inside(300, 200);
    data.most = 5;
    EXPECT_THAT(labels(data), testing::Contains("30")) << "an axis of no length is none";
}

TEST_F(ChartTest, ThinSlicesAreGatheredWithTheirSumAndTheirNumber)
{
    ChartData data;
    data.kind = ChartKind::Pie;
    data.slice_label = "{0}={1}";
    data.series = {{"", {}, {}}};
    const auto add = [&](const char* name, double value) {
        data.categories.emplace_back(name);
        data.series[0].values.emplace_back(value);
    };
    for (const auto& [name, value] :
         {std::pair{"thin", 1.5}, {"A", 60.0}, {"slim", 1.0}, {"B", 35.5}, {"fine", 1.75}}) {
        add(name, value);
    }
    const auto shown = labels(data, 400, 300);
    EXPECT_EQ(std::set<std::string>(shown.begin(), shown.end()),
              (std::set<std::string>{"A", "B", "… (3)", "A=60", "B=35.50", "… (3)=4.25"}));
    EXPECT_NE(drawing->description.find("slim 1"), std::string::npos) << "in words all are told";
    data.categories.pop_back();
    data.series[0].values.pop_back();
    const auto two = labels(data, 400, 300);
    EXPECT_NE(std::ranges::find(two, "slim=1"), two.end()) << "two thin ones would gain nothing";
    for (int at = 0; at < 30; ++at) add("more", 40);
    EXPECT_EQ(std::ranges::count(labels(data, 400, 300), "… (23)"), 1) << "11 and the rest";
}

}  // namespace
}  // namespace velora::engine
