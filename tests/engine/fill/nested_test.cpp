#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "engine/fill/fill.h"
#include "support.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

namespace fs = std::filesystem;

TestTable people()
{
    return {{{"group", Value::Type::Text}, {"name", Value::Type::Text}},
            {{Value("a"), Value("Ada")}, {Value("b"), Value("Ben")}, {Value("a"), Value("Cy")}}};
}

const std::string kHead =
    R"(<dataset name="people"><parameter name="group" class="java.lang.String"/><field name="group"/><field name="name"/>)"
    R"(<filterExpression>$P{group} == null || $F{group}.equals($P{group})</filterExpression></dataset>)"
    R"(<field name="group"/><field name="name"/>)";

std::string run(const std::string& inside = "")
{
    return "<datasetRun subDataset=\"people\">" + inside + "</datasetRun>";
}

std::string component(const std::string& kind, const std::string& inside, int height, const std::string& more = "")
{
    return "<element kind=\"component\" x=\"0\" y=\"0\" width=\"120\" height=\"" + std::to_string(height) +
           "\"><component kind=\"" + kind + "\" " + more + ">" + inside + "</component></element>";
}

std::string list(const std::string& data, const std::string& text, int row, const std::string& more = "")
{
    const std::string contents =
        "<contents height=\"" + std::to_string(row) + "\" width=\"60\">" + text_field(text, 0, row) + "</contents>";
    return component("list", data + contents, 10, more);
}

Filled filled_with_people(const TestReport& report)
{
    TestTable table = people();
    return filled(report.xml(), table);
}

TEST(Lists, PrintARowForEachOfTheirData)
{
    struct Case {
        const char* why;
        std::string list;
        const char* expected;
    };
    const std::string by_group = run(R"(<parameter name="group"><expression>"a"</expression></parameter>)");
    const std::string source =
        "<dataSourceExpression>new net.sf.jasperreports.engine.JREmptyDataSource(2)"
        "</dataSourceExpression>";
    for (const auto& c : {
             Case{"the rows of the report", list(run(), "$F{name}", 12), "[ Ada@0+12 Ben@12+12 Cy@24+12 ] end@46+20\n"},
             Case{"those that a parameter picks", list(by_group, "$F{name}", 12), "[ Ada@0+12 Cy@12+12 ] end@34+20\n"},
             Case{"rows without fields", list(run(source), "$V{REPORT_COUNT}", 12), "[ 1@0+12 2@12+12 ] end@34+20\n"},
             Case{"side by side", list(run(), "$F{name}", 12, "printOrder=\"Horizontal\""),
                  "[ Ada@0+12 Ben@0+12 Cy@12+12 ] end@34+20\n"},
         }) {
        const std::string end = band("summary", 20, text_field("\"end\"", 0, 20));
        EXPECT_EQ(listed(filled_with_people({band("title", 10, c.list) + end, "", kHead}).pages), c.expected) << c.why;
    }
}

TEST(Lists, GoOverPagesBetweenTheirRows)
{
    const auto result = filled_with_people({band("title", 10, list(run(), "$F{name}", 70)), "", kHead});
    EXPECT_EQ(listed(result.pages), "[ Ada@0+70 Ben@70+70 ]\n[ Cy@0+70 ]\n");
    EXPECT_TRUE(result.warnings.empty());
}

TEST(Lists, ARowThatIsHigherThanAPageIsPartedBetweenItsElements)
{
    const std::string contents = "<contents height=\"240\">" + text_field("$F{name} + 1", 0, 100) +
                                 text_field("$F{name} + 2", 120, 100) + "</contents>";
    const auto result = filled_with_people({band("title", 10, component("list", run() + contents, 10)), "", kHead});
    std::string shown;
    for (const auto& page : result.pages) {
        shown += "|";
        for (const auto& frame : page.elements) {
            for (const auto& child : std::get<Frame>(frame.content).children) {
                shown += std::string(std::get<Text>(child.content).shown()) + " ";
            }
        }
    }
    EXPECT_EQ(shown, "|Ada1 |Ada2 |Ben1 |Ben2 |Cy1 |Cy2 ");
}

