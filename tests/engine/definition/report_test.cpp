#include <filesystem>
#include <fstream>

#include "engine/definition/checks.h"
#include "engine/definition/reader.h"

namespace velora::engine {
namespace {

using namespace model;

Definition read(const std::string& xml)
{
    std::vector<Warning> warnings;
    auto definition = read_definition(xml, warnings);
    for (const auto& warning : warnings) ADD_FAILURE() << warning.line();
    return definition;
}

/// The warnings' lines of a report with the given inside, which starts on line 2.
std::vector<std::string> warnings_of(const std::string& inside, const std::string& attributes = "")
{
    std::vector<Warning> warnings;
    read_definition("<jasperReport name='r' " + attributes + ">\n" + inside + "</jasperReport>", warnings);
    std::vector<std::string> lines;
    for (const auto& warning : warnings) lines.push_back(warning.line());
    return lines;
}

std::string refusal_of(const std::string& inside, const std::string& attributes = "")
{
    std::vector<Warning> warnings;
    try {
        read_definition("<jasperReport name='r' " + attributes + ">\n" + inside + "</jasperReport>", warnings);
    } catch (const DefinitionError& error) {
        return error.what();
    }
    return "";
}

TEST(Report, PageAttributesInBothSpellings)
{
    for (const char* prefix : {"", "is"}) {
        const auto flag = [&](std::string name) {
            if (*prefix != '\0') name[0] = static_cast<char>(name[0] - 'a' + 'A');
            return std::string(prefix) + name + "='true' ";
        };
        const auto report =
            read("<jasperReport name='r' orientation='Landscape' columnDirection='RTL' " + flag("titleNewPage") +
                 flag("summaryNewPage") + flag("summaryWithPageHeaderAndFooter") + flag("floatColumnFooter") +
                 flag("ignorePagination") + "/>");
        EXPECT_TRUE(report.title_new_page && report.summary_new_page && report.summary_with_page_header_and_footer);
        EXPECT_TRUE(report.float_column_footer && report.ignore_pagination) << prefix;
        EXPECT_EQ(report.page.orientation, Orientation::Landscape);
        EXPECT_TRUE(report.page.right_to_left);
    }
    const auto plain = read("<jasperReport name='r'/>");
    EXPECT_EQ(plain.page.width, 595) << "a page that says nothing is an upright A4";
    EXPECT_EQ(plain.page.height, 842);
    EXPECT_EQ(plain.page.column_width, 555);
    EXPECT_FALSE(plain.when_no_data) << "and prints nothing without rows";
}

TEST(Report, EveryBandIsFoundInBothForms)
{
    const auto sections = {"background", "title",          "pageHeader", "columnHeader", "columnFooter",
                           "pageFooter", "lastPageFooter", "summary",    "noData"};
    std::string current = "<jasperReport name='r'>", classic = current;
    int height = 10;
    for (const std::string section : sections) {
        ++height;
        current += "<" + section + " height='" + std::to_string(height) + "' splitType='Immediate'/>";
        classic +=
            "<" + section + "><band height='" + std::to_string(height) + "' splitType='Immediate'/></" + section + ">";
    }
    for (const auto& report : {read(current + "</jasperReport>"), read(classic + "</jasperReport>")}) {
        int expected = 10;
        for (const auto* band :
             {&report.background, &report.title, &report.page_header, &report.column_header, &report.column_footer,
              &report.page_footer, &report.last_page_footer, &report.summary, &report.no_data}) {
            ASSERT_TRUE(*band);
            EXPECT_EQ((*band)->height, ++expected);
            EXPECT_EQ((*band)->split, SplitType::Immediate);
        }
    }
}

TEST(Report, GroupsInBothSpellings)
{
    for (const std::string prefix : {"", "is"}) {
        const auto flag = [&](std::string name) {
            if (!prefix.empty()) name[0] = static_cast<char>(name[0] - 'a' + 'A');
            return prefix + name + "='true' ";
        };
        const std::string expression = prefix.empty() ? "expression" : "groupExpression";
        const auto report =
            read("<jasperReport name='r'><group name='g' " + flag("startNewPage") + flag("startNewColumn") +
                 flag("resetPageNumber") + flag("reprintHeaderOnEachPage") +
                 "reprintHeaderOnEachColumn='true' preventOrphanFooter='true' minHeightToStartNewPage='40' "
                 "footerPosition='CollateAtBottom'><" +
                 expression + ">$F{a}</" + expression +
                 "><groupHeader><band height='1'/><band height='2'/></groupHeader><groupFooter><band height='3'/>"
                 "</groupFooter></group></jasperReport>");
        const auto& group = report.groups.at(0);
        EXPECT_TRUE(group.start_new_page && group.start_new_column && group.reset_page_number);
        EXPECT_TRUE(group.reprint_header_on_each_page && group.reprint_header_on_each_column);
        EXPECT_TRUE(group.prevent_orphan_footer);
        EXPECT_EQ(group.min_height_to_start_new_page, 40);
        EXPECT_EQ(group.footer_position, FooterPosition::CollateAtBottom);
        EXPECT_EQ(group.headers.size(), 2U);
        EXPECT_EQ(group.footers.size(), 1U);
        EXPECT_EQ(group.expression.text, "$F{a}");
    }
}

TEST(Report, VariablesKnowEveryCalculationAndMoment)
{
    struct Case {
        const char* written;
        Calculation calculation;
    };
    for (const auto& c :
         {Case{"Nothing", Calculation::Nothing}, Case{"Count", Calculation::Count},
          Case{"DistinctCount", Calculation::DistinctCount}, Case{"Sum", Calculation::Sum},
          Case{"Average", Calculation::Average}, Case{"Lowest", Calculation::Lowest},
          Case{"Highest", Calculation::Highest}, Case{"StandardDeviation", Calculation::StandardDeviation},
          Case{"Variance", Calculation::Variance}, Case{"System", Calculation::System},
          Case{"First", Calculation::First}}) {
        const auto report = read(std::string("<jasperReport name='r'><variable name='v' calculation='") + c.written +
                                 "' resetType='Page' incrementType='Column'/></jasperReport>");
        EXPECT_EQ(report.data.variables.at(0).calculation, c.calculation) << c.written;
        EXPECT_EQ(report.data.variables.at(0).reset, Moment::Page);
        EXPECT_EQ(report.data.variables.at(0).increment, Moment::Column);
    }
}

TEST(Report, StylesInheritAndTheirConditionsKeepTheirOrder)
{
    const auto report = read(
        "<jasperReport name='r'>"
        "<style name='Child' style='Base' fontSize='8'>"
        "<conditionalStyle><conditionExpression>$F{a} == 1</conditionExpression><style bold='true'/></conditionalStyle>"
        "<conditionalStyle style='Other' italic='true'><conditionExpression>$F{a} == 2</conditionExpression>"
        "<box><pen lineWidth='1'/></box></conditionalStyle></style>"
        "<style name='Base' default='true' fontName='Serif'/><style name='Other'/></jasperReport>");
    const auto& child = report.styles.at(0);
    EXPECT_EQ(child.parent, "Base") << "a style may come before the one that it inherits from";
    ASSERT_EQ(child.conditions.size(), 2U);
    EXPECT_EQ(child.conditions[0].condition.text, "$F{a} == 1");
    EXPECT_EQ(child.conditions[0].attributes.font.bold, true);
    EXPECT_FALSE(child.conditions[0].attributes.font.italic) << "a condition sets what it names and nothing else";
    EXPECT_EQ(child.conditions[1].parent, "Other");
    EXPECT_EQ(child.conditions[1].attributes.box.pen.width, 1.0F);
    EXPECT_TRUE(report.styles.at(1).is_default);
}

TEST(Report, DatasetsBringTheirOwnParts)
{
    const auto report = read(
        "<jasperReport name='r'><subDataset name='D' whenResourceMissingType='Key'>"
        "<property name='velora.connection' value='x'/><parameter name='p'/>"
        "<queryString language='SQL'>select k from t where a = $P{p}</queryString><field name='k'/>"
        "<sortField name='n' type='Variable' order='Descending'/><variable name='n' resetType='Group' resetGroup='g'/>"
        "<filterExpression>$F{k} != null</filterExpression><group name='g'><groupExpression>$F{k}</groupExpression>"
        "</group></subDataset></jasperReport>");
    const auto& data = report.datasets.at(0);
    EXPECT_EQ(data.query.text.text, "select k from t where a = $P{p}");
    EXPECT_EQ(data.query.language, "sql");
    EXPECT_EQ(data.sort_fields.at(0).by, SortField::By::Variable);
    EXPECT_TRUE(data.sort_fields.at(0).descending);
    EXPECT_EQ(data.groups.at(0).expression.text, "$F{k}");
    EXPECT_EQ(data.filter.text, "$F{k} != null");
    EXPECT_EQ(data.when_resource_missing, MissingResource::Key);
    EXPECT_EQ(property_value(data.properties, "velora.connection"), "x");
}

TEST(Report, PutsRightWhatItCanAndSaysSo)
{
    using ::testing::ElementsAre;
    using ::testing::HasSubstr;
    EXPECT_THAT(warnings_of("", "columnWidth='900'"), ElementsAre(HasSubstr("555 is taken")));
    EXPECT_THAT(warnings_of("", "columnCount='0'"), ElementsAre(HasSubstr("1 is taken")));
    EXPECT_THAT(warnings_of("", "pageWidth='1e9'").front(), HasSubstr("100000 is taken"));
    EXPECT_THAT(warnings_of("", "scriptletClass='x.Y'"), ElementsAre(HasSubstr("scriptlets are not run")));
    EXPECT_THAT(warnings_of("<scriptlet name='s' class='x.Y'/>"), ElementsAre(HasSubstr("scriptlets are not run")));
    EXPECT_THAT(warnings_of("<title><band height='1'/><band height='2'/></title>"), ElementsAre(HasSubstr("one band")));
    EXPECT_THAT(warnings_of("<query>select a from b where $X{IN, a, p}</query>"), ElementsAre(HasSubstr("$X{}")));
    EXPECT_THAT(warnings_of("<title>\n  <element kind='chart' chartType='sparkle'/></title>"),
                ElementsAre(::testing::AllOf(HasSubstr("line 3"), HasSubstr("kind of chart is not known"))));
    EXPECT_THAT(warnings_of("<variable name='v' calculation='Median'/>"), ElementsAre(HasSubstr("'calculation'")));
    EXPECT_TRUE(warnings_of("<import value='java.util.*'/><property name='a' value='b'/>").empty());
    EXPECT_TRUE(warnings_of("<!-- a comment --><?pi x?>").empty());
    EXPECT_TRUE(warnings_of("", "uuid='x' xmlns='http://a' xmlns:xsi='http://b' xsi:schemaLocation='c'").empty());
}

TEST(Report, RefusesWhatCannotBeMeant)
{
    struct Case {
        const char* why;
        std::string inside;
        const char* reason;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"a chart reset by a group of nobody",
              "<title><element kind='chart' chartType='pie'><dataset resetType='Group' "
              "resetGroup='x'/></element></title>",
              "no group 'x'"},
             {"a chart incremented by one",
              "<title><element kind='chart' chartType='pie'><dataset incrementType='Group'/></element></title>",
              "names none"},
             {"a chart of a dataset of nobody",
              "<title><element kind='chart' chartType='pie'><dataset><datasetRun "
              "subDataset='x'/></dataset></element></title>",
              "no dataset 'x'"},
             {"a change of a group of nobody", "<title><element kind='line' printWhenGroupChanges='x'/></title>",
              "no group 'x'"},
             {"inside a frame",
              "<title><element kind='frame'><element kind='line' printWhenGroupChanges='x'/></element></title>",
              "no group 'x'"},
             {"in a group's footer",
              "<group name='g'><groupFooter><band><element kind='line' "
              "printWhenGroupChanges='x'/></band></groupFooter></group>",
              "no group 'x'"},
             {"a dataset's variable",
              "<dataset name='d'><variable name='v' resetType='Group' resetGroup='x'/></dataset>", "no group 'x'"},
             {"a dataset without a name", "<dataset/>", "'name' is missing"},
             {"a statement in a dataset", "<dataset name='d'><query>select $P!{x}</query></dataset>", "$P!{}"},
             {"a statement in the classic form", "<queryString><![CDATA[select a from $P!{table}]]></queryString>",
              "$P!{}"},
             {"a cycle of three", "<style name='a' style='b'/><style name='b' style='c'/><style name='c' style='a'/>",
              "a, b, c, a"},
             {"a variable to sort by that is a field", "<field name='f'/><sortField name='f' type='Variable'/>",
              "no 'f' to sort by"}}) {
        EXPECT_THAT(refusal_of(c.inside), ::testing::HasSubstr(c.reason)) << c.why;
    }
    std::string fields;
    for (int at = 0; at <= 10'000; ++at) fields += "<field name='f" + std::to_string(at) + "'/>";
    EXPECT_THAT(refusal_of(fields), ::testing::HasSubstr("more than 10,000"));
    std::string groups;
    for (int at = 0; at <= 1'000; ++at) groups += "<group name='g" + std::to_string(at) + "'/>";
    EXPECT_THAT(refusal_of(groups), ::testing::HasSubstr("more than 1,000 groups"));
    EXPECT_THAT(refusal_of("", "topMargin='500' bottomMargin='400'"), ::testing::HasSubstr("no room on the page"));
}

TEST(Report, ManyStylesInALongChainAndElementsOnOneLineAreRead)
{
    std::string styles, elements;
    for (int at = 0; at < 3000; ++at) {
        const auto number = std::to_string(at);
        styles += "<style name='s" + number + "'" + (at > 0 ? " style='s" + std::to_string(at - 1) + "'" : "") + "/>";
        elements += "<element kind='line' style='s" + number + "' width='1' height='1'/>";
    }
    const std::string begin = "<jasperReport name='é'>" + styles + "<title height='5'>";
    const auto column = begin.size() + elements.rfind('<');  // the é has two bytes and columns count from one
    const auto report = read(begin + elements + "</title></jasperReport>");
    EXPECT_EQ(report.styles.size(), 3000U);
    ASSERT_EQ(report.title->elements.size(), 3000U);
    EXPECT_EQ(report.title->elements.back().place.line, 1U);
    EXPECT_EQ(report.title->elements.back().place.column, column) << "columns are told far behind the line's start";
}

class TemplateFiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder = std::filesystem::path(VELORA_TEST_SCRATCH) / "template-files" /
                 ::testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder / "inner");
    }

    std::filesystem::path write(const std::string& name, const std::string& inside) const
    {
        std::ofstream(folder / name) << "<jasperTemplate>\n" << inside << "</jasperTemplate>";
        return folder / name;
    }

    std::string refusal(const std::filesystem::path& file)
    {
        try {
            read_template_file(file, warnings);
        } catch (const DefinitionError& error) {
            return error.what();
        }
        return "";
    }

    std::filesystem::path folder;
    std::vector<Warning> warnings;
};

