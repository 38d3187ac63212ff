#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "engine/text/fonts_for_tests.h"
#include "engine/text/markup.h"
#include "engine/text/measurer.h"
#include "engine/text/shaper.h"

namespace velora::engine {
namespace {

using Lines = std::vector<std::string>;

Style style_of(const char* family, float size)
{
    Style style;
    style.font.family = family;
    style.font.size = size;
    return style;
}

class LayoutTest : public testing::Test {
protected:
    Lines lines(std::string_view text, float width, float height = 1e9F, bool whole_words = true)
    {
        layout = {};
        measurer.measure({text, runs, &style, width, height, 0, whole_words}, layout);
        Lines result;
        for (const TextLine& line : layout.lines) result.emplace_back(text.substr(line.begin, line.end - line.begin));
        return result;
    }

    float width(std::string_view text) { return measurer.width(text, style.font); }

    FontsForTests fonts;
    Measurer measurer{fonts.store};
    Style style = style_of("DejaVu Sans", 10);
    TextLayout layout;
    std::vector<TextRun> runs;
};

TEST_F(LayoutTest, LinesBreakByTheRulesOfTheirScript)
{
    struct Case {
        const char* why;
        std::string text;
        std::string fits;  ///< the line is as wide as this
        Lines expected;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"after a hyphen", "well-known", "well-kn", {"well-", "known"}},
             {"not before it", "well-known", "well", {"well", "-", "kno", "wn"}},
             {"a minus stays with its number", "from -500 on", "from -5", {"from", "-500", "on"}},
             {"not at a hard space", "aa bb\u00A0cc", "aa bb", {"aa", "bb\u00A0cc"}},
             {"a hard space alone is cut only where nothing else helps", "bb\u00A0cc", "bb\u00A0", {"bb\u00A0", "cc"}},
             {"a zero-width space breaks unseen", "aaaa\u200Bbbbb", "aaaaa", {"aaaa\u200B", "bbbb"}},
             {"a word joiner does not", "aa bb\u2060cc", "aa bbb", {"aa", "bb\u2060cc"}},
             {"not after a slash", "no brass/steel", "no brass/stee", {"no", "brass/steel"}},
             {"behind a comma without a blank", "brass,steel", "brass,s", {"brass,", "steel"}},
             {"not inside a number", "item 1,250.00", "item 1,25", {"item", "1,250.00"}},
             {"a percent sign stays", "is 100% off", "is 100", {"is", "100%", "off"}},
             {"not before a closing mark", "yes (no) maybe", "yes (no", {"yes", "(no)", "maybe"}},
             {"ideographs break anywhere", "日本語文字列", "日本語文", {"日本語文", "字列"}},
             {"but not before a full stop", "日本語文。字", "日本語文", {"日本語", "文。字"}},
             {"tabs are places to break", "aaa\tbbb", "aaab", {"aaa", "bbb"}},
             {"a carriage return before a line feed is part of it", "a\r\nb", "aaaa", {"a", "b"}},
             {"leading blanks are kept", "  a b", "  a", {"  a", "b"}},
             {"trailing blanks hang", "a   ", "a", {"a"}},
             {"blanks alone are one line", "    ", "a", {""}},
             {"blanks between words hang too", "aa     bb", "aa", {"aa", "bb"}},
             {"empty lines in a row", "a\n\n\nb", "aaaa", {"a", "", "", "b"}},
             {"a first line feed", "\na", "aaaa", {"", "a"}},
             {"accents stay with their letter", "e\u0301e\u0301e\u0301", "ee", {"e\u0301e\u0301", "e\u0301"}}}) {
        EXPECT_EQ(lines(c.text, width(c.fits) + 0.5F), c.expected) << c.why;
        EXPECT_TRUE(layout.complete) << c.why;
        EXPECT_EQ(layout.end, c.text.size()) << c.why;
    }
}

TEST_F(LayoutTest, EveryByteIsOnALineOrBetweenTwoWhateverTheWidth)
{
    std::mt19937 random(11);
    const std::vector<std::string> pieces = {"a", "Wide", " ",      "  ",     "-",  "\t",         "\n", "é", "ж",
                                             ".", "12",   "\u00A0", "\u05D0", "日", "\U0001F600", ")",  "(", "\u0301"};
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (size_t at = 1 + random() % 30; at > 0; --at) text += pieces[random() % pieces.size()];
        const auto room = static_cast<float>(random() % 120);
        lines(text, room);
        ASSERT_TRUE(layout.complete);
        uint32_t end = 0;
        for (const TextLine& line : layout.lines) {
            ASSERT_GE(line.begin, end) << '"' << text << "\" in " << room;
            ASSERT_GE(line.end, line.begin);
            const auto between = text.substr(end, line.begin - end);
            ASSERT_EQ(between.find_first_not_of(" \t\r\n"), std::string::npos)
                << "lost '" << between << "' of " << text;
            end = line.end;
        }
        ASSERT_EQ(text.substr(end).find_first_not_of(" \t\r\n"), std::string::npos) << text;
    }
}