TEST(Lists, RowsThatCannotBeReadLeaveThePlaceEmptyWithAWarning)
{
    std::vector<Warning> met;
    const std::string source = "<dataSourceExpression>$P{REPORT_CONTEXT}.rows()</dataSourceExpression>";
    const TestReport report{band("title", 10, list(run(source), "$F{name}", 10)), "", kHead};
    const CompiledReport opened(std::make_shared<model::Definition>(read_definition(report.xml(), met)));
    ASSERT_EQ(opened.warnings().size(), 1u);
    EXPECT_NE(opened.warnings()[0].find("takes its rows from"), std::string::npos);
    EXPECT_THROW(filled_with_people({band("title", 10, list("<datasetRun subDataset=\"gone\"/>", "1", 10)), "", kHead}),
                 DefinitionError);
}

/// A list whose rows stand in a field of the report, as JSON.
std::string rows_in(const std::string& value, const std::string& source, const std::string& fields,
                    const std::string& text)
{
    const std::string head =
        "<dataset name=\"lines\">" + fields + "</dataset><field name=\"lines\" class=\"java.util.List\"/>";
    const std::string data = "<datasetRun subDataset=\"lines\"><dataSourceExpression><![CDATA[" + source +
                             "]]></dataSourceExpression></datasetRun>";
    TestTable table({{"lines", Value::Type::Text}}, {{value.empty() ? Value() : Value(value)}});
    const TestReport report{detail(10, list(data, text, 12)), "", head};
    const auto result = filled(report.xml(), table);
    return listed(result.pages) + (result.warnings.empty() ? "" : result.warnings.front());
}

TEST(Lists, TakeTheirRowsFromAFieldThatHoldsThem)
{
    struct Case {
        const char *why, *value, *text, *expected;
    };
    const std::string fields =
        R"(<field name="item"/><field name="count" class="java.lang.Integer"/><field name="of.city"/><field name="_THIS"/>)";
    const std::string brackets = std::string(1'000'000, '[') + std::string(1'000'000, ']');
    for (const auto& c : {
             Case{"a row an object", R"([{"item": "nut", "count": 3}, {"item": "bolt"}])", "$F{item} + $F{count}",
                  "[ nut3@0+12 boltnull@12+12 ]\n"},
             Case{"what stands in an object", R"([{"of": {"city": "Łódź"}}])", "$F{of.city}", "[ Łódź@0+12 ]\n"},
             Case{"plain values", R"(["a", "b"])", "$F{_THIS}", "[ a@0+12 b@12+12 ]\n"},
             Case{"a number as the class of its field", R"([{"count": "7"}])", "$F{count} + 1", "[ 8@0+12 ]\n"},
             Case{"no rows", "[]", "$F{item}", "\n"},
             Case{"nothing", "", "$F{item}", "\n"},
             Case{"nothing but brackets", brackets.c_str(), "$F{item}",
                  "\nthe rows of a report inside the report are no list that can be read; its place stays empty"},
             Case{"what is no list", R"({"item": 1})", "$F{item}",
                  "\nthe rows of a report inside the report are no list that can be read; its place stays empty"},
         }) {
        std::string found = rows_in(c.value, "$F{lines}", fields, c.text);
        if (const size_t at = found.find("the data have no field"); at != std::string::npos) found.resize(at);
        EXPECT_EQ(found, c.expected) << c.why;
    }
    for (const char* source :
         {"new net.sf.jasperreports.engine.data.JRBeanCollectionDataSource($F{lines})",
          "new JRBeanCollectionDataSource((java.util.Collection) $F{lines}, false)",
          "new JRMapCollectionDataSource($F{lines})", "((JRDataSource) $F{lines})", "$F{lines}.cloneDataSource()"}) {
        EXPECT_EQ(rows_in(R"([{"item": "nut"}])", source, R"(<field name="item"/>)", "$F{item}"), "[ nut@0+12 ]\n")
            << source;
    }
}

