#include "engine/definition/reader.h"

#include <filesystem>
#include <fstream>

#include "model_text.h"

namespace velora::engine {
namespace {

using testing::ModelText;

model::Definition read(const std::string& xml)
{
    std::vector<Warning> warnings;
    auto definition = read_definition(xml, warnings);
    for (const auto& warning : warnings) ADD_FAILURE() << warning.line();
    return definition;
}

/// One definition in the current form and the same in the classic one.
constexpr const char* kCurrent =
    R"xml(<jasperReport name="r" language="java" columnCount="2" pageWidth="400" pageHeight="500" columnWidth="170" columnSpacing="10" leftMargin="10" rightMargin="40" summaryNewPage="true" printOrder="Horizontal" whenNoDataType="NoDataSection">
  <style name="Base" default="true" fontName="DejaVu Sans" fontSize="9.0" bold="true" hTextAlign="Right">
    <box leftPadding="2"><pen lineWidth="0.5" lineColor="#FF0000"/></box>
    <paragraph lineSpacing="1_1_2" firstLineIndent="3"/>
  </style>
  <style name="Row" style="Base" mode="Opaque" pattern="#,##0.00" blankWhenNull="true">
    <conditionalStyle backcolor="#EEEEEE" italic="true"><conditionExpression><![CDATA[$V{REPORT_COUNT} % 2 == 0]]></conditionExpression></conditionalStyle>
  </style>
  <parameter name="Title" class="java.lang.String" forPrompting="false"><defaultValueExpression><![CDATA["T"]]></defaultValueExpression></parameter>
  <query language="SQL"><![CDATA[select a from b where c = $P{Title}]]></query>
  <field name="a" class="java.math.BigDecimal"><description>amount</description></field>
  <sortField name="a" order="Descending"/>
  <variable name="total" class="java.math.BigDecimal" calculation="Sum" resetType="Group" resetGroup="g"><expression><![CDATA[$F{a}]]></expression><initialValueExpression><![CDATA[BigDecimal.ZERO]]></initialValueExpression></variable>
  <filterExpression><![CDATA[$F{a} != null]]></filterExpression>
  <group name="g" keepTogether="true" reprintHeaderOnEachPage="true" footerPosition="StackAtBottom" minDetailsToStartFromTop="2">
    <expression><![CDATA[$F{a}]]></expression>
    <groupHeader><band height="20"><element kind="staticText" x="0" y="0" width="50" height="20" style="Row" rotation="Left"><text><![CDATA[ A & B ]]></text></element></band></groupHeader>
  </group>
  <title height="100" splitType="Prevent">
    <printWhenExpression><![CDATA[true]]></printWhenExpression>
    <element kind="line" x="0" y="1" width="100" height="1" direction="BottomUp"><pen lineWidth="2.0" lineStyle="Dashed"/></element>
    <element kind="frame" x="5" y="10" width="90" height="60" printWhenGroupChanges="g">
      <element kind="image" x="0" y="0" width="20" height="20" hImageAlign="Center" evaluationTime="Report"><expression><![CDATA["logo.png"]]></expression></element>
    </element>
    <element kind="chart" chartType="bar" x="0" y="70" width="90" height="30" showLegend="false" titleColor="#00FF00" evaluationTime="Group" evaluationGroup="g">
      <titleFont size="14.0"/>
      <titleExpression><![CDATA["Bars"]]></titleExpression>
      <dataset kind="category"><datasetRun subDataset="D"/><series><seriesExpression>"s"</seriesExpression><categoryExpression>$F{k}</categoryExpression><valueExpression>$F{n}</valueExpression></series></dataset>
      <plot orientation="Horizontal" showLabels="true"><seriesColor order="1" color="#112233"/><categoryAxisLabelExpression>"c"</categoryAxisLabelExpression><valueAxisLabelExpression>"v"</valueAxisLabelExpression></plot>
    </element>
  </title>
  <dataset name="D"><field name="k"/><field name="n" class="java.lang.Integer"/></dataset>
  <detail>
    <band height="20">
      <element kind="textField" uuid="u" key="k" x="1" y="2" width="30" height="10" positionType="Float" stretchType="ContainerHeight" printRepeatedValues="false" removeLineWhenBlank="true" textAdjust="StretchHeight" evaluationTime="Auto" vTextAlign="Middle" fontSize="7.5" markup="html" linkType="Reference" bookmarkLevel="1">
        <expression><![CDATA[$F{a}]]></expression>
        <printWhenExpression><![CDATA[$F{a} != null]]></printWhenExpression>
        <anchorNameExpression>"here"</anchorNameExpression>
        <hyperlinkReferenceExpression>"http://x"</hyperlinkReferenceExpression>
      </element>
      <element kind="break" x="0" y="15" width="10" height="1" type="Column"/>
    </band>
    <band height="5"/>
  </detail>
</jasperReport>)xml";

constexpr const char* kClassic = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE jasperReport PUBLIC "-//Reports//DTD Report Design//EN" "http://reports.example/dtd/jasperreport.dtd">
<jasperReport xmlns="http://reports.example/definition" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:schemaLocation="a b" name="r" language="java" columnCount="2" pageWidth="400" pageHeight="500" columnWidth="170" columnSpacing="10" leftMargin="10" rightMargin="40" isSummaryNewPage="true" printOrder="Horizontal" whenNoDataType="NoDataSection">
  <style name="Base" isDefault="true" fontName="DejaVu Sans" fontSize="9" isBold="true" hTextAlign="Right">
    <box leftPadding="2"><pen lineWidth="0.5" lineColor="red"/></box>
    <paragraph lineSpacing="1_1_2" firstLineIndent="3"/>
  </style>
  <style name="Row" style="Base" mode="Opaque" pattern="#,##0.00" isBlankWhenNull="true">
    <conditionalStyle><conditionExpression><![CDATA[$V{REPORT_COUNT} % 2 == 0]]></conditionExpression><style backcolor="#EEEEEE" isItalic="true"/></conditionalStyle>
  </style>
  <subDataset name="D"><field name="k"/><field name="n" class="java.lang.Integer"/></subDataset>
  <parameter name="Title" class="java.lang.String" isForPrompting="false"><defaultValueExpression><![CDATA["T"]]></defaultValueExpression></parameter>
  <queryString language="SQL"><![CDATA[select a from b where c = $P{Title}]]></queryString>
  <field name="a" class="java.math.BigDecimal"><fieldDescription><![CDATA[amount]]></fieldDescription></field>
  <sortField name="a" order="Descending"/>
  <variable name="total" class="java.math.BigDecimal" calculation="Sum" resetType="Group" resetGroup="g"><variableExpression><![CDATA[$F{a}]]></variableExpression><initialValueExpression><![CDATA[BigDecimal.ZERO]]></initialValueExpression></variable>
  <filterExpression><![CDATA[$F{a} != null]]></filterExpression>
  <group name="g" keepTogether="true" isReprintHeaderOnEachPage="true" footerPosition="StackAtBottom" minDetailsToStartFromTop="2">
    <groupExpression><![CDATA[$F{a}]]></groupExpression>
    <groupHeader><band height="20"><staticText><reportElement style="Row" x="0" y="0" width="50" height="20"/><textElement rotation="Left"/><text><![CDATA[ A & B ]]></text></staticText></band></groupHeader>
  </group>
  <title><band height="100" splitType="Prevent">
    <printWhenExpression><![CDATA[true]]></printWhenExpression>
    <line direction="BottomUp"><reportElement x="0" y="1" width="100" height="1"/><graphicElement><pen lineWidth="2.0" lineStyle="Dashed"/></graphicElement></line>
    <frame><reportElement x="5" y="10" width="90" height="60" printWhenGroupChanges="g"/>
      <image hImageAlign="Center" evaluationTime="Report"><reportElement x="0" y="0" width="20" height="20"/><imageExpression class="java.lang.String"><![CDATA["logo.png"]]></imageExpression></image>
    </frame>
    <barChart>
      <chart isShowLegend="false" evaluationTime="Group" evaluationGroup="g"><reportElement x="0" y="70" width="90" height="30"/>
        <chartTitle color="#00FF00"><font size="14"/><titleExpression><![CDATA["Bars"]]></titleExpression></chartTitle><chartSubtitle/><chartLegend/></chart>
      <categoryDataset><dataset><datasetRun subDataset="D"/></dataset><categorySeries><seriesExpression>"s"</seriesExpression><categoryExpression>$F{k}</categoryExpression><valueExpression>$F{n}</valueExpression></categorySeries></categoryDataset>
      <barPlot isShowLabels="true"><plot orientation="Horizontal"><seriesColor seriesOrder="1" color="#112233"/></plot><categoryAxisLabelExpression>"c"</categoryAxisLabelExpression><valueAxisLabelExpression>"v"</valueAxisLabelExpression></barPlot>
    </barChart>
  </band></title>
  <detail>
    <band height="20">
      <textField isStretchWithOverflow="true" evaluationTime="Auto" hyperlinkType="Reference" bookmarkLevel="1">
        <reportElement uuid="u" key="k" x="1" y="2" width="30" height="10" positionType="Float" stretchType="RelativeToBandHeight" isPrintRepeatedValues="false" isRemoveLineWhenBlank="true"><printWhenExpression><![CDATA[$F{a} != null]]></printWhenExpression></reportElement>
        <textElement verticalAlignment="Middle" markup="html"><font size="7.5"/></textElement>
        <textFieldExpression class="java.math.BigDecimal"><![CDATA[$F{a}]]></textFieldExpression>
        <anchorNameExpression>"here"</anchorNameExpression>
        <hyperlinkReferenceExpression>"http://x"</hyperlinkReferenceExpression>
      </textField>
      <break type="Column"><reportElement x="0" y="15" width="10" height="1"/></break>
    </band>
    <band height="5"/>
  </detail>
</jasperReport>)xml";