TEST_F(LayoutTest, ThePlainPathBreaksWhereShapingDoes)
{
    std::mt19937 random(5);
    const std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFTVWY0123456789 ,.-/()  ";
    // a run that changes nothing but the colour sends the same text to the general path
    const auto font = std::make_shared<const Font>(style.font);
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (size_t at = 1 + random() % 60; at > 0; --at) text += letters[random() % letters.size()];
        const float room = 10 + static_cast<float>(random() % 200);
        runs.clear();
        const Lines plain = lines(text, room);
        const TextLayout quick = layout;
        runs.push_back({0, static_cast<uint32_t>(text.size()), font, kWhite, {}, {}, {}});
        ASSERT_EQ(plain, lines(text, room)) << '"' << text << "\" in " << room;
        ASSERT_FLOAT_EQ(quick.height, layout.height);
        ASSERT_NEAR(quick.width, layout.width, 0.01) << '"' << text << "\" in " << room;
    }
}

TEST_F(LayoutTest, AGreaterWidthNeverNeedsMoreLines)
{
    const std::string_view text =
        "Delivery within 14 days, ex works; prices in USD plus value-added tax (19%) and freight.";
    size_t before = text.size();
    for (float room = 5; room < 600; room += 3) {
        const size_t count = lines(text, room).size();
        EXPECT_LE(count, before) << room;
        before = count;
        for (const TextLine& line : layout.lines) EXPECT_LE(line.width, std::max(room, 10.0F) + 0.01F);
    }
    EXPECT_EQ(before, 1U);
}

TEST_F(LayoutTest, PartsOfACutTextJoinToTheWhole)
{
    const std::string text = "one two three four five six seven eight nine ten\n\neleven twelve";
    const Lines whole = lines(text, 60);
    Lines parts;
    uint32_t begin = 0;
    int rounds = 0;
    do {
        measurer.measure({text, {}, &style, 60, 24, begin}, layout);
        ASSERT_FALSE(layout.lines.empty()) << "two lines fit into 24 points";
        for (const TextLine& line : layout.lines) parts.push_back(text.substr(line.begin, line.end - line.begin));
        ASSERT_TRUE(layout.complete || layout.end > begin) << "each part makes progress";
        begin = layout.end;
    } while (!layout.complete && ++rounds < 50);
    EXPECT_EQ(parts, whole);
    lines(text, 60, 5);
    EXPECT_TRUE(layout.lines.empty()) << "no line fits";
    EXPECT_FALSE(layout.complete);
    EXPECT_EQ(layout.end, 0U);
}

TEST_F(LayoutTest, OnlyTheLastLineOfAParagraphIsNotStretched)
{
    lines("one two three four five\nsix seven", 50);
    std::vector<bool> ends;
    for (const TextLine& line : layout.lines) ends.push_back(line.ends_paragraph);
    ASSERT_GE(ends.size(), 3U);
    EXPECT_FALSE(ends.front()) << "a full line is stretched";
    EXPECT_TRUE(ends.back()) << "the text's last is not";
    EXPECT_EQ(std::count(ends.begin(), ends.end(), true), 2) << "nor is the one before the line feed";
}

TEST_F(LayoutTest, IndentsAndSpacingTakeTheirRoom)
{
    style.paragraph.first_line_indent = 20;
    style.paragraph.left_indent = 5;
    style.paragraph.right_indent = 5;
    lines("aaa bbb ccc ddd eee fff\nggg hhh", 60);
    ASSERT_GE(layout.lines.size(), 3U);
    EXPECT_FLOAT_EQ(layout.lines[0].indent, 25);
    EXPECT_FLOAT_EQ(layout.lines[1].indent, 5);
    const auto second = std::ranges::find(layout.lines, 24U, &TextLine::begin);
    ASSERT_NE(second, layout.lines.end());
    EXPECT_FLOAT_EQ(second->indent, 25) << "each paragraph has a first line";
    for (const TextLine& line : layout.lines) EXPECT_LE(line.indent + line.width, 55.01F);
    style.paragraph.first_line_indent = -50;
    lines("aaa bbb", 60);
    EXPECT_TRUE(layout.complete) << "a hanging indent beyond the edge is survived";
    style.paragraph.left_indent = 500;
    EXPECT_TRUE(lines("aaa bbb", 60).size() > 1) << "no room at all leaves a character a line";
}

