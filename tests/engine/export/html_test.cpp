#include "engine/export/html/html_text.h"

#include "engine/export/common/link_address.h"
#include "engine/export/export_run.h"
#include "engine/export/sample_quote.h"

namespace velora::engine {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string exported(PageList pages, const std::string& name)
{
    return bytes_of(run_export(std::move(pages), name));
}

size_t count(std::string_view text, std::string_view part)
{
    size_t found = 0;
    for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++found;
    return found;
}

TEST(Html, PagesAreOneFileWithEachPictureAndStyleOnce)
{
    const std::string one = exported(sample_quote(1), "one.html");
    const std::string three = exported(sample_quote(3), "three.html");
    EXPECT_EQ(count(three, "<section "), 3U);
    EXPECT_EQ(count(three, "data:image/png;base64,"), 1U);
    EXPECT_EQ(count(three, "<style>"), 1U);
    EXPECT_LT(three.find("<style>"), three.find("</head>"));
    EXPECT_EQ(one.substr(0, one.find("</style>")), three.substr(0, three.find("</style>")))
        << "further pages of the same form add no rules";
    EXPECT_EQ(count(three, "<div"), count(three, "</div>"));
}

TEST(Html, NothingOfATextBecomesMarkup)
{
    PageList pages;
    Style hostile;
    hostile.font.family = "x'}</style><script>alert(1)</script>";
    const Style* style = pages.document.styles->intern(hostile);
    pages.document.title = "</title><script>1</script>";
    Page page;
    Element text = text_element({10, 10, 100, 12}, style, "<script>alert(\"1\")</script>&amp;\x01\xFF\xC3");
    auto& detail = std::get<Text>(text.content).details();
    detail.link = {Link::Kind::Reference, " java\tscript:alert(1)", {}, 0, "\"><script>"};
    detail.anchor.name = "\"><script>";
    page.elements.push_back(std::move(text));
    Element second = text_element({10, 30, 100, 12}, style, "next");
    std::get<Text>(second.content).details().link = {Link::Kind::LocalAnchor, {}, "\"><script>", 0, "\"><script>"};
    page.elements.push_back(std::move(second));
    pages.pages.push_back(std::move(page));
    const std::string html = exported(std::move(pages), "hostile.html");
    EXPECT_THAT(html, Not(HasSubstr("<script")));
    EXPECT_THAT(html, Not(HasSubstr("javascript")));
    EXPECT_EQ(count(html, "</style>"), 1U);
    EXPECT_THAT(
        html,
        HasSubstr("&lt;script&gt;alert(&quot;1&quot;)&lt;/script&gt;&amp;amp;\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"));
    EXPECT_THAT(html, HasSubstr("id=\"a-.22.3E.3Cscript.3E\""));
    EXPECT_THAT(html, HasSubstr("href=\"#a-.22.3E.3Cscript.3E\""));
}

TEST(Html, AddressesThatRunProgramsAreNoLinks)
{
    struct Case {
        const char *why, *address;
        bool safe;
    };
    for (const auto& c :
         {Case{"the web", "https://example.com/a?b=c:d", true}, Case{"mail", "mailto:a@example.com", true},
          Case{"another file", "terms.html#part", true}, Case{"a colon behind a slash is no scheme", "dir/a:b", true},
          Case{"a program", "JavaScript:alert(1)", false}, Case{"a program in blanks", "  javascript:alert(1)", false},
          Case{"browsers pass over control characters", "java\nscript:alert(1)", false},
          Case{"a page of its own", "data:text/html,x", false}}) {
        EXPECT_EQ(!safe_address(c.address).empty(), c.safe) << c.why;
    }
}

TEST(Html, MeasuredLinesStandAsTheyWereBroken)
{
    const std::string html = exported(sample_quote(1), "lines.html");
    EXPECT_THAT(html, HasSubstr("zinc plated, with\nfastening set and a description that\nwraps</div>"));
    EXPECT_EQ(count(html, "class=\"j\""), 2U) << "the last line of a justified paragraph is not stretched";
    EXPECT_THAT(html, HasSubstr("rotate(-90deg)"));
}

}  // namespace
}  // namespace velora::engine
