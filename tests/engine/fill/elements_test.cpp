#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "engine/fill/fill.h"
#include "engine/fill/parts/images.h"
#include "engine/page/picture_head.h"
#include "engine/plan/resources.h"
#include "support.h"

namespace velora::engine {
namespace {

TEST(TextField, ShowsNullAsAskedAndNumbersByTheirPattern)
{
    struct Case {
        const char* why;
        const char* expression;
        const char* attributes;
        const char* expected;
    };
    for (const auto& c : {
             Case{"null is told", "null", "", "null"},
             Case{"or left blank", "null", "blankWhenNull=\"true\"", ""},
             Case{"a pattern for numbers", "1234.5", "pattern=\"#,##0.00\"", "1,234.50"},
             Case{"which a text does not heed", "\"12\"", "pattern=\"#,##0.00\"", "12"},
         }) {
        const auto result = filled({detail(20, text_field(c.expression, 0, 20, c.attributes))}, 1);
        EXPECT_EQ(listed(result.pages), std::string(c.expected) + "@10+20\n") << c.why;
    }
}

TEST(TextField, RepeatedValuesAreLeftOutUntilTheyChange)
{
    const auto result =
        filled({detail(20, text_field("$V{REPORT_COUNT} / 3", 0, 20, "printRepeatedValues=\"false\""))}, 6);
    EXPECT_EQ(listed(result.pages), "0@10+20 1@50+20 2@110+20\n");
}

TEST(TextField, ABlankLineIsClosedUpWhenNothingStandsBesideIt)
{
    const std::string blank = text_field("\"\"", 20, 20, "removeLineWhenBlank=\"true\"");
    const std::string below = text_field("\"below\"", 40, 20);
    EXPECT_EQ(listed(filled({detail(60, blank + below) + band("summary", 20, text_field("\"end\"", 0, 20))}, 1).pages),
              "below@30+20 end@50+20\n");
    const std::string beside = R"(<element kind="line" x="120" y="25" width="20" height="5"/>)";
    EXPECT_EQ(listed(filled({detail(60, blank + beside + below)}, 1).pages), "-@35+5 below@50+20\n");
}

TEST(TextField, WhatFloatsBelowATextThatGrowsIsPushedDown)
{
    const std::string grows = text_field("\"1\\n2\\n3\\n4\"", 0, 12, "textAdjust=\"StretchHeight\"");
    const std::string floats = text_field("\"floats\"", 15, 12, "positionType=\"Float\"");
    const std::string fixed = text_field("\"fixed\"", 15, 12);
    const std::string bottom = text_field("\"bottom\"", 28, 12, "positionType=\"FixRelativeToBottom\"");
    const std::string line =
        R"(<element kind="line" x="150" y="0" width="1" height="40" stretchType="ContainerHeight"/>)";
    EXPECT_EQ(listed(filled({detail(40, grows + floats + fixed + bottom + line)}, 1).pages),
              "1\n2\n3\n4@10+47 floats@60+12 fixed@25+12 bottom@73+12 -@10+75\n");
}

TEST(TextField, AFontIsMadeSmallerUntilTheTextFits)
{
    const auto result = filled(
        {detail(20, text_field("\"one two three four five six\"", 0, 20, "textAdjust=\"ScaleFont\" fontSize=\"14\""))},
        1);
    const Element& element = result.pages.at(0).elements.at(0);
    EXPECT_EQ(std::get<Text>(element.content).shown(), "one two three four five six");
    EXPECT_LT(element.style->font.size, 14);
    EXPECT_GT(element.style->font.size, 4);
}

TEST(Styles, AreInheritedAndTheFirstConditionThatHoldsWins)
{
    const std::string head =
        R"(<style name="base" fontSize="9" forecolor="#0000FF"/>)"
        R"(<style name="derived" style="base" bold="true">)"
        R"(<conditionalStyle forecolor="#FF0000"><conditionExpression>$V{REPORT_COUNT} == 2</conditionExpression></conditionalStyle>)"
        R"(<conditionalStyle forecolor="#00FF00" italic="true"><conditionExpression>$V{REPORT_COUNT} >= 2</conditionExpression></conditionalStyle>)"
        R"(</style>)";
    const auto result = filled({detail(20, text_field("\"x\"", 0, 20, "style=\"derived\"")), "", head}, 3);
    const auto& elements = result.pages.at(0).elements;
    EXPECT_EQ(elements[0].style->fore, (Color{0, 0, 255}));
    EXPECT_EQ(elements[1].style->fore, (Color{255, 0, 0}));
    EXPECT_EQ(elements[2].style->fore, (Color{0, 255, 0}));
    EXPECT_TRUE(elements[1].style->font.italic && elements[1].style->font.bold);
    EXPECT_FALSE(elements[0].style->font.italic);
    EXPECT_EQ(elements[0].style->font.size, 9);
}

TEST(Frames, GrowWithTheirContentAndGoOverPages)
{
    const std::string text = text_field("\"1\\n2\\n3\\n4\\n5\\n6\\n7\\n8\"", 0, 12, "textAdjust=\"StretchHeight\"");
    const std::string frame =
        "<element kind=\"frame\" x=\"0\" y=\"0\" width=\"120\" height=\"20\">" + text + "</element>";
    const auto result = filled({band("title", 120, "") + detail(20, frame)}, 1);
    ASSERT_EQ(result.pages.size(), 2u);
    EXPECT_EQ(result.pages[0].elements.at(0).place.height, 60);
    EXPECT_EQ(result.pages[1].elements.at(0).place.height, 43) << "the room below the text stays";
    EXPECT_EQ(listed(result.pages), "[ 1\n2\n3\n4\n5\n@0+60 ]\n[ 6\n7\n8@0+35 ]\n");
}

TEST(Frames, AreReprintedWithTheRowTheyBelongTo)
{
    const std::string frame =
        "<element kind=\"frame\" x=\"110\" y=\"0\" width=\"60\" height=\"15\" "
        "printWhenDetailOverflows=\"true\">" +
        text_field("\"row \" + $V{REPORT_COUNT}", 0, 15) + "</element>";
    const std::string grows =
        text_field("\"1\\n2\\n3\\n4\\n5\\n6\\n7\\n8\\n9\\n0\"", 0, 12, "textAdjust=\"StretchHeight\"");
    const auto pages = listed(filled({detail(15, frame + grows)}, 2).pages);
    EXPECT_EQ(pages,
              "[ row 1@0+15 ] 1\n2\n3\n4\n5\n6\n7\n8\n9\n0@10+117 [ row 2@0+15 ] 1\n2\n3\n4\n5\n@130+60\n"
              "[ row 2@0+15 ] 6\n7\n8\n9\n0@10+59\n");
}

TEST(Images, AreReadBesideTheDefinitionAndNowhereElse)
{
    namespace fs = std::filesystem;
    const fs::path folder = fs::path(VELORA_TEST_SCRATCH) / "images";
    fs::create_directories(folder / "inner");
    std::ofstream(folder / "secret.png") << "secret";
    std::ofstream(folder / "inner" / "logo.png") << "logo";
    Images images(folder / "inner");
    std::string reason;
    EXPECT_EQ(images.find("logo.png", reason)->bytes, "logo");
    EXPECT_EQ(images.find("../secret.png", reason), nullptr);
    EXPECT_NE(reason.find("outside"), std::string::npos);
    EXPECT_EQ(images.find("gone.png", reason), nullptr);
    EXPECT_EQ(images.find((folder / "secret.png").string(), reason)->bytes, "secret") << "an absolute name is meant so";
    EXPECT_EQ(images.find("data:image/png;base64,bG9n\nbw==", reason)->bytes, "logo");
    EXPECT_EQ(images.find("data:image/png;base64,***", reason), nullptr);
}

TEST(Images, TheirSizeIsReadFromTheirHead)
{
    using namespace std::string_literals;
    const std::string png = "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\1\2\3\0\0\x11\x12"s;
    const std::string jpeg_head = "\xff\xd8\xff\xe0\0\4ab\xff\xff\xc0\0\x0b\x08\1\2\3\4"s;
    struct Case {
        const char* why;
        std::string bytes;
        int width, height;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"PNG", png, 0x10203, 0x1112},
             {"PNG that is cut", png.substr(0, 23), 0, 0},
             {"GIF, low bytes first", "GIF89a\2\1\4\3"s, 0x102, 0x304},
             {"GIF that is cut", "GIF89a\2\1\4"s, 0, 0},
             {"JPEG behind another part and a filling byte", jpeg_head + "...", 0x304, 0x102},
             {"a progressive one", "\xff\xd8\xff\xc2\0\x0b\x08\0\5\0\6..."s, 6, 5},
             {"tables are no head", "\xff\xd8\xff\xc4\0\4ab\xff\xc0\0\x0b\x08\0\5\0\6..."s, 6, 5},
             {"JPEG that is cut", jpeg_head.substr(0, 16), 0, 0},
             {"something else", "BM and more bytes than a head has", 0, 0}}) {
        const auto size = picture_head(c.bytes);
        ASSERT_EQ(size.has_value(), c.width > 0) << c.why;
        if (!size) continue;
        EXPECT_EQ(size->width, c.width) << c.why;
        EXPECT_EQ(size->height, c.height) << c.why;
    }
}

