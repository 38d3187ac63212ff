#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "engine/chart/chart.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

namespace velora::engine {
namespace {

constexpr ChartKind kKinds[] = {ChartKind::Pie,  ChartKind::Bar,  ChartKind::StackedBar,
                                ChartKind::Line, ChartKind::Area, ChartKind::StackedArea};

struct Box {
    double left, top, right, bottom;

    [[nodiscard]] bool overlaps(const Box& other) const
    {
        constexpr double kTouch = 0.5;
        return left + kTouch < other.right && other.left + kTouch < right && top + kTouch < other.bottom &&
               other.top + kTouch < bottom;
    }
};

/// Data that a report's rows may well give.
struct Odd {
    const char* why;
    ChartData data;
};

ChartData with_values(std::vector<std::optional<double>> values)
{
    ChartData data;
    for (size_t at = 0; at < values.size(); ++at) data.categories.push_back("C" + std::to_string(at));
    data.series = {{"Series", std::move(values), {}}};
    data.title = "Title";
    data.value_axis = "Amount";
    data.category_axis = "Month";
    return data;
}

std::vector<Odd> odd_data()
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    std::vector<std::optional<double>> many;
    for (int at = 0; at < 200; ++at) many.emplace_back(at * 37 % 101 - 20);
    std::vector<Odd> all = {{"nothing at all", {}},
                            {"no rows", with_values({})},
                            {"one value", with_values({5})},
                            {"all zero", with_values({0, 0, 0})},
                            {"all null", with_values({std::nullopt, std::nullopt})},
                            {"only negative", with_values({-5, -10, -1})},
                            {"both signs", with_values({-5, 10, 0})},
                            {"huge", with_values({1e300, 1, -1e300})},
                            {"tiny", with_values({1e-300, 2e-300})},
                            {"next to each other", with_values({1e9, 1e9 + 1})},
                            {"no numbers", with_values({kNan, kInfinite, -kInfinite, 3})},
                            {"one that is nearly all", with_values({1e6, 1, 1, 1})},
                            {"two hundred categories", with_values(many)}};
    auto wordy = with_values({1, 2, 3, 4});
    for (auto& name : wordy.categories) name = "A very long name of a category that no chart has room for " + name;
    wordy.title = wordy.categories[0];
    wordy.series[0].name = wordy.categories[1];
    all.push_back({"very long names", wordy});
    auto crowded = with_values({1, 2, 3});
    for (int at = 0; at < 40; ++at) crowded.series.push_back({"Series " + std::to_string(at), {1, 2, 3}, {}});
    all.push_back({"forty series", crowded});
    auto short_series = with_values({1, 2, 3});
    short_series.series[0].values.resize(1);
    all.push_back({"fewer values than categories", short_series});
    return all;
}

class ChartBox : public testing::Test {
protected:
    void draw(ChartData data, float width = 360, float height = 220)
    {
        drawing = draw_chart(data, width, height, measurer);
    }

    /// Where a label's letters stand, slanted ones as the box around them.
    Box box_of(const Label& label)
    {
        const double width = measurer.width(label.text, label.font);
        const double start = label.align == HorizontalAlign::Left     ? 0
                             : label.align == HorizontalAlign::Center ? -width / 2
                                                                      : -width;
        Box box{1e9, 1e9, -1e9, -1e9};
        for (const double x : {start, start + width}) {
            for (const double y : {-0.73 * label.font.size, 0.0}) {
                const double at_x = label.at.x + x * std::cos(label.angle) - y * std::sin(label.angle);
                const double at_y = label.at.y + x * std::sin(label.angle) + y * std::cos(label.angle);
                box = {std::min(box.left, at_x), std::min(box.top, at_y), std::max(box.right, at_x),
                       std::max(box.bottom, at_y)};
            }
        }
        return box;
    }

    std::vector<Label> labels() const
    {
        std::vector<Label> all;
        for (const auto& item : drawing->items) {
            if (const auto* label = std::get_if<Label>(&item)) all.push_back(*label);
        }
        return all;
    }

    /// Angles of the slices, as drawn.
    std::vector<double> slices() const
    {
        std::vector<double> all;
        for (const auto& item : drawing->items) {
            const auto* shape = std::get_if<Shape>(&item);
            if (shape == nullptr || !shape->filled) continue;
            for (const auto& step : shape->path) {
                const auto* arc = std::get_if<Shape::Arc>(&step);
                if (arc != nullptr) all.push_back(arc->to - arc->from);
            }
        }
        return all;
    }

    void expect_inside(const Box& box, const std::string& what)
    {
        constexpr double kSlack = 1;
        EXPECT_TRUE(box.left >= -kSlack && box.top >= -kSlack && box.right <= drawing->width + kSlack &&
                    box.bottom <= drawing->height + kSlack)
            << what << ": " << box.left << ',' << box.top << " to " << box.right << ',' << box.bottom << " of "
            << drawing->width << 'x' << drawing->height;
    }

    void expect_all_inside()
    {
        for (const Label& label : labels()) expect_inside(box_of(label), label.text);
        for (const auto& item : drawing->items) {
            const auto* shape = std::get_if<Shape>(&item);
            if (shape == nullptr) continue;
            for (const auto& step : shape->path) {
                if (const auto* point = std::get_if<Point>(&step)) {
                    expect_inside({point->x, point->y, point->x, point->y}, "a point");
                } else {
                    const auto& arc = std::get<Shape::Arc>(step);
                    expect_inside({arc.center.x - arc.radius, arc.center.y - arc.radius, arc.center.x + arc.radius,
                                   arc.center.y + arc.radius},
                                  "an arc");
                }
            }
        }
    }