TEST(Reader, BothWrittenFormsGiveOneModel)
{
    const auto current = read(kCurrent);
    EXPECT_EQ(ModelText().of(current), ModelText().of(read(kClassic)));
    EXPECT_EQ(current.page.column_width, 170);
    EXPECT_EQ(current.data.query.language, "sql");
    ASSERT_EQ(current.details.size(), 2U);
    const auto& field = current.details[0].elements.at(0);
    const auto& body = std::get<model::TextField>(field.body);
    EXPECT_EQ(body.adjust, model::TextAdjust::StretchHeight);
    EXPECT_EQ(body.link.bookmark_level, 1);
    EXPECT_EQ(field.attributes.font.size, 7.5F);
    EXPECT_EQ(std::get<model::StaticText>(current.groups[0].headers[0].elements[0].body).text, " A & B ");
    const auto& chart = std::get<model::Chart>(current.title->elements.at(2).body);
    EXPECT_EQ(chart.series.at(0).value.text, "$F{n}");
    EXPECT_EQ(chart.colors.at(1), (Color{0x11, 0x22, 0x33}));
    EXPECT_EQ(chart.colors.at(0).alpha, 0) << "a colour that is not given";
}

TEST(Reader, ExpressionsKeepThePlaceOfTheirFirstCharacter)
{
    const auto definition = read(
        "<jasperReport name='é'>\n <variable name='v'><expression><![CDATA[\n   $F{a} +\n "
        "1]]></expression></variable>\n"
        " <variable name='w'>\n  <expression>é + 1</expression></variable></jasperReport>");
    EXPECT_EQ(definition.data.variables[0].expression.text, "$F{a} +\n 1");
    EXPECT_EQ(definition.data.variables[0].expression.place, (Position{3, 4}));
    EXPECT_EQ(definition.data.variables[1].expression.place, (Position{6, 15}));
}

