#include <gtest/gtest.h>

#include "support.h"

namespace velora::engine {
namespace {

const std::string kPageBreak = R"(<element kind="break" x="0" y="5" width="100" height="1" type="Page"/>)";
const std::string kColumnBreak = R"(<element kind="break" x="0" y="5" width="100" height="1" type="Column"/>)";

std::string group(std::string_view attributes, int header, int footer, std::string_view expression = "$V{REPORT_COUNT}")
{
    return "<group name=\"g\" " + std::string(attributes) + "><expression><![CDATA[" + std::string(expression) +
           "]]></expression><groupHeader>" + band("band", header, text_field("\"head\"", 0, header)) +
           "</groupHeader><groupFooter>" + band("band", footer, text_field("\"foot\"", 0, footer)) +
           "</groupFooter></group>";
}

TEST(Progress, ABandTallerThanItsPageIsPlacedAndCutWithAWarning)
{
    for (const char* name : {"title", "pageHeader", "columnHeader", "summary", "columnFooter", "pageFooter"}) {
        const auto result = filled({band(name, 500, text_field("\"tall\"", 0, 500))}, 1);
        EXPECT_LE(result.pages.size(), 4u) << name;
        EXPECT_NE(listed(result.pages).find("tall@"), std::string::npos) << name << ": it has to be seen";
    }
    const auto result = filled({detail(500, text_field("\"tall\"", 0, 500))}, 2);
    EXPECT_LE(result.pages.size(), 6u);
    ASSERT_FALSE(result.warnings.empty());
    EXPECT_NE(result.warnings[0].find("500"), std::string::npos) << "the warning names the height";
}

TEST(Progress, ATallDetailWhosePartsFitGoesOverPages)
{
    const auto result = filled({detail(300, text_field("\"up\"", 0, 100) + text_field("\"low\"", 200, 100))}, 1);
    EXPECT_EQ(listed(result.pages), "up@10+100\nlow@10+100\n");
}

TEST(Progress, ABreakInAnyBandEnds)
{
    for (const auto& element : {kPageBreak, kColumnBreak}) {
        for (const char* name : {"background", "title", "pageHeader", "columnHeader", "columnFooter", "pageFooter",
                                 "lastPageFooter", "summary", "noData"}) {
            for (const size_t rows : {0, 3}) {
                const std::string body = text_field("\"a\"", 0, 5) + element + text_field("\"b\"", 6, 10);
                const auto result = filled(
                    {detail(10, text_field("\"d\"", 0, 10)) + band(name, 20, body), "whenNoDataType=\"NoDataSection\""},
                    rows);
                EXPECT_LE(result.pages.size(), 8u) << name << " with " << rows << " rows";
            }
        }
    }
}

TEST(Progress, NothingAtAllFitsAndItStillEnds)
{
    struct Case {
        const char* why;
        std::string attributes;
        std::string head;
        std::string bands;
    };
    const std::string plain = detail(20, text_field("\"d\"", 0, 20));
    const Case cases[] = {
        {"header and footer leave no room", "", "", band("pageHeader", 100, "") + band("pageFooter", 100, "") + plain},
        {"zero sizes", "", "", detail(0, text_field("\"d\"", 0, 0))},
        {"a group that cannot be kept together", "", group("keepTogether=\"true\"", 150, 150, "1"), plain},
        {"a header reprinted on every page that fills it", "", group("reprintHeaderOnEachPage=\"true\"", 170, 10, "1"),
         plain},
        {"the same in columns", "columnCount=\"2\" columnSpacing=\"0\"",
         group("reprintHeaderOnEachColumn=\"true\"", 175, 170, "1"), plain},
        {"the same across", "columnCount=\"2\" printOrder=\"Horizontal\"",
         group("reprintHeaderOnEachPage=\"true\" preventOrphanFooter=\"true\"", 175, 170), plain},
        {"more room asked for than a page has", "", group("minHeightToStartNewPage=\"900\"", 10, 10), plain},
        {"more details asked for than there are", "", group("minDetailsToStartFromTop=\"99\"", 10, 10), plain},
        {"footers that must not be orphans fill the page", "", group("preventOrphanFooter=\"true\"", 10, 175), plain},
        {"a line of text higher than the page", "", "",
         detail(20, text_field("\"tall\"", 0, 20, "fontSize=\"400\" textAdjust=\"StretchHeight\""))},
        {"a new page for each group and a header as tall as it", "", group("startNewPage=\"true\"", 180, 180), plain},
    };
    for (const auto& c : cases) {
        const auto result = filled({c.bands, c.attributes, c.head}, 5);
        EXPECT_LE(result.pages.size(), 60u) << c.why;
    }
}

TEST(Progress, ALongTextGoesOverAsManyPagesAsItNeedsAndLosesNothing)
{
    const TestReport report{detail(20, text_field("$P{long}", 0, 20, "textAdjust=\"StretchHeight\"")), "",
                            "<parameter name=\"long\" class=\"java.lang.String\"/>"};
    std::string text;
    for (int word = 0; word < 2000; ++word) text += "word" + std::to_string(word) + " ";
    FillOptions options;
    options.parameters["long"] = text;
    TestTable table(1);
    const auto result = filled(report.xml(), table, options);
    std::string joined;
    for (const auto& page : result.pages) {
        joined += std::get<Text>(page.elements.at(0).content).text;
    }
    EXPECT_GT(result.pages.size(), 10u);
    EXPECT_EQ(joined, text);
}

}  // namespace
}  // namespace velora::engine
