#include <functional>

#include "engine/definition/reader.h"

namespace velora::engine {
namespace {

using namespace model;

/// A report of one band with what stands inside it, read without a warning.
model::Element only_element(const std::string& xml)
{
    std::vector<Warning> warnings;
    const auto definition = read_definition(
        "<jasperReport name='r'><group name='g'/><detail><band height='100'>" + xml + "</band></detail></jasperReport>",
        warnings);
    for (const auto& warning : warnings) ADD_FAILURE() << warning.line();
    return definition.details.at(0).elements.at(0);
}

/// The same thing in both written forms, and what it must have become.
struct Pair {
    const char* why;
    const char* current;
    const char* classic;
    std::function<bool(const Element&)> holds;
};

void check(std::initializer_list<Pair> pairs)
{
    for (const auto& pair : pairs) {
        SCOPED_TRACE(pair.why);
        EXPECT_TRUE(pair.holds(only_element(pair.current))) << pair.current;
        EXPECT_TRUE(pair.holds(only_element(pair.classic))) << pair.classic;
    }
}

template <class Body>
const Body& body_of(const Element& element)
{
    return std::get<Body>(element.body);
}

TEST(Attributes, OfEveryElementInBothForms)
{
    // clang-format off
    check({
        {"a negative place", "<element kind='line' x='-3' y='-4' width='1' height='1'/>",
         "<line><reportElement x='-3' y='-4' width='1' height='1'/></line>",
         [](const Element& e) { return e.x == -3 && e.y == -4; }},
        {"a place with a fraction is rounded", "<element kind='line' x='2.6' y='0' width='1' height='1'/>",
         "<line><reportElement x='2.6' y='0' width='1' height='1'/></line>",
         [](const Element& e) { return e.x == 3; }},
        {"to the bottom of the band", "<element kind='line' positionType='FixRelativeToBottom'/>",
         "<line><reportElement positionType='FixRelativeToBottom'/></line>",
         [](const Element& e) { return e.position == PositionType::FixRelativeToBottom; }},
        {"as high as the tallest of its group", "<element kind='line' stretchType='ElementGroupHeight'/>",
         "<line><reportElement stretchType='RelativeToTallestObject'/></line>",
         [](const Element& e) { return e.stretch == StretchType::ElementGroupHeight; }},
        {"when it overflows", "<element kind='line' printWhenDetailOverflows='true'/>",
         "<line><reportElement isPrintWhenDetailOverflows='true'/></line>",
         [](const Element& e) { return e.print_when_detail_overflows && !e.print_in_first_whole_band; }},
        {"in the first whole band", "<element kind='line' printInFirstWholeBand='true'/>",
         "<line><reportElement isPrintInFirstWholeBand='true'/></line>",
         [](const Element& e) { return e.print_in_first_whole_band; }},
        {"when a group changes", "<element kind='line' printWhenGroupChanges='g'/>",
         "<line><reportElement printWhenGroupChanges='g'/></line>",
         [](const Element& e) { return e.print_when_group_changes == "g"; }},
        {"a property", "<element kind='line'><property name='a' value='b'/></element>",
         "<line><reportElement><property name='a' value='b'/></reportElement></line>",
         [](const Element& e) { return property_value(e.properties, "a") == "b"; }},
        {"a computed property", "<element kind='line'><propertyExpression name='a'>1 + 1</propertyExpression></element>",
         "<line><reportElement><propertyExpression name='a'><![CDATA[1 + 1]]></propertyExpression></reportElement></line>",
         [](const Element& e) { return e.properties.at(0).expression.text == "1 + 1" && !property_value(e.properties, "a"); }},
        {"colours and ground", "<element kind='rectangle' forecolor='#102030' backcolor='#ABCDEF' mode='Transparent' radius='3'/>",
         "<rectangle radius='3'><reportElement forecolor='#102030' backcolor='#ABCDEF' mode='Transparent'/></rectangle>",
         [](const Element& e) { return e.attributes.forecolor == Color{0x10, 0x20, 0x30} && e.attributes.backcolor == Color{0xAB, 0xCD, 0xEF} &&
                                       e.attributes.mode == Mode::Transparent && e.attributes.radius == 3; }},
        {"a dotted pen", "<element kind='ellipse'><pen lineWidth='0.25' lineStyle='Dotted' lineColor='#FF0000'/></element>",
         "<ellipse><reportElement/><graphicElement><pen lineWidth='0.25' lineStyle='Dotted' lineColor='#FF0000'/></graphicElement></ellipse>",
         [](const Element& e) { return e.attributes.pen.width == 0.25F && e.attributes.pen.style == LineStyle::Dotted &&
                                       e.attributes.pen.color == Color{255, 0, 0}; }},
        {"all sides and one of its own", "<element kind='staticText'><box padding='2' topPadding='5'><pen lineWidth='1'/><bottomPen lineWidth='2'/></box><text>x</text></element>",
         "<staticText><reportElement/><box padding='2' topPadding='5'><pen lineWidth='1'/><bottomPen lineWidth='2'/></box><text>x</text></staticText>",
         [](const Element& e) { const auto& b = e.attributes.box; return b.padding == 2 && b.top_padding == 5 && !b.left_padding && b.pen.width == 1.0F &&
                                       b.bottom.width == 2.0F && !b.top.width; }},
        {"a paragraph", "<element kind='staticText'><paragraph lineSpacing='Fixed' lineSpacingSize='11.5' leftIndent='1' rightIndent='2' spacingBefore='3' spacingAfter='4' tabStopWidth='30'><tabStop position='50' alignment='Right'/></paragraph><text>x</text></element>",
         "<staticText><reportElement/><textElement><paragraph lineSpacing='Fixed' lineSpacingSize='11.5' leftIndent='1' rightIndent='2' spacingBefore='3' spacingAfter='4' tabStopWidth='30'><tabStop position='50' alignment='Right'/></paragraph></textElement><text>x</text></staticText>",
         [](const Element& e) { const auto& p = e.attributes.paragraph; return p.line_spacing == LineSpacing::Fixed && p.line_spacing_size == 11.5F && p.left_indent == 1 &&
                                       p.right_indent == 2 && p.spacing_before == 3 && p.spacing_after == 4 && p.tab_stop_width == 30 &&
                                       p.tab_stops.at(0).position == 50 && p.tab_stops.at(0).align == HorizontalAlign::Right; }},
        {"a font", "<element kind='staticText' fontName='Serif' fontSize='7.25' bold='false' italic='true' underline='true' strikeThrough='true'><text>x</text></element>",
         "<staticText><reportElement/><textElement><font fontName='Serif' size='7.25' isBold='false' isItalic='true' isUnderline='true' isStrikeThrough='true'/></textElement><text>x</text></staticText>",
         [](const Element& e) { const auto& f = e.attributes.font; return f.name == "Serif" && f.size == 7.25F && f.bold == false && f.italic == true &&
                                       f.underline == true && f.strike_through == true; }},
        {"aligned and turned", "<element kind='staticText' hTextAlign='Justified' vTextAlign='Bottom' rotation='UpsideDown'><text>x</text></element>",
         "<staticText><reportElement/><textElement textAlignment='Justified' verticalAlignment='Bottom' rotation='UpsideDown'/><text>x</text></staticText>",
         [](const Element& e) { return e.attributes.text_align == HorizontalAlign::Justified && e.attributes.text_valign == VerticalAlign::Bottom &&
                                       e.attributes.rotation == Rotation::UpsideDown; }},
        {"styled markup", "<element kind='staticText' markup='styled'><text><![CDATA[<b>x</b>]]></text></element>",
         "<staticText><reportElement/><textElement isStyledText='true'/><text><![CDATA[<b>x</b>]]></text></staticText>",
         [](const Element& e) { return e.attributes.markup == model::Markup::Styled && body_of<StaticText>(e).text == "<b>x</b>"; }},
        {"a field's pattern and blanks", "<element kind='textField' pattern='0.0' blankWhenNull='true'><expression>1</expression></element>",
         "<textField pattern='0.0' isBlankWhenNull='true'><reportElement/><textElement/><textFieldExpression>1</textFieldExpression></textField>",
         [](const Element& e) { return e.attributes.pattern == "0.0" && e.attributes.blank_when_null == true; }},
        {"a font made smaller", "<element kind='textField' textAdjust='ScaleFont'><expression>1</expression></element>",
         "<textField textAdjust='ScaleFont'><reportElement/><textFieldExpression>1</textFieldExpression></textField>",
         [](const Element& e) { return body_of<TextField>(e).adjust == TextAdjust::ScaleFont; }},
        {"a field's later moment", "<element kind='textField' evaluationTime='Group' evaluationGroup='g'><expression>1</expression></element>",
         "<textField evaluationTime='Group' evaluationGroup='g'><reportElement/><textFieldExpression>1</textFieldExpression></textField>",
         [](const Element& e) { return body_of<TextField>(e).evaluation == EvaluationTime::Group && body_of<TextField>(e).evaluation_group == "g"; }},
        {"a link with a parameter and a tip", "<element kind='textField' linkType='RemotePage' linkTarget='Blank'><expression>1</expression><hyperlinkPageExpression>2</hyperlinkPageExpression><hyperlinkTooltipExpression>\"t\"</hyperlinkTooltipExpression><hyperlinkParameter name='p'><expression>3</expression></hyperlinkParameter></element>",
         "<textField hyperlinkType='RemotePage' hyperlinkTarget='Blank'><reportElement/><textFieldExpression>1</textFieldExpression><hyperlinkPageExpression>2</hyperlinkPageExpression><hyperlinkTooltipExpression>\"t\"</hyperlinkTooltipExpression><hyperlinkParameter name='p'><hyperlinkParameterExpression>3</hyperlinkParameterExpression></hyperlinkParameter></textField>",
         [](const Element& e) { const auto& l = body_of<TextField>(e).link; return l.type == "RemotePage" && l.target == "Blank" && l.page.text == "2" &&
                                       l.tooltip.text == "\"t\"" && l.parameters.at(0).expression.text == "3"; }},
        {"a picture", "<element kind='image' scaleImage='RetainShape' hImageAlign='Right' vImageAlign='Middle' onErrorType='Icon' lazy='true'><expression>\"a.png\"</expression></element>",
         "<image scaleImage='RetainShape' hAlign='Right' vAlign='Middle' onErrorType='Icon' isLazy='true' isUsingCache='true'><reportElement/><imageExpression>\"a.png\"</imageExpression></image>",
         [](const Element& e) { return e.attributes.scale_image == ScaleImage::RetainShape && e.attributes.image_align == HorizontalAlign::Right &&
                                       e.attributes.image_valign == VerticalAlign::Middle && body_of<Image>(e).on_error == Image::OnError::Icon && body_of<Image>(e).lazy; }},
        {"a frame in a frame", "<element kind='frame' borderSplitType='DrawBorders'><element kind='frame'><element kind='line'/></element></element>",
         "<frame borderSplitType='DrawBorders'><reportElement/><frame><reportElement/><line><reportElement/></line></frame></frame>",
         [](const Element& e) { const auto& f = body_of<Frame>(e); return f.border_splits && body_of<Frame>(f.children.at(0)).children.size() == 1; }},
        {"a group of elements", "<element kind='elementGroup'><element kind='line'/><element kind='ellipse'/></element>",
         "<elementGroup><line><reportElement/></line><ellipse><reportElement/></ellipse></elementGroup>",
         [](const Element& e) { return body_of<ElementGroup>(e).children.size() == 2; }},
        {"a line down", "<element kind='line' direction='TopDown'/>", "<line direction='TopDown'><reportElement/></line>",
         [](const Element& e) { return !body_of<Line>(e).bottom_up; }},
        {"a page break", "<element kind='break'/>", "<break><reportElement/></break>",
         [](const Element& e) { return body_of<Break>(e).type == Break::Type::Page; }},
        {"a subreport", "<element kind='subreport' runToBottom='true'><expression>\"s.rpt\"</expression><connectionExpression>$P{c}</connectionExpression><parameter name='p'><expression>1</expression></parameter></element>",
         "<subreport runToBottom='true'><reportElement/><subreportParameter name='p'><subreportParameterExpression>1</subreportParameterExpression></subreportParameter><connectionExpression>$P{c}</connectionExpression><subreportExpression>\"s.rpt\"</subreportExpression></subreport>",
         [](const Element& e) { const auto& s = body_of<Subreport>(e); return s.run_to_bottom && s.expression.text == "\"s.rpt\"" && s.parameters.at(0).first == "p" &&
                                       s.connection.text == "$P{c}"; }},
    });
    // clang-format on
}

TEST(Attributes, ChartsOfEveryKindInBothForms)
{
    for (const char* kind : {"pie", "pie3D", "bar", "bar3D", "stackedBar", "stackedBar3D", "line", "area"}) {
        const auto current = only_element(std::string("<element kind='chart' chartType='") + kind +
                                          "' legendPosition='Right'><dataset kind='category'/></element>");
        const auto classic = only_element(std::string("<") + kind + "Chart><chart><reportElement/><chartLegend " +
                                          "position='Right'/></chart><categoryDataset/></" + kind + "Chart>");
        EXPECT_EQ(body_of<Chart>(current).type, kind);
        EXPECT_EQ(body_of<Chart>(classic).type, kind);
        EXPECT_EQ(body_of<Chart>(current).legend_position, LegendPosition::Right);
        EXPECT_EQ(body_of<Chart>(classic).legend_position, LegendPosition::Right);
    }
}

TEST(Attributes, AChartsDatasetKeepsItsMomentsSlicesAndColours)
{
    const auto current = only_element(
        "<element kind='chart' chartType='pie' evaluationTime='Report'>"
        "<dataset kind='pie' resetType='Group' resetGroup='g' incrementType='Group' incrementGroup='g'>"
        "<incrementWhenExpression>$F{a} > 0</incrementWhenExpression>"
        "<series><keyExpression>$F{k}</keyExpression><valueExpression>$F{v}</valueExpression>"
        "<labelExpression>\"l\"</labelExpression></series></dataset>"
        "<plot labelFormat='{0} {2}'><seriesColor order='2' color='#0000FF'/><seriesColor order='0' color='#FF0000'/>"
        "<itemLabel/></plot></element>");
    const auto classic = only_element(
        "<pieChart><chart evaluationTime='Report'><reportElement/></chart><pieDataset>"
        "<dataset resetType='Group' resetGroup='g' incrementType='Group' incrementGroup='g'>"
        "<incrementWhenExpression>$F{a} > 0</incrementWhenExpression></dataset>"
        "<keyExpression>$F{k}</keyExpression><valueExpression>$F{v}</valueExpression>"
        "<labelExpression>\"l\"</labelExpression></pieDataset>"
        "<piePlot labelFormat='{0} {2}'><plot><seriesColor seriesOrder='2' color='#0000FF'/>"
        "<seriesColor seriesOrder='0' color='#FF0000'/></plot><itemLabel/></piePlot></pieChart>");
    for (const auto* element : {&current, &classic}) {
        SCOPED_TRACE(element == &current ? "current" : "classic");
        const auto& chart = body_of<Chart>(*element);
        EXPECT_EQ(chart.reset, Moment::Group);
        EXPECT_EQ(chart.increment_group, "g");
        EXPECT_EQ(chart.increment_when.text, "$F{a} > 0");
        ASSERT_EQ(chart.series.size(), 1U);
        EXPECT_EQ(chart.series[0].category.text, "$F{k}");
        EXPECT_EQ(chart.series[0].label.text, "\"l\"");
        EXPECT_EQ(chart.label_format, "{0} {2}");
        ASSERT_EQ(chart.colors.size(), 3U);
        EXPECT_EQ(chart.colors[0], (Color{255, 0, 0}));
        EXPECT_EQ(chart.colors[1].alpha, 0) << "the one between is not given";
        EXPECT_TRUE(chart.show_values);
    }
}

TEST(Attributes, PlotsOfPointsAndGaugesInBothForms)
{
    const std::string range = "<lowExpression>1</lowExpression><highExpression>9</highExpression>";
    const auto current = only_element(
        "<element kind='chart' chartType='meter'><dataset "
        "kind='value'><valueExpression>$F{v}</valueExpression></dataset>"
        "<plot units='km' meterAngle='200' tickInterval='5' needleColor='#FF0000' shape='dial'><dataRange>" +
        range +
        "</dataRange><valueDisplay color='#0000FF' mask='0.0'><font size='5'/></valueDisplay>"
        "<interval label='Low' backgroundColor='#00FF00' alpha='0.5'><dataRange>" +
        range + "</dataRange></interval></plot></element>");
    const auto classic = only_element(
        "<meterChart><chart><reportElement/></chart><valueDataset><valueExpression>$F{v}</valueExpression></"
        "valueDataset>"
        "<meterPlot units='km' angle='200' tickInterval='5' needleColor='#FF0000' shape='dial'><plot/><dataRange>" +
        range +
        "</dataRange><valueDisplay color='#0000FF' mask='0.0'><font size='5'/></valueDisplay>"
        "<meterInterval label='Low' color='#00FF00' alpha='0.5'><dataRange>" +
        range + "</dataRange></meterInterval></meterPlot></meterChart>");
    for (const auto* element : {&current, &classic}) {
        SCOPED_TRACE(element == &current ? "current" : "classic");
        const auto& chart = body_of<Chart>(*element);
        EXPECT_EQ(chart.series.at(0).value.text, "$F{v}");
        const Gauge& gauge = chart.gauge;
        EXPECT_EQ(gauge.units + " " + gauge.value_pattern, "km 0.0");
        EXPECT_EQ(gauge.angle, 200);
        EXPECT_EQ(gauge.tick_interval, 5.0F);
        EXPECT_EQ(gauge.needle, (Color{255, 0, 0}));
        EXPECT_EQ(gauge.value_color, (Color{0, 0, 255}));
        EXPECT_EQ(gauge.range.low.text + gauge.range.high.text, "19");
        ASSERT_EQ(gauge.intervals.size(), 1U);
        EXPECT_EQ(gauge.intervals[0].label + gauge.intervals[0].range.high.text, "Low9");
        EXPECT_EQ(gauge.intervals[0].color, (Color{0, 255, 0}));
        EXPECT_EQ(gauge.intervals[0].alpha, 0.5F);
    }
    const auto points = only_element(
        "<element kind='chart' chartType='scatter'><dataset kind='xy'><series autoSort='false'>"
        "<xvalueExpression>$F{x}</xvalueExpression><yvalueExpression>$F{y}</yvalueExpression></series></dataset>"
        "<plot showLines='false' xAxisTickLabelMask='0'><domainAxisMinValueExpression>2</domainAxisMinValueExpression>"
        "<rangeAxisMaxValueExpression>7</rangeAxisMaxValueExpression></plot></element>");
    const auto& chart = body_of<Chart>(points);
    EXPECT_EQ(chart.series.at(0).category.text + chart.series[0].value.text, "$F{x}$F{y}");
    EXPECT_FALSE(chart.series[0].in_order || chart.show_lines);
    EXPECT_EQ(chart.category_axis_pattern + chart.category_axis_least.text + chart.value_axis_most.text, "027");
}

TEST(Attributes, ColoursInEveryWriting)
{
    struct Case {
        const char* written;
        Color expected;
    };
    for (const auto& c : {Case{"#FF8000", {255, 128, 0, 255}}, Case{"#abc", {0xAA, 0xBB, 0xCC, 255}},
                          Case{"#80FF0000", {255, 0, 0, 0x80}}, Case{"blue", {0, 0, 255, 255}},
                          Case{"LIGHTGRAY", {0xC0, 0xC0, 0xC0, 255}}, Case{" #010203 ", {1, 2, 3, 255}},
                          Case{"rgba(1, 2, 3, 0.5)", {1, 2, 3, 128}}, Case{"16711680", {255, 0, 0, 255}},
                          Case{"-16776961", {0, 0, 255, 255}}}) {
        const auto element = only_element(std::string("<element kind='line' forecolor='") + c.written + "'/>");
        EXPECT_EQ(element.attributes.forecolor, c.expected) << c.written;
    }
}

TEST(Attributes, OldNamesOfPensAreWidths)
{
    struct Case {
        const char* pen;
        float width;
        LineStyle style;
    };
    for (const auto& c : {Case{"None", 0.0F, LineStyle::Solid}, Case{"Thin", 0.5F, LineStyle::Solid},
                          Case{"1Point", 1.0F, LineStyle::Solid}, Case{"2Point", 2.0F, LineStyle::Solid},
                          Case{"4Point", 4.0F, LineStyle::Solid}, Case{"Dotted", 1.0F, LineStyle::Dashed}}) {
        const auto pen = std::string("<line><reportElement/><graphicElement pen='") + c.pen + "'/></line>";
        EXPECT_EQ(only_element(pen).attributes.pen.width, c.width) << c.pen;
        EXPECT_EQ(only_element(pen).attributes.pen.style, c.style) << c.pen;
        const auto box = std::string("<staticText><reportElement/><box leftBorder='") + c.pen +
                         "' leftBorderColor='#FF0000'/><text>x</text></staticText>";
        EXPECT_EQ(only_element(box).attributes.box.left.width, c.width) << c.pen;
        EXPECT_EQ(only_element(box).attributes.box.left.color, (Color{255, 0, 0})) << c.pen;
    }
}

}  // namespace
}  // namespace velora::engine