TEST(Reader, EncodingsOfOldFilesAreRead)
{
    const std::string latin = "<?xml version='1.0' encoding='windows-1252'?>\n<jasperReport name='Caf\xE9'/>";
    EXPECT_EQ(read(latin).name, "Café");
    std::vector<Warning> warnings;
    EXPECT_EQ(read_definition("<jasperReport name='Caf\xE9'/>", warnings).name, "Café");
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_THAT(warnings[0].text, ::testing::HasSubstr("Latin-1"));
    std::string wide = "\xFF\xFE";
    for (const char c : std::string("<jasperReport name='x'/>")) wide += std::string{c, '\0'};
    EXPECT_EQ(read(wide).name, "x");
    EXPECT_EQ(read("\xEF\xBB\xBF<jasperReport name='é'/>").name, "é");
}

TEST(Reader, ReadsComponentsSubreportsAndTheOldestSpellings)
{
    const auto definition = read(R"xml(<jasperReport name="r" xmlns:jr="urn:c">
  <reportFont name="Small" isDefault="true" fontName="Arial" size="7"/>
  <subDataset name="D"><field name="n"/></subDataset>
  <detail><band height="100" isSplitAllowed="false">
    <componentElement><reportElement x="0" y="0" width="100" height="20"/>
      <jr:list printOrder="Vertical"><datasetRun subDataset="D"><datasetParameter name="p"><datasetParameterExpression>1</datasetParameterExpression></datasetParameter></datasetRun>
        <jr:listContents height="14" width="100"><textField><reportElement x="0" y="0" width="50" height="14"/><textFieldExpression>$F{n}</textFieldExpression></textField></jr:listContents></jr:list></componentElement>
    <element kind="component" x="0" y="20" width="100" height="20"><component kind="table"><datasetRun subDataset="D"/>
      <column kind="group" width="100"><columnHeader height="10"/><column kind="single" width="100"><detailCell height="12" style="S"><element kind="staticText" width="5" height="5"><text>x</text></element></detailCell></column></column></component></element>
    <element kind="component" x="0" y="40" width="50" height="20"><component kind="barcode4j:QRCode" errorCorrectionLevel="M"><codeExpression>$F{n}</codeExpression></component></element>
    <componentElement><reportElement x="0" y="60" width="50" height="20"/><jr:Code128 moduleWidth="1.5" textPosition="none"><jr:codeExpression>"1"</jr:codeExpression></jr:Code128></componentElement>
    <subreport><reportElement x="0" y="80" width="50" height="20"/><subreportParameter name="p"><subreportParameterExpression>$F{n}</subreportParameterExpression></subreportParameter><returnValue subreportVariable="a" toVariable="b" calculation="Sum"/><subreportExpression class="java.lang.String">"s.rpt"</subreportExpression></subreport>
    <rectangle radius="4"><reportElement x="0" y="0" width="5" height="5"/><graphicElement pen="Thin"/></rectangle>
    <textField pattern="0.0"><reportElement x="0" y="0" width="5" height="5"/><box border="1Point" padding="3"/><textElement textAlignment="Center" lineSpacing="Double"><font reportFont="Small" isUnderline="true"/></textElement><textFieldExpression>1</textFieldExpression><patternExpression>"0"</patternExpression></textField>
  </band></detail>
</jasperReport>)xml");
    const auto& band = definition.details.at(0);
    EXPECT_EQ(band.split, model::SplitType::Prevent);
    const auto& list = std::get<model::ListComponent>(band.elements.at(0).body);
    EXPECT_EQ(list.run.parameters.at(0).second.text, "1");
    EXPECT_EQ(list.contents.size(), 1U);
    EXPECT_EQ(list.content_height, 14);
    const auto& table = std::get<model::TableComponent>(band.elements.at(1).body);
    EXPECT_EQ(table.columns.at(0).columns.at(0).detail->contents.size(), 1U);
    EXPECT_EQ(std::get<model::Barcode>(band.elements.at(2).body).type, "QRCode");
    EXPECT_FALSE(std::get<model::Barcode>(band.elements.at(3).body).show_text);
    const auto& subreport = std::get<model::Subreport>(band.elements.at(4).body);
    EXPECT_EQ(subreport.parameters.at(0).second.text, "$F{n}");
    EXPECT_EQ(subreport.returns.at(0).to_variable, "b");
    EXPECT_EQ(band.elements.at(5).attributes.pen.width, 0.5F);
    EXPECT_EQ(band.elements.at(5).attributes.radius, 4);
    const auto& text = band.elements.at(6);
    EXPECT_EQ(text.attributes.box.padding, 3);
    EXPECT_EQ(text.attributes.paragraph.line_spacing, LineSpacing::Double);
    EXPECT_EQ(text.attributes.font.underline, true);
    EXPECT_EQ(std::get<model::TextField>(text.body).pattern.text, "\"0\"");
}

