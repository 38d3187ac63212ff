#include <cmath>
#include <numbers>
#include <numeric>

#include "engine/export/export_run.h"
#include "engine/export/made_png.h"
#include "engine/export/paint/bitmap.h"
#include "engine/export/paint/page_picture.h"
#include "engine/export/sample_pages.h"
#include "support/tool_run.h"

namespace velora::engine {
namespace {

/// Something that is painted, each on a page of its own.
struct Look {
    const char* why;
    void (*draw)(SamplePages&);
};

constexpr Place kBox{20, 20, 100, 60};
constexpr Color kRed{200, 0, 0, 255}, kHalfBlue{0, 0, 200, 128}, kYellow{250, 230, 120, 255};

Style penned(SamplePages& sample, LineStyle line, float width = 3)
{
    Style style = sample.style();
    style.pen = {width, line, kRed};
    return style;
}

template <class Content>
void with_every_line_style(SamplePages& sample, Place place, bool bottom_up = false)
{
    for (const auto line : {LineStyle::Solid, LineStyle::Dashed, LineStyle::Dotted, LineStyle::Double}) {
        Style style = penned(sample, line);
        style.line_bottom_up = bottom_up;
        sample.add(place, style, Content{});
        place.x += place.width + 10;
    }
}

Style boxed(SamplePages& sample)
{
    Style style = sample.style();
    style.box.top = {4, LineStyle::Solid, kRed};
    style.box.left = {1, LineStyle::Dashed, kBlack};
    style.box.bottom = {3, LineStyle::Double, kHalfBlue};
    style.box.left_padding = style.box.top_padding = 6;
    return style;
}

void with_every_turn(SamplePages& sample, HorizontalAlign horizontal, VerticalAlign vertical)
{
    Place place{20, 20, 90, 90};
    for (const auto rotation : {Rotation::None, Rotation::Left, Rotation::Right, Rotation::UpsideDown}) {
        Style style = boxed(sample);
        style.rotation = rotation;
        style.horizontal = horizontal;
        style.vertical = vertical;
        sample.add_text(place, "Turned words that break into lines", style);
        place.x += 100;
    }
}

std::shared_ptr<const ImageData> shaded()
{
    std::string points;
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 40; ++x) {
            points += {static_cast<char>(x * 6), static_cast<char>(y * 12), '\x40', static_cast<char>(255 - x * 6)};
        }
    }
    return std::make_shared<ImageData>(ImageData{made_png_picture(PngColors::Rgba, 40, 20, points), "shaded.png"});
}

void with_every_scale(SamplePages& sample)
{
    Place place{20, 20, 70, 15};
    for (const auto scale : {ScaleImage::Clip, ScaleImage::FillFrame, ScaleImage::RetainShape, ScaleImage::RealHeight,
                             ScaleImage::RealSize}) {
        Style style = sample.style();
        style.opaque = true;
        style.back = kYellow;
        style.scale = scale;
        style.horizontal = HorizontalAlign::Center;
        style.vertical = VerticalAlign::Bottom;
        sample.add(place, style, Image{shaded(), {}, {}});
        place.x += 80;
    }
}

void with_frames(SamplePages& sample)
{
    Style ground = boxed(sample);
    ground.opaque = true;
    ground.back = kHalfBlue;
    Frame inner, outer;
    const Style* plain = sample.document.styles->intern(penned(sample, LineStyle::Solid));
    inner.children.push_back({{5, 5, 30, 20}, plain, 0, false, Ellipse{}});
    outer.children.push_back({{40, 10, 60, 50}, sample.document.styles->intern(ground), 0, false, std::move(inner)});
    outer.children.push_back({{150, 10, 60, 50}, plain, 0, false, Rectangle{}});  // reaches over the frame's edge
    sample.add({30, 30, 160, 100}, ground, std::move(outer));
}

void with_a_drawing(SamplePages& sample)
{
    constexpr auto kTurn = static_cast<float>(2 * std::numbers::pi);
    Drawing drawing{200, 120, {}};
    drawing.items.emplace_back(
        Shape{{Point{60, 60}, Shape::Arc{{60, 60}, 50, 0, 2}}, true, true, kRed, {1, LineStyle::Solid, kBlack}});
    drawing.items.emplace_back(
        Shape{{Point{60, 60}, Shape::Arc{{60, 60}, 50, 2, 5.5F}}, true, true, kHalfBlue, {0, {}, {}}});
    drawing.items.emplace_back(
        Shape{{Shape::Arc{{150, 50}, 30, 0, kTurn}}, true, false, {}, {2, LineStyle::Dashed, kRed}});
    for (const float angle : {0.0F, 0.6F, -1.5F}) {
        drawing.items.emplace_back(
            Label{{150, 60}, "Łódź 67 %", sample.style().font, kBlack, HorizontalAlign::Center, angle});
    }
    sample.add({100, 40, 200, 120}, boxed(sample), Graphic{std::make_shared<const Drawing>(drawing)});
}