TEST(Lists, TakeTheirRowsFromTheirOwnQuery)
{
    const std::string head =
        R"(<dataset name="lines"><parameter name="of" class="java.lang.Integer"/><query language="sql">SELECT $P{of}</query>)"
        R"(<field name="item"/></dataset><field name="id" class="java.lang.Integer"/>)";
    const std::string data =
        R"(<datasetRun subDataset="lines"><connectionExpression>$P{REPORT_CONNECTION}</connectionExpression>)"
        R"(<parameter name="of"><expression>$F{id} * 10</expression></parameter></datasetRun>)";
    const TestReport report{detail(10, list(data, "$F{item}", 12)), "", head};
    TestTable table({{"id", Value::Type::Integer}}, {{Value(int64_t{1})}, {Value(int64_t{2})}});
    FillOptions options;
    options.run_query = [](const model::Definition& definition, const auto& value_of) {
        EXPECT_EQ(definition.data.query.text.text, "SELECT $P{of}");
        EXPECT_FALSE(value_of("other"));
        const auto row = [&](int64_t more) {
            return std::vector{Value("q" + std::to_string(*value_of("of")->template get_if<int64_t>() + more))};
        };
        return std::make_shared<TestTable>(std::vector<TableSource::Field>{{"item", Value::Type::Text}},
                                           std::vector{row(0), row(1)});
    };
    EXPECT_EQ(listed(filled(report.xml(), table, options).pages), "[ q10@0+12 q11@12+12 ] [ q20@0+12 q21@12+12 ]\n");
    table.rewind();
    const auto without = filled(report.xml(), table);
    EXPECT_EQ(listed(without.pages), "\n");
    EXPECT_EQ(without.warnings, std::vector<std::string>{"there is no database for the query of a report inside the "
                                                         "report; its place stays empty"});
}

TEST(Lists, ARowThatFitsNowhereIsCutAndThoseBehindItAreStillPrinted)
{
    const std::string text = "$F{name}.equals(\"Ben\") ? \"" + std::string(60, 'x') + "\" : $F{name}";
    const std::string contents =
        "<contents height=\"20\">" + text_field(text, 0, 20) +
        R"(<element kind="rectangle" x="0" y="0" width="9" height="400"><printWhenExpression><![CDATA[$F{name}.equals("Ben")]]></printWhenExpression></element></contents>)";
    const auto result = filled_with_people({band("title", 10, component("list", run() + contents, 10)), "", kHead});
    EXPECT_NE(listed(result.pages).find("Cy@"), std::string::npos) << listed(result.pages);
    EXPECT_EQ(result.warnings.size(), 1u);
}

TEST(Lists, EndWhenTheRunIsCancelledAndStandOnlySoDeepInEachOther)
{
    TestTable table = people();
    FillOptions options;
    int asked = 0;
    options.cancelled = [&] { return ++asked > 8; };
    const TestReport report{detail(20, list(run(), "$F{name}", 12)), "", kHead};
    EXPECT_THROW(filled(report.xml(), table, options), Fault);

    std::string deep = text_field("1", 0, 12);
    for (int level = 0; level < 5; ++level) {
        deep = component("list", run() + "<contents height=\"12\">" + deep + "</contents>", 12);
    }
    EXPECT_THROW(filled_with_people({band("title", 20, deep), "", kHead}), DefinitionError);
}

TEST(Tables, HaveHeadsAndFeetAndRepeatTheColumnHeadOnEachPage)
{
    const auto cell = [](const std::string& kind, int height, const std::string& text) {
        return "<" + kind + " height=\"" + std::to_string(height) + "\">" + text_field(text, 0, height) + "</" + kind +
               ">";
    };
    const std::string columns = "<column width=\"100\">" + cell("tableHeader", 20, "\"people\"") +
                                cell("columnHeader", 15, "\"name\"") + cell("detailCell", 60, "$F{name}") +
                                cell("tableFooter", 12, "$V{REPORT_COUNT}") + "</column><column width=\"100\">" +
                                cell("columnHeader", 15, "\"group\"") + cell("detailCell", 60, "$F{group}") +
                                "</column>";
    const auto result = filled_with_people({band("title", 10, component("table", run() + columns, 10)), "", kHead});
    EXPECT_EQ(listed(result.pages),
              "[ [ people@0+20 ] [ name@0+15 ] [ group@0+15 ] [ Ada@0+60 ] [ a@0+60 ] [ Ben@0+60 ] [ b@0+60 ] ]\n"
              "[ [ name@0+15 ] [ group@0+15 ] [ Cy@0+60 ] [ a@0+60 ] [ 3@0+12 ] ]\n");
    const auto& rows = std::get<Frame>(result.pages.at(1).elements.at(0).content).children;
    EXPECT_EQ(rows.at(1).place, (Place{100, 0, 100, 15}));
    EXPECT_EQ(rows.at(2).place, (Place{0, 15, 100, 60}));
}

