#include <gtest/gtest.h>

#include <fmt/format.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>

#include "engine/chart/chart.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

/// Charts as they have to look, as pictures that a browser opens. VELORA_RENEW_GOLDEN=1 draws them anew: look at them.
namespace velora::engine {
namespace {

namespace fs = std::filesystem;

const fs::path kGolden = fs::path(VELORA_SOURCE_DIR) / "tests/golden/charts";

struct Sample {
    const char* name;  ///< what it shows
    ChartData data;
    float width = 260, height = 180;
};

ChartData amounts(ChartKind kind)
{
    ChartData data;
    data.kind = kind;
    data.categories = {"North", "South", "East"};
    data.series = {{"Won", {13.5, 7, 21}, {}}, {"Lost", {4, 9.25, std::nullopt}, Color{200, 30, 60, 255}}};
    return data;
}

ChartData with(ChartData data, const std::function<void(ChartData&)>& change)
{
    change(data);
    return data;
}

ChartData both_signs(ChartKind kind)
{
    return with(amounts(kind), [](ChartData& data) {
        data.series = {{"In", {130, 45, 0}, {}}, {"Out", {-80, -20.5, -10}, {}}, {"Rest", {25, -35, 60}, {}}};
    });
}

ChartData long_names(ChartKind kind)
{
    return with(amounts(kind), [](ChartData& data) {
        data.categories = {"Northern districts and islands", "South", "The east beyond the river", "West"};
        data.series[0].values.push_back(3);
    });
}

ChartData slices(std::vector<std::optional<double>> values)
{
    ChartData data;
    data.kind = ChartKind::Pie;
    data.slice_label = "{0}: {1} ({2})";
    for (size_t at = 0; at < values.size(); ++at) data.categories.push_back("Part " + std::to_string(at + 1));
    data.series = {{"", std::move(values), {}}};
    return data;
}

ChartData points()
{
    ChartData data;
    data.kind = ChartKind::Xy;
    data.category_axis = "Hours";
    data.value_axis = "Units";
    data.series = {{"Pump", {}, {}, {{1, 20}, {2.5, 28}, {4, 35}}},
                   {"Fan", {}, {}, {{1, 44}, {3, 61.5}, {7, 52}}},
                   {"Belt", {}, {}, {{2, 12}, {6, 18}, {8, 47}}}};
    return data;
}

ChartData gauge(ChartKind kind)
{
    ChartData data;
    data.kind = kind;
    data.title = "Load";
    data.gauge = {47.25, 0,  80, {{"Low", 0, 20, {}}, {"High", 60, 80, Color{200, 30, 60, 255}}}, "kN", "", 10, 200, {},
                  {},    {}, {}};
    return data;
}

std::vector<Sample> samples()
{
    return {
        {"bars", with(amounts(ChartKind::Bar), [](ChartData& data) { data.title = "Quotes by region"; })},
        {"bars of both signs with values",
         with(both_signs(ChartKind::Bar), [](ChartData& data) { data.value_labels = true; })},
        {"bars with titles at the axes", with(amounts(ChartKind::Bar),
                                              [](ChartData& data) {
                                                  data.subtitle = "this year";
                                                  data.title = "Quotes";
                                                  data.category_axis = "Region";
                                                  data.value_axis = "Amount";
                                                  data.title_color = Color{0, 0, 128, 255};
                                                  data.subtitle_color = Color{90, 90, 90, 255};
                                                  data.legend_color = Color{0, 128, 0, 255};
                                                  data.legend_position = LegendPosition::Right;
                                              })},
        {"bars that lie", with(both_signs(ChartKind::Bar),
                               [](ChartData& data) {
                                   data.horizontal = true;
                                   data.value_labels = true;
                                   data.category_axis = "Region";
                                   data.value_axis = "Amount";
                                   data.legend_position = LegendPosition::Left;
                               })},
        {"one bar", with(amounts(ChartKind::Bar),
                         [](ChartData& data) {
                             data.categories = {"Only"};
                             data.series = {{"Alone", {0.037}, {}}};
                             data.legend = false;
                         })},
        {"bars with long names", long_names(ChartKind::Bar)},
        {"lying bars with long names",
         with(long_names(ChartKind::Bar), [](ChartData& data) { data.horizontal = true; })},
        {"stacked bars of both signs",
         with(both_signs(ChartKind::StackedBar), [](ChartData& data) { data.value_labels = true; })},
        {"stacked bars that lie", with(both_signs(ChartKind::StackedBar),
                                       [](ChartData& data) {
                                           data.horizontal = true;
                                           data.legend_position = LegendPosition::Top;
                                       })},
        {"lines with a gap",
         with(amounts(ChartKind::Line),
              [](ChartData& data) {
                  data.categories = {"1", "2", "3", "4", "5"};
                  data.series = {{"A", {5, 7.5, std::nullopt, 2, 4}, {}}, {"B", {1, -3, 4, std::nullopt, 8}, {}}};
                  data.value_labels = true;
              })},
        {"lines without dots", with(both_signs(ChartKind::Line), [](ChartData& data) { data.markers = false; })},
        {"areas", both_signs(ChartKind::Area)},
        {"counts",
         with(amounts(ChartKind::Bar),
              [](ChartData& data) {
                  data.mark_text = [](double mark) { return std::to_string(static_cast<int>(mark)) + " pcs"; };
                  data.series = {{"Count", {1, 3, 2}, {}}};
              }),
         180, 120},
        {"many series",
         with(amounts(ChartKind::Bar),
              [](ChartData& data) {
                  data.series.clear();
                  for (int at = 0; at < 14; ++at)
                      data.series.push_back({"Series number " + std::to_string(at), {at + 1.0, 15.0 - at, 5}, {}});
              })},
        {"a pie", with(slices({45, 30, 12.5, 7, 5.5}), [](ChartData& data) { data.title = "Shares"; })},
        {"a pie with its own colours", with(slices({1, 2, std::nullopt, -4, 3}),
                                            [](ChartData& data) {
                                                data.slice_colors = {{10, 60, 120, 255}, {200, 90, 20, 255}};
                                                data.slice_label = "{2}";
                                                data.legend_position = LegendPosition::Right;
                                            })},
        {"a pie of one slice", slices({7})},
        {"a pie of many slices", slices({9, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1})},
        {"a pie of nothing", slices({0, std::nullopt})},
        {"stacked areas", both_signs(ChartKind::StackedArea)},
        {"points and lines", points()},
        {"points alone", with(points(), [](ChartData& data) { data.lines = false; })},
        {"a dial", gauge(ChartKind::Meter)},
        {"a tube", gauge(ChartKind::Thermometer), 120, 180},
    };
}

std::string color_of(const Color& color)
{
    return fmt::format("#{:02x}{:02x}{:02x}{:02x}", color.red, color.green, color.blue, color.alpha);
}

std::string path_of(const Shape& shape)
{
    std::string path;
    const auto to = [&](double x, double y) { path += fmt::format("{}{:.2f} {:.2f}", path.empty() ? "M" : "L", x, y); };
    for (const auto& step : shape.path) {
        if (const auto* point = std::get_if<Point>(&step)) {
            to(point->x, point->y);
            continue;
        }
        const auto& arc = std::get<Shape::Arc>(step);
        const auto at = [&](double angle) {
            return Point{arc.center.x + arc.radius * static_cast<float>(std::cos(angle)),
                         arc.center.y + arc.radius * static_cast<float>(std::sin(angle))};
        };
        const Point begin = at(arc.from), middle = at((arc.from + arc.to) / 2), end = at(arc.to);
        to(begin.x, begin.y);
        for (const Point& next : {middle, end}) {  // in halves, so that a whole circle is drawn
            path += fmt::format("A{0:.2f} {0:.2f} 0 0 {1} {2:.2f} {3:.2f}", arc.radius, arc.to > arc.from ? 1 : 0,
                                next.x, next.y);
        }
    }
    return path + (shape.closed ? "Z" : "");
}

std::string svg_of(const Shape& shape)
{
    std::string svg =
        "<path d=\"" + path_of(shape) + "\" fill=\"" + (shape.filled ? color_of(shape.fill) : "none") + "\"";
    if (shape.stroke.width > 0)
        svg += fmt::format(" stroke=\"{}\" stroke-width=\"{}\"", color_of(shape.stroke.color), shape.stroke.width);
    return svg + "/>\n";
}

std::string svg_of(const Label& label)
{
    const char* anchor = label.align == HorizontalAlign::Center  ? "middle"
                         : label.align == HorizontalAlign::Right ? "end"
                                                                 : "start";
    return fmt::format(
        "<text x=\"{0:.2f}\" y=\"{1:.2f}\" transform=\"rotate({2:.1f} {0:.2f} {1:.2f})\" text-anchor=\"{3}\""
        " font-family=\"DejaVu Sans\" font-size=\"{4}\" font-weight=\"{5}\" fill=\"{6}\">{7}</text>\n",
        label.at.x, label.at.y, label.angle * 180 / std::numbers::pi, anchor, label.font.size,
        label.font.bold ? "bold" : "normal", color_of(label.color), label.text);
}

std::string svg_of(const Drawing& drawing)
{
    std::string svg = fmt::format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{}\" height=\"{}\">\n",
                                  drawing.width, drawing.height);
    for (const auto& item : drawing.items) svg += std::visit([](const auto& each) { return svg_of(each); }, item);
    return svg + "</svg>\n";
}

/// The first line that differs, for the message.
std::string difference(const std::string& expected, const std::string& drawn)
{
    if (expected == drawn) return {};
    const size_t at = static_cast<size_t>(std::ranges::mismatch(expected, drawn).in1 - expected.begin());
    const size_t begin = expected.rfind('\n', at == 0 ? 0 : at - 1) + 1;
    const auto line = [&](const std::string& text) {
        return text.substr(std::min(begin, text.size()), text.find('\n', at) - begin);
    };
    return "expected " + line(expected) + "\ndrawn    " + line(drawn);
}

TEST(ChartPictures, AreTheGoldenOnes)
{
    FontStore fonts(fs::path(VELORA_SOURCE_DIR) / "fonts");
    Measurer measurer(fonts);
    for (const auto& sample : samples()) {
        const fs::path file = kGolden / (std::string(sample.name) + ".svg");
        const std::string drawn = svg_of(*draw_chart(sample.data, sample.width, sample.height, measurer));
        if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) {
            std::ofstream(file, std::ios::binary) << drawn;
            continue;
        }
        std::ifstream stream(file, std::ios::binary);
        const std::string expected{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_EQ(difference(expected, drawn), "") << sample.name;
    }
    if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) GTEST_SKIP() << "renewed " << kGolden;
}

}  // namespace
}  // namespace velora::engine