TEST(Reader, WhatItDoesNotKnowIsAWarningWithItsPlace)
{
    struct Case {
        const char* why;
        const char* inside;
        Position place;
        const char* text;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"an attribute", "<style name='s' sparkle='1'/>", {2, 17}, "'sparkle' is not known"},
             {"an element", "<glitter><style/></glitter>", {2, 1}, "'glitter' is not known"},
             {"a value", "<style name='s' mode='Foggy'/>", {2, 17}, "'mode' is \"Foggy\": this value is not known"},
             {"no number", "<style name='s' radius='big'/>", {2, 17}, "this is no number"},
             {"no colour", "<style name='s' forecolor='#12'/>", {2, 17}, "this is no colour"},
             {"neither true nor false", "<style name='s' isBold='maybe'/>", {2, 17}, "neither true nor false"},
             {"a negative width", "<title height='9'><element kind='line' width='-5'/></title>", {2, 40}, "0 is taken"},
             {"a gigantic height", "<title height='1e300'/>", {2, 8}, "100000 is taken"},
             {"a title beside its chart",
              "<title height='9'><element kind='chart' chartType='pie' titlePosition='Left'/></title>",
              {2, 57},
              "titles stand on top"},
             {"no number at all", "<title height='nan'/>", {2, 8}, "this is no number"},
             {"an unknown style", "<title><element kind='line' style='x'/></title>", {2, 8}, "no style 'x'"},
             {"an unknown parent", "<style name='s' style='x'/>", {2, 1}, "no style 'x'"},
             {"declared twice", "<field name='a'/><field name='a'/>", {2, 18}, "declared twice"},
             {"an undrawn kind", "<title><element kind='crosstab'/></title>", {2, 8}, "'crosstab' are not drawn"},
             {"a kind of nobody", "<title><element kind='hologram'/></title>", {2, 8}, "'hologram' are not drawn"},
             {"an undrawn component",
              "<title><element kind='component'><component kind='x:map' a='b'/></element></title>",
              {2, 34},
              "'map' are not drawn"},
             {"below the band",
              "<title height='5'><element kind='line' height='9'/></title>",
              {2, 19},
              "4 points below"}}) {
        SCOPED_TRACE(c.why);
        std::vector<Warning> warnings;
        read_definition("<jasperReport name='r'>\n" + std::string(c.inside) + "</jasperReport>", warnings);
        ASSERT_EQ(warnings.size(), 1U) << (warnings.size() > 1 ? warnings[1].line() : "");
        EXPECT_EQ(warnings[0].place, c.place) << warnings[0].line();
        EXPECT_THAT(warnings[0].line(), ::testing::HasSubstr(c.text));
    }
}