// clang-format off
constexpr Look kLooks[] = {
    {"level lines",        [](SamplePages& s) { with_every_line_style<Line>(s, {20, 40, 100, 1}); }},
    {"upright lines",      [](SamplePages& s) { with_every_line_style<Line>(s, {20, 40, 1, 90}); }},
    {"lines down",         [](SamplePages& s) { with_every_line_style<Line>(s, {20, 40, 90, 50}); }},
    {"lines up",           [](SamplePages& s) { with_every_line_style<Line>(s, {20, 40, 90, 50}, true); }},
    {"rectangles",         [](SamplePages& s) { with_every_line_style<Rectangle>(s, kBox); }},
    {"ellipses",           [](SamplePages& s) { with_every_line_style<Ellipse>(s, kBox); }},
    {"a round rectangle with a ground", [](SamplePages& s) {
        Style style = penned(s, LineStyle::Solid);
        style.radius = 15;
        style.opaque = true;
        style.back = kHalfBlue;
        s.add(kBox, style, Rectangle{}); }},
    {"turned texts, left and top",     [](SamplePages& s) { with_every_turn(s, HorizontalAlign::Left, VerticalAlign::Top); }},
    {"turned texts, right and bottom", [](SamplePages& s) { with_every_turn(s, HorizontalAlign::Right, VerticalAlign::Bottom); }},
    {"turned texts, in the middle",    [](SamplePages& s) { with_every_turn(s, HorizontalAlign::Center, VerticalAlign::Middle); }},
    {"turned texts, justified",        [](SamplePages& s) { with_every_turn(s, HorizontalAlign::Justified, VerticalAlign::Top); }},
    {"a text that is cut", [](SamplePages& s) {
        s.add_text({20, 20, 80, 20}, "many words that need much more room than there is", s.style()); }},
    {"indents and spacing", [](SamplePages& s) {
        Style style = s.style();
        style.paragraph.spacing = LineSpacing::Proportional;
        style.paragraph.spacing_size = 1.6F;
        style.paragraph.first_line_indent = 20;
        style.paragraph.left_indent = style.paragraph.right_indent = 8;
        style.paragraph.spacing_before = 5;
        s.add_text({20, 20, 150, 120}, "first paragraph with words\nsecond one with more of them\tand a tab", style); }},
    {"marked text", [](SamplePages& s) {
        s.add_text({20, 20, 300, 40}, "a <b>bold</b> <i>slanted</i> H<sub>2</sub>O m<sup>2</sup> "
            "<style forecolor=\"#C00000\" backcolor=\"#FFFF00\" size=\"16\">big</style> end", s.style(), Markup::Styled); }},
    {"underlined and struck", [](SamplePages& s) {
        Style style = s.style();
        style.font.underline = style.font.strike_through = true;
        style.font.size = 18;
        s.add_text({20, 20, 200, 30}, "underlined", style); }},
    {"marks over letters, both directions, a letter of another face", [](SamplePages& s) {
        Style style = s.style();
        style.font.size = 20;
        style.font.family = "DejaVu Sans Mono";
        s.add_text({20, 20, 400, 30}, "e\u0301 q\u0308 שלום عربي ⠓ abc", style); }},
    {"pictures in every scale", with_every_scale},
    {"frames in frames",        with_frames},
    {"a drawing",               with_a_drawing},
};
// clang-format on

constexpr int kResolution = 216;
constexpr int kSquare = 6;  ///< pixels: two points, wider than the snapping of glyphs to pixels

/// How much is painted in each square of the picture, colour by colour; a whole pixel is 1.
std::vector<double> painted(const Bitmap& bitmap)
{
    const int across = bitmap.width / kSquare + 1;
    std::vector<double> squares(static_cast<size_t>(across * (bitmap.height / kSquare + 1)) * 3);
    size_t part = 0;
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x) {
            const auto square = static_cast<size_t>(y / kSquare * across + x / kSquare) * 3;
            for (size_t color = 0; color < 3; ++color) {
                squares[square + color] += (255 - bitmap.colors[part++]) / (3 * 255.0);
            }
        }
    }
    return squares;
}

