#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/fill/book/page_book.h"
#include "engine/page/page_copy.h"
#include "support.h"

namespace velora::engine {
namespace {

TestTable numbers()
{
    return {{{"n", Value::Type::Integer}, {"g", Value::Type::Text}},
            {{Value(4), "a"}, {Value(), "a"}, {Value(2), "b"}, {Value(4), "b"}}};
}

std::string shown(const std::string& head, const std::string& expression, TestTable table)
{
    const TestReport report{detail(20, text_field(expression, 0, 20)), "", head};
    const auto result = filled(report.xml(), table);
    std::string all;
    for (const auto& page : result.pages) {
        for (const auto& element : page.elements) all += std::string(std::get<Text>(element.content).shown()) + " ";
    }
    return all;
}

const std::string kFields = R"(<field name="n" class="java.lang.Integer"/><field name="g" class="java.lang.String"/>)";

TEST(Variables, EachCalculationCountsTheRowsUpToHere)
{
    struct Case {
        const char* why;
        const char* calculation;
        const char* class_name;
        const char* expected;
    };
    for (const auto& c : {
             Case{"a null is no addend", "Sum", "Integer", "4 4 6 10 "},
             Case{"a null is not counted", "Count", "Integer", "1 1 2 3 "},
             Case{"a value that comes again counts once", "DistinctCount", "Integer", "1 1 2 2 "},
             Case{"whole numbers give a whole average", "Average", "Integer", "4 4 3 3 "},
             Case{"the smallest so far", "Lowest", "Integer", "4 4 2 2 "},
             Case{"the largest so far", "Highest", "Integer", "4 4 4 4 "},
             Case{"the first one stays", "First", "Integer", "4 4 4 4 "},
             Case{"without a calculation it is the row's own value", "Nothing", "Integer", "4 null 2 4 "},
         }) {
        const std::string head = kFields + "<variable name=\"v\" class=\"java.lang." + c.class_name +
                                 "\" calculation=\"" + c.calculation + "\"><expression>$F{n}</expression></variable>";
        EXPECT_EQ(shown(head, "$V{v}", numbers()), c.expected) << c.calculation << ": " << c.why;
    }
}

TEST(Variables, VarianceIsThatOfAllValues)
{
    const std::string head = kFields +
                             "<variable name=\"v\" class=\"java.lang.Double\" calculation=\"Variance\">"
                             "<expression>$F{n}</expression></variable>";
    TestTable table({{"n", Value::Type::Integer}}, {{Value(1)}, {Value(3)}, {Value(8)}});
    EXPECT_EQ(shown(head, "Math.round($V{v} * 1000)", std::move(table)), "0 1000 8667 ");
}

TEST(Variables, AreResetWithTheirGroupAndIncrementedWhenTheyAreToBe)
{
    const std::string group = R"(<group name="G"><expression>$F{g}</expression></group>)";
    const auto variable = [](const std::string& attributes) {
        return "<variable name=\"v\" class=\"java.lang.Integer\" calculation=\"Sum\" " + attributes +
               "><expression>$F{n}</expression></variable>";
    };
    EXPECT_EQ(shown(kFields + variable("resetType=\"Group\" resetGroup=\"G\"") + group, "$V{v}", numbers()),
              "4 4 2 6 ");
    EXPECT_EQ(shown(kFields + variable("incrementType=\"Group\" incrementGroup=\"G\"") + group, "$V{v}", numbers()),
              "4 4 6 8 ")
        << "within a group only its last row counts";
    EXPECT_EQ(shown(kFields + group, "$V{G_COUNT} + \"/\" + $V{REPORT_COUNT}", numbers()), "1/1 2/2 1/3 2/4 ");
}

TEST(Rows, AreSortedAndFilteredBeforeTheyAreCounted)
{
    EXPECT_EQ(shown(kFields + "<sortField name=\"n\" order=\"Descending\"/>", "$F{n}", numbers()), "4 4 2 null ");
    EXPECT_EQ(shown(kFields + "<filterExpression>$F{n} != null</filterExpression>", "$V{REPORT_COUNT} + \":\" + $F{n}",
                    numbers()),
              "1:4 2:2 3:4 ");
}

TEST(Rows, CellsAreReadAsTheClassThatTheFieldDeclares)
{
    TestTable table({{"n", Value::Type::Text}}, {{Value("12")}, {Value("no number")}, {Value(7.9)}});
    EXPECT_EQ(shown(kFields, "$F{n} + 1", std::move(table)), "13 null 8 ");
}

TEST(Rows, ACellThatIsNoneOfItsFieldsClassIsToldOnceAndABlankOneNever)
{
    const std::string long_text = "é" + std::string(60, 'x');
    TestTable table({{"n", Value::Type::Text}, {"g", Value::Type::Text}, {"d", Value::Type::Text}},
                    {{Value("12"), Value("x"), Value(" ")},
                     {Value("many"), Value(5), Value("2026-02-28")},
                     {Value("few"), Value(), Value(long_text)}});
    const TestReport report{detail(20, ""), "", kFields + R"(<field name="d" class="java.util.Date"/>)"};
    EXPECT_THAT(filled(report.xml(), table).warnings,
                testing::ElementsAre("the field 'n' is of the class Integer, and \"many\" is none; it stays empty",
                                     testing::HasSubstr("'d' is of the class Date, and \"éxxx")));
}

TEST(Opening, TellsWhatIsPassedOver)
{
    struct Case {
        const char* why;
        std::string head;
        const char* warning;
    };
    const std::string chart =
        R"(<title height="50"><element kind="chart" chartType="bar" x="0" y="0" width="90" height="50"><dataset kind="category"/>)";
    for (
        const auto& c : {
            Case{"a group without a header",
                 R"(<group name="g" keepTogether="true"><expression>1</expression></group>)", "'g' has no header"},
            Case{
                "a list in a variable",
                R"(<variable name="v" class="java.util.List" calculation="Nothing"><expression>List.of(1)</expression></variable>)",
                "'v' holds a list"},
            Case{"the colour of an axis", chart + R"(<plot valueAxisLabelColor="#FF0000"/></element></title>)",
                 "colour of the chart"},
            Case{
                "the font of an axis",
                chart +
                    R"(<plot><valueAxisTickLabelFont><font size="5"/></valueAxisTickLabelFont></plot></element></title>)",
                "font of the legend"},
        }) {
        std::vector<Warning> met;
        const TestReport report{detail(20, ""), "", c.head};
        const CompiledReport opened(std::make_shared<model::Definition>(read_definition(report.xml(), met)));
        std::vector<std::string> told = opened.warnings();
        for (const auto& warning : met) told.push_back(warning.line());
        ASSERT_EQ(told.size(), 1u) << c.why;
        EXPECT_NE(told[0].find(c.warning), std::string::npos) << told[0];
    }
}

TEST(Parameters, TakeWhatIsGivenElseTheirDefaultWhichMaySeeEarlierOnes)
{
    const std::string head =
        "<parameter name=\"a\" "
        "class=\"java.lang.Integer\"><defaultValueExpression>2</defaultValueExpression></parameter>"
        "<parameter name=\"b\" class=\"java.lang.Integer\"><defaultValueExpression>$P{a} * "
        "10</defaultValueExpression></parameter>";
    const TestReport report{detail(20, text_field("$P{a} + \" \" + $P{b}", 0, 20)), "", head};
    FillOptions options;
    TestTable table(1);
    EXPECT_EQ(listed(filled(report.xml(), table, options).pages), "2 20@10+20\n");
    options.parameters["a"] = Value(5);
    EXPECT_EQ(listed(filled(report.xml(), table, options).pages), "5 50@10+20\n");
}

TEST(EvaluationTime, AValueIsThatOfTheEndOfItsPartOfTheReport)
{
    struct Case {
        const char* why;
        std::string attributes;
        const char* expected;
    };
    const std::string head = R"(<group name="G"><expression>$V{REPORT_COUNT} / 4</expression></group>)";
    for (const auto& c : {
             Case{"at once: the row that begins the page is not counted yet", "",
                  "0@10+20 d@30+60 d@90+60\n2@10+20 d@30+60 d@90+60\n4@10+20 d@30+60\n"},
             Case{"of the page", "evaluationTime=\"Page\"",
                  "2@10+20 d@30+60 d@90+60\n4@10+20 d@30+60 d@90+60\n5@10+20 d@30+60\n"},
             Case{"of the report", "evaluationTime=\"Report\"",
                  "5@10+20 d@30+60 d@90+60\n5@10+20 d@30+60 d@90+60\n5@10+20 d@30+60\n"},
         }) {
        const TestReport report{band("pageHeader", 20, text_field("$V{REPORT_COUNT}", 0, 20, c.attributes)) +
                                detail(60, text_field("\"d\"", 0, 60))};
        EXPECT_EQ(listed(filled(report, 5).pages), c.expected) << c.why;
    }
}

TEST(EvaluationTime, AutoTakesEachVariableAtItsOwnTime)
{
    const TestReport report{
        band("pageHeader", 20,
             text_field("$V{PAGE_NUMBER} + \" of \" + $V{PAGE_COUNT}", 0, 20, "evaluationTime=\"Auto\"")) +
        detail(80, text_field("\"d\"", 0, 80))};
    EXPECT_EQ(listed(filled(report, 3).pages), "2 of 2@10+20 d@30+80 d@110+80\n2 of 1@10+20 d@30+80\n");
}

TEST(EvaluationTime, InAFrameTheElementThatWaitedIsFoundAgain)
{
    const std::string frame = "<element kind=\"frame\" x=\"0\" y=\"0\" width=\"150\" height=\"20\">" +
                              text_field("$V{PAGE_NUMBER}", 0, 20, "evaluationTime=\"Report\"") + "</element>";
    EXPECT_EQ(listed(filled({band("pageHeader", 20, frame) + detail(120, "")}, 3).pages),
              "[ 3@0+20 ]\n[ 3@0+20 ]\n[ 3@0+20 ]\n");
}

/// Notes how many rows had been read when each page came.
class WatchingSink : public PageSink {
public:
    explicit WatchingSink(const TestTable& table) : table_(table) {}
    void begin(const Document&) override {}
    void page(Page&&) override { rows_at_page.push_back(table_.read()); }
    void end() override {}
    std::vector<size_t> rows_at_page;

private:
    const TestTable& table_;
};

TEST(Pages, GoOutAtOnceUnlessTheyWaitForAValue)
{
    const auto rows_at_pages = [](const char* time) {
        const TestReport report{band("pageHeader", 20, text_field("$V{PAGE_NUMBER}", 0, 20, time)) + detail(80, "")};
        std::vector<Warning> warnings;
        const CompiledReport compiled(std::make_shared<model::Definition>(read_definition(report.xml(), warnings)));
        TestTable table(6);
        WatchingSink sink(table);
        fill(compiled, table, test_measurer(), {}, sink);
        return sink.rows_at_page;
    };
    EXPECT_EQ(rows_at_pages(""), (std::vector<size_t>{3, 5, 6}));
    EXPECT_EQ(rows_at_pages("evaluationTime=\"Page\""), (std::vector<size_t>{3, 5, 6}));
    EXPECT_EQ(rows_at_pages("evaluationTime=\"Report\""), (std::vector<size_t>{6, 6, 6}));
}

/// Takes pages with values still to come, and each value when it is there.
class OpenSink : public OpenPageSink {
public:
    explicit OpenSink(const TestTable& table) : table_(table) {}
    void begin(const Document&) override {}
    void page(Page&& page) override
    {
        rows_at_page.push_back(table_.read());
        pages.push_back(std::move(page));
        if (pages.size() == 1) first_as_it_came = listed(pages);
    }
    void amend(size_t page, uint32_t index, const Element& element) override
    {
        pages.at(page).elements.at(index) = copy_of(element);
    }
    void end() override {}