TEST(Images, AMissingOneIsAWarningAndTheReportGoesOn)
{
    const std::string image =
        R"(<element kind="image" x="0" y="0" width="50" height="20"><expression>"gone.png"</expression></element>)";
    const auto result = filled({detail(20, image)}, 3);
    EXPECT_EQ(result.pages.at(0).elements.size(), 3u);
    ASSERT_EQ(result.warnings.size(), 1u) << "told once and not for every row";
    EXPECT_NE(result.warnings[0].find("gone.png"), std::string::npos);
}

TEST(Images, OneThatNoFormatShowsIsAWarning)
{
    const std::string image = R"(<element kind="image" x="0" y="0" width="50" height="20"><expression>)"
                              R"("data:image/gif;base64,R0lGODlhAgABAAAAACw="</expression></element>)";
    const auto result = filled({detail(20, image)}, 3);
    ASSERT_EQ(result.warnings.size(), 1u);
    EXPECT_NE(result.warnings[0].find("is none of the kinds that are shown"), std::string::npos) << result.warnings[0];
}

TEST(Barcodes, AreDrawnAndWhatTheTypeCannotHoldIsAWarning)
{
    const auto component = [](const std::string& type, const std::string& code) {
        return R"(<element kind="component" x="0" y="0" width="120" height="40"><component kind="barcode4j:)" + type +
               R"("><codeExpression><![CDATA[)" + code + "]]></codeExpression></component></element>";
    };
    struct Case {
        const char* why;
        const char* type;
        const char* code;
        bool drawn;
        const char* warning;
    };
    for (const auto& c : {
             Case{"a number", "EAN13", "\"4006381333931\"", true, ""},
             Case{"text of the row", "Code128", "\"Q-\" + $V{REPORT_COUNT}", true, ""},
             Case{"a square one", "QRCode", "\"Q-1\"", true, ""},
             Case{"a wrong check digit", "EAN8", "\"12345678\"", false, "check digit"},
             Case{"letters", "EAN13", "\"ABC\"", false, "digits only"},
         }) {
        const auto result = filled({detail(40, component(c.type, c.code))}, 1);
        const auto& graphic = std::get<Graphic>(result.pages.at(0).elements.at(0).content);
        EXPECT_EQ(!graphic.drawing->items.empty(), c.drawn) << c.why;
        EXPECT_EQ(result.warnings.empty(), c.drawn) << c.why;
        if (!c.drawn) {
            EXPECT_NE(result.warnings.at(0).find(c.warning), std::string::npos) << c.why;
        }
    }
    EXPECT_TRUE(filled({detail(40, component("EAN13", "null"))}, 1).pages.at(0).elements.empty()) << "null prints none";
}