double ink(const std::vector<double>& squares)
{
    return std::accumulate(squares.begin(), squares.end(), 0.0);
}

double difference(const std::vector<double>& a, const std::vector<double>& b)
{
    double sum = 0;
    for (size_t at = 0; at < a.size(); ++at) sum += std::abs(a[at] - b[at]);
    return sum;
}

TEST(Looks, APdfReaderPaintsEveryPageAsTheWindowShowsIt)
{
    SamplePages sample;
    sample.document.page_width = 460;
    sample.document.page_height = 180;
    const auto file = SamplePages::scratch() / "looks.pdf";
    const auto sink = make_exporter("pdf", file, {sample.fonts, {}});
    sink->begin(sample.document);
    std::vector<std::string> shown;
    for (const Look& look : kLooks) {
        look.draw(sample);
        shown.push_back(page_picture(sample.document, sample.page, kResolution, sample.fonts));
        sink->page(std::move(sample.page));
        sample.page = {};
    }
    sink->end();
    const auto stem = (SamplePages::scratch() / "look").string();
    const ToolRun made = run_tool("pdftoppm -png -r " + std::to_string(kResolution) + " " + file.string() + " " + stem);
    if (made.status == 127) GTEST_SKIP() << made.output;
    ASSERT_EQ(made.output, "") << "the reader has something to say";
    for (size_t at = 0; at < shown.size(); ++at) {
        const char* why = kLooks[at].why;
        const auto number = (at + 1 < 10 ? "-0" : "-") + std::to_string(at + 1);
        const auto window = read_bitmap(shown[at]), paper = read_bitmap(bytes_of(stem + number + ".png"));
        ASSERT_TRUE(window && paper) << why;
        ASSERT_EQ(window->colors.size(), paper->colors.size()) << why;
        const auto left = painted(*window), right = painted(*paper);
        EXPECT_GT(ink(left), 100) << why << ": something is painted";
        // Both smooth edges in their own way; what is missing, moved, turned or of another colour is far more.
        EXPECT_LT(difference(left, right) / ink(left), 0.3) << why;
        EXPECT_NEAR(ink(right) / ink(left), 1, 0.05) << why;
    }
}

TEST(Looks, PngPicturesOfEveryKindAreReadAsTheyLook)
{
    struct Case {
        const char* why;
        std::string bytes;
        std::vector<uint8_t> colors, alphas;
    };
    using namespace std::string_literals;
    for (const auto& c : {
             Case{"grey", made_png_picture(PngColors::Grey, 2, 1, "\x00\x80"s), {0, 0, 0, 128, 128, 128}, {}},
             Case{"colour",
                  made_png_picture(PngColors::Rgb, 1, 2, "\x01\x02\x03\xFF\xFE\xFD"s),
                  {1, 2, 3, 255, 254, 253},
                  {}},
             Case{"colour and alpha",
                  made_png_picture(PngColors::Rgba, 2, 1, "\xFF\x00\x00\xFF\x00\xFF\x00\x00"s),
                  {255, 0, 0, 0, 0, 0},
                  {255, 0}},
             Case{"grey and alpha", made_png_picture(PngColors::GreyAlpha, 1, 1, "\xFF\x80"s), {255, 255, 255}, {128}},
             Case{"a palette with a clear colour",
                  made_png_picture(PngColors::Palette, 2, 1, "\x01\x00"s, "\x0A\x14\x1E\xFF\x64\x64\x64\x00"s),
                  {0, 0, 0, 10, 20, 30},
                  {0, 255}},
             Case{"sixteen bits a part",
                  made_png_picture(PngColors::Rgb, 1, 1, "\x80\x00\x40\x00\xFF\xFF"s, {}, 16),
                  {128, 64, 255},
                  {}},
         }) {
        const auto bitmap = read_bitmap(c.bytes);
        ASSERT_TRUE(bitmap) << c.why;
        EXPECT_EQ(bitmap->colors, c.colors) << c.why;
        EXPECT_EQ(bitmap->alphas, c.alphas) << c.why;
    }
    for (const uint32_t size : {100'000U, 0x8000'0000U, 0xFFFF'FFFFU}) {
        const std::string huge = made_png_picture(PngColors::Grey, size, size, "");
        EXPECT_FALSE(read_bitmap(huge)) << "a size that is only claimed takes no memory";
    }
}

}  // namespace
}  // namespace velora::engine