TEST_F(TemplateFiles, StayInTheirFolderByEveryWayOfNamingOneOutside)
{
    write("outside.jrtx", "<style name='x'/>");
    for (const char* include : {"../outside.jrtx", "./../outside.jrtx", "a/../../outside.jrtx", "..", "../"}) {
        const auto file = write("inner/a.jrtx", std::string("<template>") + include + "</template>");
        EXPECT_THAT(refusal(file), ::testing::HasSubstr("outside the folder")) << include;
    }
    const auto absolute = write("inner/b.jrtx", "<template>" + (folder / "outside.jrtx").string() + "</template>");
    EXPECT_EQ(read_template_file(absolute, warnings).size(), 1U) << "an absolute name is meant";
    const auto around = write("inner/c.jrtx", "<template>x/../d.jrtx</template>");
    write("inner/d.jrtx", "<style name='y'/>");
    EXPECT_EQ(read_template_file(around, warnings).size(), 1U) << "a way out and back in stays inside";
}

TEST_F(TemplateFiles, IncludeEachOtherWithoutEndOrMeasure)
{
    write("a.jrtx", "<template>b.jrtx</template>");
    EXPECT_THAT(refusal(write("b.jrtx", "<template>a.jrtx</template>")), ::testing::HasSubstr("includes itself"));
    for (int at = 0; at < 40; ++at) {
        const auto next = "<template>t" + std::to_string(at + 1) + ".jrtx</template>";
        write("t" + std::to_string(at) + ".jrtx", next + next);
    }
    write("t40.jrtx", "<style name='x'/>");
    EXPECT_THAT(refusal(folder / "t0.jrtx"), ::testing::HasSubstr("too many templates"))
        << "two includes each, forty deep";
}