TEST_F(LayoutTest, LineSpacingsOfEveryKind)
{
    struct Case {
        LineSpacing spacing;
        float size;
        float per_line;  ///< of the second and later ones
    };
    const float ascent = 9.2822266F, descent = 2.3583984F;  // of the test's font at 10 points
    for (const auto& c :
         {Case{LineSpacing::Single, 1, ascent + descent}, Case{LineSpacing::OneAndHalf, 1, ascent * 1.5F + descent},
          Case{LineSpacing::Double, 1, ascent * 2 + descent}, Case{LineSpacing::Fixed, 30, 30 + descent},
          Case{LineSpacing::Fixed, 4, 4 + descent}, Case{LineSpacing::AtLeast, 5, ascent + descent},
          Case{LineSpacing::AtLeast, 40, 40 + descent}, Case{LineSpacing::Proportional, 3, ascent * 3 + descent}}) {
        style.paragraph.spacing = c.spacing;
        style.paragraph.spacing_size = c.size;
        lines("a", 100);
        EXPECT_NEAR(layout.height, ascent + descent, 0.001F) << "the first line knows no spacing";
        lines("a\nb\nc", 100);
        EXPECT_NEAR(layout.height, ascent + descent + 2 * c.per_line, 0.001F) << static_cast<int>(c.spacing);
        EXPECT_NEAR(layout.lines[1].ascent, c.per_line - descent, 0.001F) << static_cast<int>(c.spacing);
    }
}

struct MarkupCase {
    const char* why;
    const char* marked;
    const char* plain;
    size_t runs;
};

TEST_F(LayoutTest, StyledMarkupIsTakenApartOrLeftAsItIs)
{
    for (const auto& c : std::initializer_list<MarkupCase>{
             {"nested tags", "<b>a<i>b</i></b>c", "abc", 2},
             {"tags that cross are no markup", "<b>a<i>b</b></i>", "<b>a<i>b</b></i>", 0},
             {"a tag that is not closed", "<b>a", "<b>a", 0},
             {"one that was never opened", "a</b>", "a</b>", 0},
             {"a tag of nobody", "<glow>a</glow>", "<glow>a</glow>", 0},
             {"a comparison", "1 < 2", "1 < 2", 0},
             {"entities", "&lt;b&gt; &amp;amp; &#65;&#x42; &euro;", "<b> &amp; AB €", 0},
             {"an entity of nobody", "&foo; & &; &#0; &#x110000; &#xD800;", "&foo; & &; &#0; &#x110000; &#xD800;", 0},
             {"an ampersand at the end", "a&", "a&", 0},
             {"attributes in both quotes", "<style size='20' forecolor=\"#FF0000\">a</style>", "a", 1},
             {"a bracket in an attribute", "<a href=\"x>y\">a</a>", "a", 1},
             {"an attribute without quotes", "<style size=20>a</style>", "<style size=20>a</style>", 0},
             {"an attribute that says nothing new", "<style size='10'>a</style>", "a", 0},
             {"an empty tag", "a<b/>c", "ac", 0},
             {"an empty run", "a<b></b>c", "ac", 0},
             {"a line break", "a<br/>b", "a\nb", 0},
             {"capitals", "<B>a</B>", "a", 1},
             {"blanks in a tag", "<b >a</b >", "a", 1}}) {
        EXPECT_EQ(plain_text_of(c.marked, Markup::Styled, style, runs), c.plain) << c.why;
        EXPECT_EQ(runs.size(), c.runs) << c.why;
    }
}

TEST_F(LayoutTest, HtmlMarkupForgivesWhatPeopleWrite)
{
    for (const auto& c : std::initializer_list<MarkupCase>{
             {"a tag that is not closed", "<b>a", "a", 1},
             {"one that was never opened", "a</b>b", "ab", 0},
             {"tags of nobody are left out", "<table><td>a</td></table>", "a", 0},
             {"blanks join", "a \n\t b", "a b", 0},
             {"a list", "<ul><li>a</li><li>b</li></ul>", "\u2022 a\n\u2022 b", 0},
             {"paragraphs part once", "<p>a</p>\n<p>b</p>", "a\nb", 0},
             {"what stands behind a heading", "<h1>a</h1> b", "a\nb", 0},
             {"a line break at the end stays", "a<br>", "a\n", 0},
             {"styles by sheet", "<span style='font-weight:bold; color: #f00'>a</span>", "a", 1},
             {"a link", "<a href='http://x?a=1&amp;b=2'>a</a>", "a", 1}}) {
        EXPECT_EQ(plain_text_of(c.marked, Markup::Html, style, runs), c.plain) << c.why;
        EXPECT_EQ(runs.size(), c.runs) << c.why;
    }
    for (const auto& [step, size] :
         {std::pair{"1", 8.0F}, {"4", 14.0F}, {"7", 36.0F}, {"9", 36.0F}, {"+1", 18.0F}, {"-1", 12.0F}, {"-9", 8.0F}}) {
        plain_text_of("<font size='" + std::string(step) + "'>a</font>", Markup::Html, style, runs);
        EXPECT_EQ(runs.at(0).font->size, size) << step;
    }
    plain_text_of("<font size='12pt'>a</font>", Markup::Html, style, runs);
    EXPECT_TRUE(runs.empty()) << "no step";
    plain_text_of("<a href='http://x?a=1&amp;b=2'>a</a>", Markup::Html, style, runs);
    EXPECT_EQ(runs.at(0).link, "http://x?a=1&b=2");
}