    void expect_labels_apart()
    {
        const auto all = labels();
        for (size_t at = 0; at < all.size(); ++at) {
            for (size_t other = at + 1; other < all.size(); ++other) {
                // the boxes around slanted texts overlap where the texts do not
                if (all[at].angle != 0 && all[other].angle == all[at].angle) {
                    EXPECT_GT(std::hypot(all[at].at.x - all[other].at.x, all[at].at.y - all[other].at.y), 6);
                } else if (all[at].angle == 0 && all[other].angle == 0) {
                    EXPECT_FALSE(box_of(all[at]).overlaps(box_of(all[other])))
                        << all[at].text << " and " << all[other].text;
                }
            }
        }
    }

    FontStore fonts{std::filesystem::path(VELORA_SOURCE_DIR) / "fonts"};
    Measurer measurer{fonts};
    std::shared_ptr<const Drawing> drawing;
};

TEST_F(ChartBox, NothingLeavesTheBox)
{
    for (const ChartKind kind : kKinds) {
        for (Odd odd : odd_data()) {
            for (const bool lying : {false, true}) {
                for (const auto position : {LegendPosition::Bottom, LegendPosition::Right}) {
                    odd.data.kind = kind;
                    odd.data.horizontal = lying;
                    odd.data.legend_position = position;
                    for (const auto& [width, height] : {std::pair{360.0F, 220.0F}, {120.0F, 90.0F}}) {
                        SCOPED_TRACE(std::string(odd.why) + ", kind " + std::to_string(static_cast<int>(kind)) +
                                     (lying ? ", lying" : "") + (position == LegendPosition::Right ? ", right" : ""));
                        draw(odd.data, width, height);
                        expect_all_inside();
                    }
                }
            }
        }
    }
}

TEST_F(ChartBox, LabelsDoNotStandOnEachOther)
{
    for (const ChartKind kind : kKinds) {
        for (Odd odd : odd_data()) {
            for (const bool lying : {false, true}) {
                odd.data.kind = kind;
                odd.data.horizontal = lying;
                SCOPED_TRACE(std::string(odd.why) + ", kind " + std::to_string(static_cast<int>(kind)));
                draw(odd.data);
                expect_labels_apart();
            }
        }
    }
}

TEST_F(ChartBox, SlicesSumToTheWholeAndKeepTheirProportions)
{
    for (Odd odd : odd_data()) {
        odd.data.kind = ChartKind::Pie;
        draw(odd.data);
        const auto angles = slices();
        double sum = 0;
        for (const double angle : angles) {
            EXPECT_GE(angle, 0) << odd.why;
            sum += angle;
        }
        if (!angles.empty()) {
            EXPECT_NEAR(sum, 2 * std::numbers::pi, 1e-3) << odd.why;
        }
    }
    auto data = with_values({1, -5, std::nullopt, 3});
    data.kind = ChartKind::Pie;
    draw(data);
    EXPECT_THAT(slices(), testing::ElementsAre(testing::DoubleNear(std::numbers::pi / 2, 1e-4),
                                               testing::DoubleNear(std::numbers::pi * 1.5, 1e-4)))
        << "what is not above zero has no slice";
}

TEST_F(ChartBox, SharesShownAddUpToAHundred)
{
    for (const auto& values : std::vector<std::vector<std::optional<double>>>{{1, 1, 1}, {1, 2, 4}, {5}, {99.9, 0.1}}) {
        auto data = with_values(values);
        data.kind = ChartKind::Pie;
        data.slice_label = "{2}";
        data.legend = false;
        data.title.clear();
        draw(data);
        double sum = 0;
        for (const Label& label : labels()) sum += std::stod(label.text);
        EXPECT_NEAR(sum, 100, 0.05 * static_cast<double>(values.size()) + 1e-9) << values.size();
    }
}

TEST_F(ChartBox, BarsStartAtZeroAndStacksAddUp)
{
    auto data = with_values({4, -4});
    data.series[0].color = Color{1, 2, 3, 255};
    data.legend = false;
    draw(data);
    std::vector<Box> bars;
    for (const auto& item : drawing->items) {
        const auto* shape = std::get_if<Shape>(&item);
        if (shape == nullptr || !shape->filled || shape->fill != Color{1, 2, 3, 255}) continue;
        const auto& from = std::get<Point>(shape->path[0]);
        const auto& to = std::get<Point>(shape->path[2]);
        bars.push_back(
            {std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x), std::max(from.y, to.y)});
    }
    ASSERT_EQ(bars.size(), 2U);
    EXPECT_NEAR(bars[0].bottom, bars[1].top, 0.01) << "one goes up and one down from the same line";
    EXPECT_NEAR(bars[0].bottom - bars[0].top, bars[1].bottom - bars[1].top, 0.01);
    EXPECT_LT(bars[0].right, bars[1].left) << "categories stand side by side";
}

TEST_F(ChartBox, TheSameDataGiveTheSameDrawing)
{
    for (const ChartKind kind : kKinds) {
        auto data = with_values({3, 1, 2});
        data.kind = kind;
        const auto first = *draw_chart(data, 300, 200, measurer);
        EXPECT_EQ(first, *draw_chart(data, 300, 200, measurer));
    }
}

}  // namespace
}  // namespace velora::engine