class Subreports : public testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all(folder);
        fs::create_directories(folder / "inner");
    }

    void write(const std::string& name, const TestReport& report) const
    {
        std::ofstream(folder / name) << report.xml();
    }

    static std::string subreport(const std::string& file, const std::string& inside = "")
    {
        return R"(<element kind="subreport" x="0" y="0" width="100" height="10"><expression><![CDATA[)" + file +
               "]]></expression>" + inside + "</element>";
    }

    std::string printed(const std::string& name, const std::map<std::string, Value, std::less<>>& parameters = {})
    {
        warnings.clear();
        const auto report = open_report(folder / name, warnings);
        FillOptions options;
        options.warn = [&](const std::string& text) { warnings.push_back(text); };
        options.parameters = parameters;
        TestTable table = people();
        PageList pages;
        fill(*report, table, test_measurer(), options, pages);
        for (const auto& page : pages.pages) {
            for (const auto& element : page.elements) EXPECT_LT(element.source, pages.document.sources->size());
        }
        return listed(pages.pages);
    }

    fs::path folder = fs::path(VELORA_TEST_SCRATCH) / "subreports";
    std::vector<std::string> warnings;
};

TEST_F(Subreports, AreFedByTheSameRowsAndGoOverPages)
{
    write("inner.jrxml", {R"(<columnHeader height="20">)" + text_field("$P{head}", 0, 20) + "</columnHeader>" +
                              detail(60, text_field("$F{name}", 0, 60)),
                          "", R"(<parameter name="head" class="java.lang.String"/><field name="name"/>)"});
    const std::string parameter = R"(<parameter name="head"><expression>"head"</expression></parameter>)";
    write("outer.jrxml", {band("title", 30, text_field("\"top\"", 10, 12)) +
                          band("summary", 10, subreport("\"inner.jasper\"", parameter))});
    EXPECT_EQ(printed("outer.jrxml"), "top@20+12 head@40+20 Ada@60+60 Ben@120+60\nhead@10+20 Cy@30+60\n");
    EXPECT_TRUE(warnings.empty()) << warnings[0];
}

TEST_F(Subreports, StandBelowTheRowThatTheyBelongTo)
{
    write("inner.jrxml", {detail(12, text_field("$P{name} + $V{REPORT_COUNT}", 0, 12)), "",
                          R"(<parameter name="name" class="java.lang.String"/>)"});
    const std::string inside =
        "<dataSourceExpression>new JREmptyDataSource($F{group}.equals(\"a\") ? 2 : 1)</dataSourceExpression>"
        R"(<parameter name="name"><expression>$F{name}</expression></parameter>)";
    write("outer.jrxml", {detail(10, subreport("$P{DIR} + \"inner.jrxml\"", inside)), "",
                          R"(<parameter name="DIR"><defaultValueExpression>""</defaultValueExpression></parameter>)"
                          R"(<field name="group"/><field name="name"/>)"});
    EXPECT_EQ(printed("outer.jrxml"), "Ada1@10+12 Ada2@22+12 Ben1@34+12 Cy1@46+12 Cy2@58+12\n");
}

TEST_F(Subreports, WhatHoldsItselfIsRefused)
{
    write("a.jrxml", {band("title", 10, subreport("\"b.jrxml\""))});
    write("b.jrxml", {band("title", 10, subreport("\"a.jrxml\""))});
    write("self.jrxml", {band("title", 10, subreport("\"self.jrxml\""))});
    for (const auto* name : {"a.jrxml", "self.jrxml"}) {
        try {
            printed(name);
            ADD_FAILURE() << name;
        } catch (const DefinitionError& error) {
            EXPECT_NE(std::string(error.what()).find("is a part of itself"), std::string::npos) << error.what();
        }
    }
    for (int at = 0; at < 20; ++at) {
        write("deep" + std::to_string(at) + ".jrxml",
              {band("title", 10, subreport("\"deep" + std::to_string(at + 1) + ".jrxml\""))});
    }
    EXPECT_THROW(printed("deep0.jrxml"), DefinitionError);
}