TEST_F(TemplateFiles, SayWhatIsWrongInThem)
{
    const auto styles = read_template_file(write("a.jrtx", "<style name='s' sparkle='1'/><glitter/>"), warnings);
    EXPECT_EQ(styles.size(), 1U);
    ASSERT_EQ(warnings.size(), 2U);
    EXPECT_EQ(warnings[0].place.line, 2U);
    EXPECT_THAT(warnings[0].line(), ::testing::HasSubstr("'sparkle' is not known"));
    std::ofstream(folder / "report.jrtx") << "<jasperReport name='r'/>";
    EXPECT_THAT(refusal(folder / "report.jrtx"), ::testing::HasSubstr("style template"));
    EXPECT_THAT(refusal(folder), ::testing::HasSubstr("cannot read")) << "a folder is no template";
}

TEST_F(TemplateFiles, JoinTheStylesOfAReportAndAreCheckedWithThem)
{
    const auto report = read(
        "<jasperReport name='r'><template>\"a.jrtx\"</template><style name='Row' style='Base'/>"
        "<title><element kind='line' style='Base'/></title></jasperReport>");
    auto styles = read_template_file(write("a.jrtx", "<style name='Base' style='Row'/>"), warnings);
    styles.insert(styles.end(), report.styles.begin(), report.styles.end());
    EXPECT_THROW(check_styles(styles, warnings), DefinitionError) << "a cycle through a template";
}

}  // namespace
}  // namespace velora::engine