TEST(Charts, ShowTheRowsOfTheReportAndAreDrawnWhenTheyAreComplete)
{
    const std::string chart =
        R"(<element kind="chart" chartType="bar" evaluationTime="Report" x="0" y="0" width="180" height="100">)"
        R"(<dataset kind="category"><series><seriesExpression>"sold"</seriesExpression>)"
        R"(<categoryExpression>"c" + $V{REPORT_COUNT} % 2</categoryExpression>)"
        R"(<valueExpression>$V{REPORT_COUNT}</valueExpression></series></dataset><plot/></element>)";
    const auto result = filled({band("title", 100, chart) + detail(50, "")}, 4);
    ASSERT_EQ(result.pages.size(), 2u);
    const auto& graphic = std::get<Graphic>(result.pages[0].elements.at(0).content);
    ASSERT_NE(graphic.drawing, nullptr);
    std::set<std::string> labels;
    for (const auto& item : graphic.drawing->items) {
        if (const auto* label = std::get_if<Label>(&item)) labels.insert(label->text);
    }
    EXPECT_TRUE(labels.contains("c0") && labels.contains("c1") && labels.contains("sold"));
}

TEST(Charts, ATimeSeriesTakesTheLastRowOfEachPeriodInOrder)
{
    const std::string chart =
        R"(<element kind="chart" chartType="timeSeries" x="0" y="0" width="180" height="100">)"
        R"(<dataset kind="timeSeries" timePeriod="Month"><series><seriesExpression>"s"</seriesExpression>)"
        R"(<timePeriodExpression>$F{d}</timePeriodExpression><valueExpression>$F{v}</valueExpression></series></dataset>)"
        R"(<plot/></element>)";
    const auto date = [](int month, int day) { return Value(*DateTime::from_ymd(2026, month, day)); };
    TestTable table({{"d", Value::Type::Date}, {"v", Value::Type::Double}},
                    {{date(3, 9), 7.0}, {date(1, 20), 1.0}, {date(1, 5), 2.0}, {Value(), 9.0}, {date(2, 1), Value()}});
    const TestReport report{
        band("summary", 100, chart), "",
        "<field name=\"d\" class=\"java.util.Date\"/><field name=\"v\" class=\"java.lang.Double\"/>"};
    const auto result = filled(report.xml(), table);
    const auto& graphic = std::get<Graphic>(result.pages.at(0).elements.at(0).content);
    EXPECT_EQ(graphic.drawing->description, "s: 1 Jan 2026 2, 1 Mar 2026 7");
}