TEST_F(Subreports, WhatGrowsWithEachStepIsRefusedBeforeItIsMade)
{
    const auto refusal = [&](const std::string& name) {
        try {
            printed(name);
        } catch (const DefinitionError& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    for (int at = 0; at < 15; ++at) {  // three times the next one each: 14 million reports
        const std::string next = subreport("\"wide" + std::to_string(at + 1) + ".jrxml\"");
        write("wide" + std::to_string(at) + ".jrxml", {band("title", 10, next + next + next)});
    }
    write("wide15.jrxml", {band("title", 12, text_field("\"x\"", 0, 12))});
    EXPECT_NE(refusal("wide0.jrxml").find("more than 500 reports stand in this one"), std::string::npos);
    EXPECT_EQ(refusal("wide11.jrxml"), "");
    for (int at = 0; at < 15; ++at) {  // the same where each run finds the names out
        const std::string next =
            subreport("\"late\" + ($V{REPORT_COUNT} + " + std::to_string(at + 1) + ") + \".jrxml\"");
        write("late" + std::to_string(at) + ".jrxml", {band("title", 10, next + next + next)});
    }
    EXPECT_EQ(refusal("late0.jrxml"), "");
    EXPECT_TRUE(std::ranges::any_of(warnings, [](const std::string& text) {
        return text.find("name more than 500 different subreports") != std::string::npos;
    }));

    std::string styles = "<style name=\"s0\"/>";
    for (int at = 1; at < 3000; ++at) {
        styles += "<style name=\"s" + std::to_string(at) + "\" style=\"s" + std::to_string(at - 1) + "\"/>";
    }
    write("styles.jrxml", {band("title", 12, text_field("\"x\"", 0, 12)), "", styles});
    EXPECT_NE(refusal("styles.jrxml").find("style 's100' inherits from more than 99 others"), std::string::npos);

    std::string floating;
    for (int at = 0; at < 2001; ++at) {
        floating += "<element kind=\"line\" x=\"0\" y=\"0\" width=\"9\" height=\"0\" positionType=\"Float\"/>";
    }
    write("floating.jrxml", {band("title", 12, floating)});
    EXPECT_NE(refusal("floating.jrxml").find("2001 of 2001 elements of one band float"), std::string::npos);
}

TEST_F(Subreports, OnesOutsideTheFolderOrNotThereLeaveThePlaceEmpty)
{
    write("outside.jrxml", {band("title", 12, text_field("\"secret\"", 0, 12))});
    for (const auto* file : {"../outside.jrxml", "gone.jrxml"}) {
        write("inner/outer.jrxml", {band("title", 10, subreport("\"" + std::string(file) + "\""))});
        EXPECT_EQ(printed("inner/outer.jrxml"), "\n") << file;
        ASSERT_EQ(warnings.size(), 1u) << file;
        EXPECT_NE(warnings[0].find("there is no definition"), std::string::npos);
    }
    write("inner/outer.jrxml", {band("title", 10, subreport("\"" + (folder / "outside.jrxml").string() + "\""))});
    EXPECT_EQ(printed("inner/outer.jrxml"), "secret@10+12\n") << "an absolute name is meant so";
}

TEST_F(Subreports, ThatARowOrARunNamesStandInTheFolderOfTheReport)
{
    write("a.jrxml", {detail(12, text_field("\"A\"", 0, 12)), "", ""});
    write("inner/a.jrxml", {detail(12, text_field("\"B\"", 0, 12)), "", ""});
    write("broken.jrxml", {detail(12, text_field("$F{gone}", 0, 12)), "", ""});
    struct Case {
        std::string name;
        const char *printed, *warning;
    };
    const std::string one = "<dataSourceExpression>new JREmptyDataSource()</dataSourceExpression>";
    const std::string head = R"(<parameter name="which"/><field name="group"/>)";
    for (const auto& c : {
             Case{"$F{group} + \".jrxml\"", "B@10+12 B@32+12\n", "there is no definition 'b.jrxml'"},
             Case{"\"../\" + $F{group} + \".jrxml\"", "\n", "there is no definition '../a.jrxml'"},
             Case{"\"" + folder.string() + "/\" + $F{group} + \".jrxml\"", "\n", "there is no definition '"},
             Case{"\"" + folder.string() + "/inner/\" + $F{group} + \".jrxml\"", "B@10+12 B@32+12\n", "b.jrxml'"},
             Case{"$F{group}.equals(\"a\") ? \"outer.jrxml\" : \"a.jrxml\"", "B@20+12\n", "is a part of itself"},
             Case{"$P{which}", "B@10+12 B@22+12 B@34+12\n", ""},
         }) {
        write("inner/outer.jrxml", {detail(10, subreport(c.name, one)), "", head});
        EXPECT_EQ(printed("inner/outer.jrxml", {{"which", Value("a.jrxml")}}), c.printed) << c.name;
        const std::string told = warnings.empty() ? "" : warnings.front();
        EXPECT_TRUE(*c.warning == '\0' ? told.empty() : told.find(c.warning) != std::string::npos) << told;
    }
    write("outer.jrxml", {detail(10, subreport("$P{which}", one)), "", head});
    EXPECT_EQ(printed("outer.jrxml", {{"which", Value("broken.jrxml")}}), "\n");
    EXPECT_NE(warnings.at(0).find("there is no field 'gone'; the place stays empty"), std::string::npos) << warnings[0];
    EXPECT_EQ(printed("outer.jrxml"), "\n");
    EXPECT_EQ(warnings, std::vector<std::string>{"a subreport has no name in a row; its place stays empty"});
}

TEST_F(Subreports, WhatCannotBeGivenBackIsTold)
{
    write("inner.jrxml", {detail(12, text_field("\"x\"", 0, 12)), "", ""});
    const std::string inside =
        R"(<returnValue subreportVariable="REPORT_COUNT" toVariable="gone"/>)"
        R"(<returnValue subreportVariable="REPORT_COUNT" toVariable="mean" calculation="Average"/>)";
    write("outer.jrxml", {band("title", 10, subreport("\"inner.jrxml\"", inside)), "",
                          R"(<variable name="mean" calculation="System" class="java.lang.Integer"/>)"});
    printed("outer.jrxml");
    ASSERT_EQ(warnings.size(), 2U);
    EXPECT_NE(warnings[0].find("there is no variable 'gone' for a return value"), std::string::npos) << warnings[0];
    EXPECT_NE(warnings[1].find("not handed back as an average"), std::string::npos) << warnings[1];
    const std::string unknown = R"(<returnValue subreportVariable="none" toVariable="mean"/>)";
    write("outer.jrxml", {band("title", 10, subreport("\"inner.jrxml\"", unknown)), "",
                          R"(<variable name="mean" calculation="System" class="java.lang.Integer"/>)"});
    EXPECT_THROW(printed("outer.jrxml"), DefinitionError);
}

TEST(Charts, OverASubDatasetShowItsRows)
{
    const std::string chart =
        R"(<element kind="chart" chartType="bar" x="0" y="0" width="180" height="100"><dataset kind="category">)" +
        std::string(R"(<dataset>)") + run(R"(<parameter name="group"><expression>"a"</expression></parameter>)") +
        R"(</dataset><series><seriesExpression>"s"</seriesExpression><categoryExpression>$F{name}</categoryExpression>)"
        R"(<valueExpression>$V{REPORT_COUNT}</valueExpression></series></dataset><plot/></element>)";
    const auto result = filled_with_people({band("title", 100, chart), "", kHead});
    std::set<std::string> labels;
    for (const auto& item : std::get<Graphic>(result.pages.at(0).elements.at(0).content).drawing->items) {
        if (const auto* label = std::get_if<Label>(&item)) labels.insert(label->text);
    }
    EXPECT_TRUE(labels.contains("Ada") && labels.contains("Cy"));
    EXPECT_FALSE(labels.contains("Ben"));
}

}  // namespace
}  // namespace velora::engine
