#include "engine/export/export_run.h"
#include "engine/export/rtf/rtf_tables.h"
#include "engine/export/sample_quote.h"

namespace velora::engine {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string exported(PageList pages, const std::string& name)
{
    return bytes_of(run_export(std::move(pages), name));
}

/// Walks over the groups as a reader does. Gives the deepest level, or -1 when they do not close.
int deepest_group(std::string_view rtf)
{
    int depth = 0, deepest = 0;
    for (size_t i = 0; i < rtf.size(); ++i) {
        if (rtf[i] == '\\') {
            ++i;
        } else if (rtf[i] == '{') {
            deepest = std::max(deepest, ++depth);
        } else if (rtf[i] == '}' && (--depth < 0 || (depth == 0 && i + 3 < rtf.size()))) {
            return -1;
        }
    }
    return depth == 0 ? deepest : -1;
}

size_t count(std::string_view text, std::string_view part)
{
    size_t found = 0;
    for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++found;
    return found;
}

TEST(Rtf, GroupsCloseAndEveryPageButTheFirstStartsOne)
{
    const std::string rtf = exported(sample_quote(3), "three.rtf");
    EXPECT_GT(deepest_group(rtf), 3);
    EXPECT_EQ(count(rtf, "\\pagebb"), 2U);
    EXPECT_TRUE(std::ranges::all_of(rtf, [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
    EXPECT_THAT(rtf, HasSubstr("\\paperw11900\\paperh16840"));
    EXPECT_THAT(rtf, HasSubstr("HYPERLINK \"https://www.example.com/?a=1&b=2\""));
    EXPECT_EQ(count(rtf, "\\pngblip"), 6U);
}

TEST(Rtf, TextIsWrittenByNumberAndNothingOfItIsAControlWord)
{
    struct Case {
        const char *why, *text, *expected;
    };
    for (const auto& c :
         {Case{"signs of the format", "a\\par {b}", "a\\\\par \\{b\\}"}, Case{"letters beyond ASCII", "ł", "\\u322?"},
          Case{"numbers above 32767 are negative", "\xEF\xBC\xA1", "\\u-223?"},
          Case{"two halves beyond the basic plane", "\xF0\x9F\x98\x80", "\\u-10179?\\u-8704?"},
          Case{"broken UTF-8", "\xC3", "\\u-3?"}, Case{"control characters", "a\x01\x02z", "az"},
          Case{"line feeds", "a\nb", "a\\line b"}}) {
        std::string out;
        rtf_append(out, c.text);
        EXPECT_EQ(out, c.expected) << c.why;
    }
}

TEST(Rtf, AFontNameWithSignsOfTheFormatBreaksNothing)
{
    PageList pages;
    Style style;
    style.font.family = "}{\\bin99999 ;";
    Page page;
    page.elements.push_back(text_element({10, 10, 100, 12}, pages.document.styles->intern(style), "text"));
    pages.pages.push_back(std::move(page));
    EXPECT_GT(deepest_group(exported(std::move(pages), "font.rtf")), 0);
}

TEST(Rtf, ATurnedTextStandsInItsElement)
{
    PageList pages;
    Style style;
    style.rotation = Rotation::Left;
    style.vertical = VerticalAlign::Bottom;
    Page page;
    page.elements.push_back(text_element({100, 200, 40, 300}, pages.document.styles->intern(style), "aside"));
    pages.pages.push_back(std::move(page));
    const std::string rtf = exported(std::move(pages), "turned.rtf");
    // The line's top lies 40 - 11.64 points from the element's left edge, its start at the lower edge.
    EXPECT_THAT(rtf, HasSubstr("\\shpleft2567\\shptop3920\\shpright2880\\shpbottom10000"));
    EXPECT_THAT(rtf, HasSubstr("{\\sn txflTextFlow}{\\sv 2}"));
}

}  // namespace
}  // namespace velora::engine