TEST(Charts, AFormThatIsNotDrawnIsToldByName)
{
    const std::string chart = R"(<element kind="chart" chartType="gantt" x="0" y="0" width="180" height="100">)"
                              R"(<dataset kind="category"/><plot/></element>)";
    const TestReport written{band("title", 100, chart)};
    std::vector<Warning> met;
    const CompiledReport opened(std::make_shared<model::Definition>(read_definition(written.xml(), met)));
    ASSERT_EQ(opened.warnings().size(), 1U);
    EXPECT_NE(opened.warnings()[0].find("'gantt' is not drawn"), std::string::npos) << opened.warnings()[0];
    const auto result = filled(written, 1);
    const auto& drawing = *std::get<Graphic>(result.pages.at(0).elements.at(0).content).drawing;
    ASSERT_EQ(drawing.items.size(), 2U);
    EXPECT_EQ(std::get<Label>(drawing.items[1]).text, "gantt");
}

TEST(Opening, AnExpressionOutsideTheLanguageIsFoundBeforeAnyRowIsRead)
{
    const auto open = [](const std::string& expression) {
        std::vector<Warning> warnings;
        const TestReport report{detail(20, text_field(expression, 0, 20))};
        const CompiledReport compiled(std::make_shared<model::Definition>(read_definition(report.xml(), warnings)));
    };
    EXPECT_THROW(open("System.exit(1)"), DefinitionError);
    EXPECT_THROW(open("$F{unknown}"), DefinitionError);
    EXPECT_NO_THROW(open("1 + 1"));
}

TEST(Words, WhatTheBundleLacksIsReplacedAsTheDefinitionSays)
{
    struct Case {
        const char *type, *shown;
    };
    const auto shown = [](const std::string& type) {
        const TestReport report{detail(20, text_field("$R{there} + \"|\" + $R{gone}", 0, 20)),
                                "whenResourceMissingType=\"" + type + "\""};
        TestTable table(1);
        FillOptions options;
        options.resources = {{"there", "here"}};
        const auto result = filled(report.xml(), table, options);
        return std::string(std::get<Text>(result.pages.at(0).elements.at(0).content).shown());
    };
    for (const auto& c : {Case{"Null", "here|null"}, Case{"Empty", "here|"}, Case{"Key", "here|gone"}}) {
        EXPECT_EQ(shown(c.type), c.shown) << c.type;
    }
    try {
        shown("Error");
        FAIL() << "nothing may stand for it";
    } catch (const DefinitionError& error) {
        EXPECT_NE(std::string(error.what()).find("'gone'"), std::string::npos) << error.what();
    }
}

TEST(Opening, TextsOfAResourceBundleAreReadByTheirRules)
{
    const auto texts = read_properties(
        "# remark\na = one\nb: two \\\n   more\nc\\ d=\\u00e9\\n!\n! remark\n\ne\n"
        "f=\\ud83d\\ude00\\u0041\\ud83d \\u12g4\\\\u0041 \\u1\n");
    EXPECT_EQ(texts.at("a"), "one");
    EXPECT_EQ(texts.at("b"), "two more");
    EXPECT_EQ(texts.at("c d"), "\xc3\xa9\n!");
    EXPECT_EQ(texts.at("e"), "");
    EXPECT_EQ(texts.at("f"), "😀A� u12g4\\u0041 u1") << "a pair is one character, half of it a replacement";
    EXPECT_EQ(texts.size(), 5u);
}

}  // namespace
}  // namespace velora::engine
