#include "engine/export/paint/paint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/export/sample_pages.h"
#include "engine/page/color_text.h"

namespace velora::engine {
namespace {

/// Writes down what is painted, in the page's coordinates.
class RecordingCanvas : public Canvas {
public:
    struct Shown {
        std::string text;
        double x, y;  ///< where it begins
        double end_x, end_y;
    };
    std::vector<Shown> texts;
    std::vector<Area> fills, pictures, clips, links;
    std::vector<Stroke> strokes;
    std::vector<Path> paths;

    void save() override { saved_.push_back(matrix_); }
    void restore() override
    {
        matrix_ = saved_.back();
        saved_.pop_back();
    }
    void transform(const Matrix& matrix) override { matrix_ = matrix_ * matrix; }
    void clip(const Area& area) override { clips.push_back(area); }
    void fill(const Path& path, Color) override { paths.push_back(path); }
    void fill(const Area& area, Color) override { fills.push_back(area); }
    void stroke(const Path& path, const Stroke& stroke) override
    {
        paths.push_back(path);
        strokes.push_back(stroke);
    }
    void glyphs(const GlyphRun& run) override
    {
        double width = 0;
        std::string text;
        for (const CanvasGlyph& glyph : run.glyphs) {
            width += glyph.advance;
            text += run.text.substr(glyph.cluster, glyph.cluster_size);
        }
        const auto [x, y] = matrix_.apply(run.x, run.y);
        const auto [end_x, end_y] = matrix_.apply(run.x + width, run.y);
        texts.push_back({text, x, y, end_x, end_y});
    }
    std::optional<std::pair<int, int>> image_size(const std::shared_ptr<const ImageData>&) override
    {
        return std::pair{200, 100};
    }
    void image(const std::shared_ptr<const ImageData>&, const Area& area) override { pictures.push_back(area); }
    void link(const Area& area, const Link&) override { links.push_back(area); }

private:
    Matrix matrix_;
    std::vector<Matrix> saved_;
};

class PaintTest : public testing::Test {
protected:
    void paint()
    {
        canvas = {};
        Painter(sample.fonts).paint(sample.page, canvas);
        sample.page = {};
    }