    std::vector<Page> pages;
    std::vector<size_t> rows_at_page;
    std::string first_as_it_came;

private:
    const TestTable& table_;
};

TEST(Pages, GoOutOpenWhereTheirValuesMayComeLater)
{
    const auto field = [](const char* time) {
        return text_field("$V{REPORT_COUNT} + \" of \" + $V{PAGE_NUMBER}", 0, 20,
                          std::string("evaluationGroup=\"G\" evaluationTime=\"") + time + "\"");
    };
    const std::string frame =
        R"(<element kind="frame" x="0" y="0" width="150" height="20">)" + field("Report") + "</element>";
    const std::string group = "<group name=\"G\"><expression>$V{REPORT_COUNT} / 4</expression><groupHeader>" +
                              band("band", 20, field("Group") + text_field("\"g\"", 0, 9)) + "</groupHeader></group>";
    struct Case {
        const char* why;
        TestReport report;
        std::vector<size_t> rows_at_page;
        const char* first;
    };
    const auto page = [](const std::string& content) {
        return band("pageHeader", 20, content) + detail(80, text_field("\"d\"", 0, 80));
    };
    for (const auto& c : {
             Case{"the report's", {page(field("Report"))}, {3, 5, 6}, "@10+20 d@30+80 d@110+80\n"},
             Case{"in a frame", {page(frame)}, {3, 5, 6}, "[ @0+20 ] d@30+80 d@110+80\n"},
             Case{"two of a page, in turn", {page(field("Report") + field("Page"))}, {3, 5, 6}, nullptr},
             Case{"a group's that reaches over pages", {page(""), "", group}, {}, nullptr},
             Case{"the height of a page is known at its end",
                  {page(field("Report")), "ignorePagination=\"true\""},
                  {6},
                  nullptr},
         }) {
        TestTable table(6);
        std::vector<Warning> warnings;
        const CompiledReport compiled(std::make_shared<model::Definition>(read_definition(c.report.xml(), warnings)));
        OpenSink sink(table);
        fill(compiled, table, test_measurer(), {}, sink);
        EXPECT_EQ(listed(sink.pages), listed(filled(c.report, 6).pages)) << c.why;
        if (!c.rows_at_page.empty()) {
            EXPECT_EQ(sink.rows_at_page, c.rows_at_page) << c.why;
        }
        if (c.first != nullptr) {
            EXPECT_EQ(sink.first_as_it_came, c.first) << c.why;
        }
    }
}

TEST(Pages, HeldBackComeOutAsTheyWere)
{
    const std::string lines = R"(<element kind="line" x="0" y="0" width="150" height="1"/>)"
                              R"(<element kind="rectangle" x="0" y="5" width="9" height="9" forecolor="#FF0000"/>)";
    const auto pages_with = [&](const char* time) {
        const TestReport report{
            band("title", 60, text_field("\"title\"", 0, 20) + lines) +
            band("pageFooter", 20, text_field("\"f\"", 0, 20, time)) +
            detail(40, text_field("$V{REPORT_COUNT} + \"\\nlong enough to take more lines\"", 0, 40) + lines)};
        return listed(filled(report, 9).pages);
    };
    EXPECT_EQ(pages_with("evaluationTime=\"Report\""), pages_with(""));
}

TEST(Pages, WithoutPaginationThereIsOneAsLongAsItsContent)
{
    const auto result =
        filled({band("title", 20, "") + detail(100, text_field("\"d\"", 0, 100)) + band("summary", 30, ""),
                "ignorePagination=\"true\""},
               5);
    ASSERT_EQ(result.pages.size(), 1u);
    EXPECT_EQ(result.document.page_height, 10 + 20 + 500 + 30 + 10);
}

}  // namespace
}  // namespace velora::engine
