#include "engine/text/measurer.h"

#include <gtest/gtest.h>

#include "engine/text/fonts_for_tests.h"
#include "engine/text/markup.h"
#include "engine/text/shaper.h"

namespace velora::engine {
namespace {

Style style_of(const char* family, float size)
{
    Style style;
    style.font.family = family;
    style.font.size = size;
    return style;
}

class MeasurerTest : public testing::Test {
protected:
    std::vector<std::string> lines(std::string_view text, const Style& style, float width, float height = 1e6F)
    {
        layout = {};
        measurer.measure({text, runs, &style, width, height}, layout);
        std::vector<std::string> result;
        for (const TextLine& line : layout.lines) result.emplace_back(text.substr(line.begin, line.end - line.begin));
        return result;
    }

    FontsForTests fonts;
    Measurer measurer{fonts.store};
    TextLayout layout;
    std::vector<TextRun> runs;
};

TEST_F(MeasurerTest, SummedAdvancesAreThoseOfShaping)
{
    Shaper shaper(fonts.store);
    for (const char* family : {"SansSerif", "Serif", "Monospaced"}) {
        for (const char* text :
             {"AVATAR Tj. fi ffl", "Müller & Söhne GmbH, Čakovec", "0,1;2'3\"4", "Łódź Žižkov Ærø"}) {
            const Font font = style_of(family, 10).font;
            EXPECT_FLOAT_EQ(measurer.width(text, font), static_cast<float>(shaper.shape(text, font).advance * 10))
                << family << ' ' << text;
        }
    }
}

TEST_F(MeasurerTest, LinesBreakWhereTheWidthEnds)
{
    const Style style = style_of("DejaVu Sans", 10);
    struct Case {
        const char* why;
        const char* text;
        float width;
        std::vector<std::string> expected;
    };
    for (const auto& c : {
             Case{"everything fits", "one two", 100, {"one two"}},
             Case{"blanks at a line's end hang over it",
                  "this is a fairly long text",
                  50,
                  {"this is a", "fairly long", "text"}},
             Case{"a line feed ends a line, an empty one is kept", "a\n\nb", 100, {"a", "", "b"}},
             Case{"a last line feed adds an empty line", "a\r\n", 100, {"a", ""}},
             Case{"a word wider than the line is cut between characters", "WWWWWW", 22, {"WW", "WW", "WW"}},
             Case{"the same by the general way", "ЖЖЖЖ", 22, {"ЖЖ", "ЖЖ"}},
             Case{"the general way keeps words", "αβγ δεζ ηθι", 45, {"αβγ δεζ", "ηθι"}},
             Case{"a character wider than the line stands alone", "WW", 1, {"W", "W"}},
             Case{"tabs go to the next stop", "a\tb\tc", 90, {"a\tb\tc"}},
         }) {
        EXPECT_EQ(lines(c.text, style, c.width), c.expected) << c.why;
    }
}

TEST_F(MeasurerTest, HeightIsThatOfTheFontTimesTheLines)
{
    Style style = style_of("DejaVu Sans", 12);
    lines("a\nb\nc", style, 100);
    EXPECT_FLOAT_EQ(layout.height, 3 * 13.96875F);
    EXPECT_FLOAT_EQ(layout.line_spacing_factor, 1.1640625F);
    EXPECT_NEAR(layout.leading_offset, -2.8300781F, 1e-6);
    style.paragraph.spacing = LineSpacing::Proportional;
    style.paragraph.spacing_size = 2;
    style.paragraph.spacing_before = 3;
    lines("a\nb", style, 100);
    EXPECT_FLOAT_EQ(layout.height, 3 + 13.96875F + (13.96875F + 11.138672F)) << "an ascent more from the second on";
}

TEST_F(MeasurerTest, WhatDoesNotFitGoesOnFromTheEndOfThePartBefore)
{
    const Style style = style_of("DejaVu Sans", 10);
    const std::string_view text = "this is a fairly long text";
    EXPECT_EQ(lines(text, style, 50, 20), (std::vector<std::string>{"this is a"}));
    EXPECT_FALSE(layout.complete);
    EXPECT_EQ(layout.end, 10U);
    measurer.measure({text, {}, &style, 50, 100, layout.end}, layout);
    EXPECT_TRUE(layout.complete);
    EXPECT_EQ(layout.lines.size(), 2U);
    measurer.measure({text, {}, &style, 44, 20, 0, false}, layout);
    EXPECT_EQ(layout.lines.back().end, 9U) << "no further character fits";
    measurer.measure({text, {}, &style, 60, 20, 0, false}, layout);
    EXPECT_GT(layout.lines.back().end, 10U) << "the line is filled up with characters";
}

TEST_F(MeasurerTest, MarkupChangesWidthAndHeight)
{
    const Style style = style_of("DejaVu Sans", 10);
    const std::string plain = plain_text_of("a <b>bold</b> x<sup>2</sup> <style size=\"20\">big</style> &amp; so",
                                            Markup::Styled, style, runs);
    EXPECT_EQ(plain, "a bold x2 big & so");
    ASSERT_EQ(runs.size(), 3U);
    EXPECT_TRUE(runs[0].font->bold);
    EXPECT_EQ(runs[1].script, TextRun::Script::Super);
    lines(plain, style, 1000);
    EXPECT_FLOAT_EQ(layout.height, 2 * 11.640625F);
    EXPECT_EQ(plain_text_of("a < b and <unclosed", Markup::Styled, style, runs), "a < b and <unclosed");
    EXPECT_TRUE(runs.empty());
    EXPECT_EQ(plain_text_of("<p>one</p><p>two<br/>three</p>", Markup::Html, style, runs), "one\ntwo\nthree");
}

TEST_F(MeasurerTest, AMissingFontIsNamedOnceAndReplaced)
{
    const Style style = style_of("No Such Font 77", 10);
    EXPECT_FLOAT_EQ(measurer.line_height(style.font), 11.640625F);
    lines("text", style, 100);
    ASSERT_EQ(fonts.warnings.size(), 1U);
    EXPECT_NE(fonts.warnings[0].find("No Such Font 77"), std::string::npos);
}

TEST_F(MeasurerTest, HostileTextIsLaidOut)
{
    const Style style = style_of("DejaVu Sans", 10);
    const std::string long_word(200000, '\xE9');  // no UTF-8
    const std::string cyrillic = [] {
        std::string text;
        while (text.size() < 200000) text += "ж";
        return text;
    }();
    for (const std::string& text :
         {long_word, cyrillic, std::string("\x01\x02\0\x7F", 4), std::string("שלום abc مرحبا 12"),
          std::string("\U0001F600\u200D\U0001F600"), std::string(5000, '\n')}) {
        lines(text, style, 100);
        EXPECT_TRUE(layout.complete);
        ASSERT_FALSE(layout.lines.empty());
        EXPECT_EQ(layout.end, text.size());
        EXPECT_LE(layout.width, 100.01F);
    }
}

}  // namespace
}  // namespace velora::engine