    SamplePages sample;
    RecordingCanvas canvas;
};

TEST_F(PaintTest, TextsStandByAlignmentPaddingAndRotation)
{
    struct Case {
        const char* why;
        HorizontalAlign horizontal;
        VerticalAlign vertical;
        Rotation rotation;
        double x, y, end_x, end_y;
    };
    const double w = sample.measurer.width("text", sample.style().font), line = 11.640625, ascent = 9.282227;
    const auto left = HorizontalAlign::Left, right = HorizontalAlign::Right, center = HorizontalAlign::Center;
    const auto top = VerticalAlign::Top, middle = VerticalAlign::Middle, bottom = VerticalAlign::Bottom;
    for (const auto& c : {
             Case{"upper left inside the padding", left, top, Rotation::None, 104, 102 + ascent, 104 + w, 102 + ascent},
             Case{"right", right, top, Rotation::None, 160 - w, 102 + ascent, 160, 102 + ascent},
             Case{"middle", center, middle, Rotation::None, 132 - w / 2, 121 - line / 2 + ascent, 132 + w / 2,
                  121 - line / 2 + ascent},
             Case{"bottom", left, bottom, Rotation::None, 104, 140 - line + ascent, 104 + w, 140 - line + ascent},
             Case{"turned left it reads upwards", left, top, Rotation::Left, 104 + ascent, 140, 104 + ascent, 140 - w},
             Case{"turned right it reads downwards", left, top, Rotation::Right, 160 - ascent, 102, 160 - ascent,
                  102 + w},
             Case{"upside down", left, top, Rotation::UpsideDown, 160, 140 - ascent, 160 - w, 140 - ascent},
         }) {
        Style style = sample.style();
        style.horizontal = c.horizontal;
        style.vertical = c.vertical;
        style.rotation = c.rotation;
        style.box.left_padding = 4;
        style.box.top_padding = 2;
        sample.add_text({100, 100, 60, 40}, "text", style).detail.reset();
        paint();
        ASSERT_EQ(canvas.texts.size(), 1U);
        const auto& text = canvas.texts[0];
        EXPECT_NEAR(text.x, c.x, 0.01) << c.why;
        EXPECT_NEAR(text.y, c.y, 0.01) << c.why;
        EXPECT_NEAR(text.end_x, c.end_x, 0.01) << c.why;
        EXPECT_NEAR(text.end_y, c.end_y, 0.01) << c.why;
    }
}

TEST_F(PaintTest, BlanksAtTheEndOfALineDoNotMoveItFromItsEdge)
{
    for (const auto align : {HorizontalAlign::Right, HorizontalAlign::Center}) {
        for (const bool of_one_line : {true, false}) {
            Style style = sample.style();
            style.horizontal = align;
            const auto left_edges = [&](const std::string& blanks) {
                const std::string text = of_one_line ? "text" + blanks : "longer text in lines" + blanks;
                Text& added = sample.add_text({0, 0, 60, 40}, text, style);
                if (of_one_line) added.detail.reset();
                paint();
                std::vector<double> edges;
                for (const auto& shown : canvas.texts) edges.push_back(shown.x);
                return edges;
            };
            EXPECT_EQ(left_edges("  "), left_edges("")) << of_one_line;
        }
    }
}

TEST_F(PaintTest, JustifiedLinesReachTheEdgeExceptTheLast)
{
    Style style = sample.style();
    style.horizontal = HorizontalAlign::Justified;
    sample.add_text({0, 0, 120, 60}, "several words that take more than two lines of this box", style);
    paint();
    ASSERT_EQ(canvas.texts.size(), 3U);
    EXPECT_NEAR(canvas.texts[0].end_x, 120, 0.01);
    EXPECT_NEAR(canvas.texts[1].end_x, 120, 0.01);
    EXPECT_LT(canvas.texts[2].end_x, 110);
}

TEST_F(PaintTest, RightToLeftTextStandsInVisualOrder)
{
    sample.add_text({0, 0, 300, 20}, "abc שלום def", sample.style());
    paint();
    std::string shown;
    for (const auto& text : canvas.texts) shown += text.text;
    EXPECT_EQ(shown, "abc םולש def");
}

TEST_F(PaintTest, PicturesGoWhereTheirScaleModeSays)
{
    struct Case {
        ScaleImage scale;
        HorizontalAlign align;
        Area expected;
        bool clipped;
    };
    const auto data = std::make_shared<ImageData>();
    // A picture of 200 by 100 in boxes of 100 by 100.
    for (const auto& c : {Case{ScaleImage::FillFrame, HorizontalAlign::Left, {10, 10, 100, 100}, false},
                          Case{ScaleImage::RetainShape, HorizontalAlign::Left, {10, 10, 100, 50}, false},
                          Case{ScaleImage::Clip, HorizontalAlign::Center, {-40, 10, 200, 100}, true}}) {
        Style style = sample.style();
        style.scale = c.scale;
        style.horizontal = c.align;
        sample.add({10, 10, 100, 100}, style, Image{data, {}, {}});
        paint();
        ASSERT_EQ(canvas.pictures.size(), 1U);
        const Area& area = canvas.pictures[0];
        EXPECT_THAT((std::array{area.x, area.y, area.width, area.height}),
                    testing::ElementsAre(c.expected.x, c.expected.y, c.expected.width, c.expected.height));
        EXPECT_EQ(canvas.clips.size(), c.clipped ? 1U : 0U);
    }
}

TEST_F(PaintTest, PensOfWidthZeroDrawNothingAndDoubleOnesTwice)
{
    Style style = sample.style();
    style.pen.width = 0;
    sample.add({0, 0, 50, 1}, style, Line{});
    sample.add({0, 0, 50, 50}, style, Rectangle{});
    paint();
    EXPECT_TRUE(canvas.strokes.empty());
    style.pen = {3, LineStyle::Double, kBlack};
    sample.add({0, 10, 50, 1}, style, Line{});
    paint();
    ASSERT_EQ(canvas.strokes.size(), 2U);
    EXPECT_DOUBLE_EQ(canvas.strokes[0].width, 1);
    EXPECT_DOUBLE_EQ(std::abs(canvas.paths[0].steps[0].at[1] - canvas.paths[1].steps[0].at[1]), 2);
}

TEST_F(PaintTest, ChildrenOfFramesStandRelativeToThem)
{
    Style style = sample.style();
    style.opaque = true;
    Frame inner, outer;
    inner.children.push_back({{1, 2, 10, 10}, sample.document.styles->intern(style), 0, false, Text{}});
    outer.children.push_back({{10, 20, 50, 50}, sample.document.styles->intern(style), 0, false, std::move(inner)});
    sample.add({100, 200, 80, 80}, style, std::move(outer));
    paint();
    ASSERT_EQ(canvas.fills.size(), 3U);
    EXPECT_EQ(canvas.fills[2].x, 111);
    EXPECT_EQ(canvas.fills[2].y, 222);
}

TEST(ColorText, ReadsWhatDefinitionsWrite)
{
    struct Case {
        const char* text;
        std::optional<Color> expected;
    };
    for (const auto& c : {Case{"#FF8000", Color{255, 128, 0, 255}}, Case{" #40ff8000", Color{255, 128, 0, 64}},
                          Case{"#1aF", Color{0x11, 0xAA, 0xFF, 255}}, Case{"rgba(1, 2, 3, 0.5)", Color{1, 2, 3, 128}},
                          Case{"rgb(300,-5,0)", Color{255, 0, 0, 255}}, Case{"Red", Color{255, 0, 0, 255}},
                          Case{"#12345", std::nullopt}, Case{"", std::nullopt}, Case{"rgb(1,2)", std::nullopt},
                          Case{"#GG0000", std::nullopt}}) {
        EXPECT_EQ(color_from_text(c.text), c.expected) << c.text;
    }
    for (const Color color : {Color{1, 2, 3, 255}, Color{250, 0, 9, 128}}) {
        EXPECT_EQ(color_from_text(color_text(color)), color);
    }
}

}  // namespace
}  // namespace velora::engine