std::string nested(const std::string& open, const std::string& close, int times)
{
    std::string out;
    for (int at = 0; at < times; ++at) out += open;
    for (int at = 0; at < times; ++at) out += close;
    return out;
}

TEST(Reader, WhatCannotBeReadSaysWhichElementWhereAndWhy)
{
    struct Case {
        std::string xml;
        Position place;
        const char* text;
    };
    const auto report = [](const std::string& inside) {
        return "<jasperReport name='r'>\n" + inside + "</jasperReport>";
    };
    for (const auto& c : std::initializer_list<Case>{
             {"", {1, 1}, "no well-formed XML"},
             {"<jasperReport>\n  <title></jasperReport>", {2, 12}, "no well-formed XML"},
             {"<?xml version='1.0'?>\n<html/>", {2, 1}, "html: this is no report definition"},
             {report("<field class='x'/>"), {2, 1}, "field: the attribute 'name' is missing"},
             {report("<style name='a' style='b'/><style name='b' style='c'/><style name='c' style='b'/>"),
              {2, 28},
              "inherit from each other: b, c, b"},
             {report("<style name='a' style='a'/>"), {2, 1}, "a, a"},
             {report("<query>select $P!{x}</query>"), {2, 1}, "query: $P!{} pastes text"},
             {report("<variable name='v' resetType='Group' resetGroup='g'/>"), {2, 1}, "no group 'g'"},
             {report("<variable name='v' incrementType='Group'/>"), {2, 1}, "names none"},
             {report("<sortField name='x'/>"), {2, 1}, "no 'x' to sort by"},
             {report("<group name='g'/><group name='g'/>"), {2, 18}, "two groups 'g'"},
             {report("<title><element width='3'/></title>"), {2, 8}, "'kind' is missing"},
             {report("<title><element kind='textField' evaluationTime='Group'/></title>"), {2, 8}, "names none"},
             {"<jasperReport name='r' leftMargin='600'/>", {1, 1}, "no room on the page"},
             {"<jasperReport name='r' columnCount='900'/>", {1, 1}, "the columns have no room"},
             {report(nested("<title>", "</title>", 100000)), {2, 0}, "nested too deeply"}}) {
        SCOPED_TRACE(c.xml.substr(0, 100));
        std::vector<Warning> warnings;
        try {
            read_definition(c.xml, warnings);
            ADD_FAILURE() << "was read";
        } catch (const DefinitionError& error) {
            EXPECT_EQ(error.position().line, c.place.line) << error.what();
            if (c.place.column > 0) {
                EXPECT_EQ(error.position().column, c.place.column) << error.what();
            }
            EXPECT_THAT(std::string(error.what()), ::testing::HasSubstr(c.text));
        }
    }
}