TEST_F(LayoutTest, AttributesOutOfRangeLeaveTheLookAsItIs)
{
    for (const char* size : {"0", "-5", "1e9", "nan", "big", ""}) {
        plain_text_of(std::string("<style size='") + size + "' italic='true'>a</style>", Markup::Styled, style, runs);
        ASSERT_EQ(runs.size(), 1U) << size;
        EXPECT_EQ(runs[0].font->size, 10) << size;
    }
    plain_text_of("<style forecolor='nocolor' bold='true'>a</style>", Markup::Styled, style, runs);
    EXPECT_EQ(runs.at(0).fore, style.fore);
}

TEST_F(LayoutTest, FontsThatAreMissingAreNamedAndReplacedGlyphByGlyph)
{
    style = style_of("Nowhere Sans", 10);
    EXPECT_EQ(lines("plain", 100), Lines{"plain"});
    EXPECT_EQ(fonts.warnings.size(), 1U);
    runs.clear();
    plain_text_of("a <style fontName='Also Nowhere'>b</style>", Markup::Styled, style, runs);
    lines("a b", 100);
    EXPECT_EQ(fonts.warnings.size(), 2U) << "a font that only markup names";
    lines("a b", 100);
    EXPECT_EQ(fonts.warnings.size(), 2U) << "each is named once";
}

TEST_F(LayoutTest, TextsOfAMegabyteTakeTimeInStepWithTheirLength)
{
    const auto times = [](std::string_view part, size_t bytes) {
        std::string out;
        while (out.size() < bytes) out += part;
        return out;
    };
    constexpr size_t kBytes = 1U << 20;
    for (const auto& [why, part] : std::initializer_list<std::pair<const char*, std::string_view>>{
             {"words", "word "},
             {"one word", "w"},
             {"one word of another script", "ж"},
             {"blanks", " "},
             {"ideographs", "日"},
             {"accents without a letter", "\u0301"},
             {"emoji in families", "\U0001F468\u200D\U0001F469\u200D"},
             {"right to left", "שלום "},
             {"both ways", "a ש"},
             {"bytes that are no text", "\xFF"},
             {"control characters", "\x01\x02\x1B"},
             {"tabs", "a\t"},
             {"line feeds", "\n"}}) {
        const std::string text = times(part, kBytes);
        lines(text, 200);
        EXPECT_TRUE(layout.complete) << why;
        EXPECT_EQ(layout.end, text.size()) << why;
        EXPECT_LE(layout.lines.size(), text.size() + 1) << why;
        lines(text, 200, 100);
        EXPECT_LE(layout.lines.size(), 9U) << why << ": a box of nine lines takes no more";
    }
    const std::string nested = times("<b>", kBytes / 2) + "x" + times("</b>", kBytes * 2 / 3);
    plain_text_of(nested, Markup::Html, style, runs);
    EXPECT_LE(runs.size(), 2U);
    plain_text_of(times("<", kBytes), Markup::Styled, style, runs);
    plain_text_of(times("<b x='", kBytes), Markup::Html, style, runs);
    plain_text_of(times("&amp", kBytes), Markup::Html, style, runs);
}

TEST_F(LayoutTest, SizesThatNoFontHas)
{
    for (const float size : {0.0F, 1e-6F, 1e6F, -5.0F}) {
        style.font.size = size;
        lines("some text", 100);
        EXPECT_TRUE(layout.complete) << size;
        EXPECT_TRUE(std::isfinite(layout.height) && std::isfinite(layout.width)) << size;
    }
    style.font.size = 10;
    for (const float room : {0.0F, -10.0F, 1e30F}) {
        lines("some text", room);
        EXPECT_TRUE(layout.complete) << room;
    }
}

}  // namespace
}  // namespace velora::engine