TEST(Reader, TemplatesJoinTheirIncludesAndStayInTheirFolder)
{
    const auto folder = std::filesystem::path(VELORA_TEST_SCRATCH) / "templates";
    std::filesystem::create_directories(folder / "inner");
    const auto write = [&](const char* name, const std::string& inside) {
        std::ofstream(folder / name) << "<jasperTemplate>" << inside << "</jasperTemplate>";
        return folder / name;
    };
    std::vector<Warning> warnings;
    write("inner/base.jrtx", "<style name='Base' bold='true'/>");
    const auto styles = read_template_file(
        write("a.jrtx", "<template>inner/base.jrtx</template><style name='A' style='Base'/>"), warnings);
    ASSERT_EQ(styles.size(), 2U);
    EXPECT_EQ(styles[0].name, "Base");
    EXPECT_EQ(styles[1].parent, "Base");
    EXPECT_THROW(read_template_file(write("b.jrtx", "<template>../a.jrtx</template>"), warnings), DefinitionError);
    EXPECT_THROW(read_template_file(write("c.jrtx", "<template>c.jrtx</template>"), warnings), DefinitionError);
    EXPECT_THROW(read_template_file(folder / "absent.jrtx", warnings), DefinitionError);
}

}  // namespace
}  // namespace velora::engine
