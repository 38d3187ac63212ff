#include <algorithm>

#include "engine/definition/parts.h"

namespace velora::engine {

namespace {

using namespace model;

// clang-format off
constexpr auto kPositions = std::to_array<Choice<PositionType>>({
    {"FixRelativeToTop", PositionType::FixRelativeToTop}, {"Float", PositionType::Float},
    {"FixRelativeToBottom", PositionType::FixRelativeToBottom}});
constexpr auto kStretches = std::to_array<Choice<StretchType>>({
    {"NoStretch",               StretchType::NoStretch},
    {"ElementGroupHeight",      StretchType::ElementGroupHeight},
    {"ElementGroupBottom",      StretchType::ElementGroupBottom},
    {"ContainerHeight",         StretchType::ContainerHeight},
    {"ContainerBottom",         StretchType::ContainerBottom},
    {"RelativeToTallestObject", StretchType::ElementGroupHeight},
    {"RelativeToBandHeight",    StretchType::ContainerHeight}});
constexpr auto kAdjusts = std::to_array<Choice<TextAdjust>>({
    {"CutText", TextAdjust::CutText}, {"StretchHeight", TextAdjust::StretchHeight}, {"ScaleFont", TextAdjust::ScaleFont}});
constexpr auto kImageErrors = std::to_array<Choice<Image::OnError>>({
    {"Error", Image::OnError::Error}, {"Blank", Image::OnError::Blank}, {"Icon", Image::OnError::Icon}});
constexpr auto kDirections = std::to_array<Choice<bool>>({{"TopDown", false}, {"BottomUp", true}});
constexpr auto kBreaks = std::to_array<Choice<Break::Type>>({{"Page", Break::Type::Page}, {"Column", Break::Type::Column}});
constexpr auto kBorderSplits = std::to_array<Choice<bool>>({{"NoBorders", false}, {"DrawBorders", true}});

constexpr auto kElementRules = std::to_array<AttributeRule<Element>>({
    {"kind",                     set_nothing<Element>},
    {"uuid",                     set_text<&Element::uuid>},
    {"key",                      set_text<&Element::key>},
    {"x",                        set_whole<&Element::x>},
    {"y",                        set_whole<&Element::y>},
    {"width",                    set_length<&Element::width>},
    {"height",                   set_length<&Element::height>},
    {"style",                    set_text<&Element::style>},
    {"positionType",             set_choice<&Element::position, kPositions>},
    {"stretchType",              set_choice<&Element::stretch, kStretches>},
    {"printRepeatedValues",      set_flag<&Element::print_repeated_values>},
    {"removeLineWhenBlank",      set_flag<&Element::remove_line_when_blank>},
    {"printInFirstWholeBand",    set_flag<&Element::print_in_first_whole_band>},
    {"printWhenDetailOverflows", set_flag<&Element::print_when_detail_overflows>},
    {"printWhenGroupChanges",    set_text<&Element::print_when_group_changes>},
});

/// What the oldest files say on the graphic element inside.
constexpr auto kGraphicRules = std::to_array<AttributeRule<Element>>({
    {"stretchType", set_choice<&Element::stretch, kStretches>},
});

constexpr auto kElementChildren = std::to_array<ChildRule<Element>>({
    {"printWhenExpression", read_expression<&Element::print_when>},
    {"styleExpression",     read_expression<&Element::style_expression>},
});

constexpr auto kLinkRules = std::to_array<AttributeRule<Hyperlink>>({
    {"hyperlinkType",   set_text<&Hyperlink::type>},
    {"linkType",        set_text<&Hyperlink::type>},
    {"hyperlinkTarget", set_text<&Hyperlink::target>},
    {"linkTarget",      set_text<&Hyperlink::target>},
    {"bookmarkLevel",   set_whole<&Hyperlink::bookmark_level, 0, 100>},
});

constexpr auto kTextFieldRules = std::to_array<AttributeRule<TextField>>({
    {"textAdjust",          set_choice<&TextField::adjust, kAdjusts>},
    {"stretchWithOverflow", [](TextField& t, const Attribute& a) { if (a.flag().value_or(false)) t.adjust = TextAdjust::StretchHeight; }},
    {"evaluationTime",      set_choice<&TextField::evaluation, kEvaluationTimes>},
    {"evaluationGroup",     set_text<&TextField::evaluation_group>},
});
constexpr auto kTextFieldChildren = std::to_array<ChildRule<TextField>>({
    {"expression",          read_expression<&TextField::expression>},
    {"textFieldExpression", [](TextField& t, Tag& child) { child.ignore("class"); t.expression = child.expression(); }},
    {"patternExpression",   read_expression<&TextField::pattern>},
});

constexpr auto kImageRules = std::to_array<AttributeRule<Image>>({
    {"evaluationTime",  set_choice<&Image::evaluation, kEvaluationTimes>},
    {"evaluationGroup", set_text<&Image::evaluation_group>},
    {"onErrorType",     set_choice<&Image::on_error, kImageErrors>},
    {"lazy",            set_flag<&Image::lazy>},
    {"usingCache",      set_nothing<Image>},
});
constexpr auto kImageChildren = std::to_array<ChildRule<Image>>({
    {"expression",      read_expression<&Image::expression>},
    {"imageExpression", [](Image& i, Tag& child) { child.ignore("class"); i.expression = child.expression(); }},
});

constexpr auto kLineRules = std::to_array<AttributeRule<Line>>({
    {"direction", set_choice<&Line::bottom_up, kDirections>},
});
constexpr auto kFrameRules = std::to_array<AttributeRule<Frame>>({
    {"borderSplitType", set_choice<&Frame::border_splits, kBorderSplits>},
});
constexpr auto kBreakRules = std::to_array<AttributeRule<Break>>({
    {"type", set_choice<&Break::type, kBreaks>},
});

constexpr auto kSubreportRules = std::to_array<AttributeRule<Subreport>>({
    {"runToBottom",  set_flag<&Subreport::run_to_bottom>},
    {"usingCache",   set_nothing<Subreport>},
    {"overflowType", set_nothing<Subreport>},
});
// clang-format on

/// An expression in a child of one of several names.
ExpressionText inner_expression(Tag& tag)
{
    constexpr std::array<std::string_view, 4> kNames{"expression", "subreportParameterExpression",
                                                     "hyperlinkParameterExpression", "valueExpression"};
    ExpressionText out;
    tag.each_child([&](Tag& child) {
        if (std::ranges::find(kNames, child.name()) == kNames.end()) return false;
        child.ignore("class");
        out = child.expression();
        return true;
    });
    return out;
}

void read_link_parameter(Hyperlink& link, Tag& child)
{
    HyperlinkParameter parameter;
    parameter.name = child.required("name");
    parameter.class_name = child.value("class");
    parameter.expression = inner_expression(child);
    link.parameters.push_back(std::move(parameter));
}

constexpr auto kLinkChildren = std::to_array<ChildRule<Hyperlink>>({
    {"hyperlinkWhenExpression", read_expression<&Hyperlink::when>},
    {"hyperlinkReferenceExpression", read_expression<&Hyperlink::reference>},
    {"hyperlinkAnchorExpression", read_expression<&Hyperlink::anchor>},
    {"hyperlinkPageExpression", read_expression<&Hyperlink::page>},
    {"hyperlinkTooltipExpression", read_expression<&Hyperlink::tooltip>},
    {"anchorNameExpression", read_expression<&Hyperlink::anchor_name>},
    {"bookmarkLevelExpression", read_expression<&Hyperlink::bookmark_level_expression>},
    {"hyperlinkParameter", read_link_parameter},
});

void read_subreport_parameter(Subreport& subreport, Tag& child)
{
    std::string name = child.required("name");
    subreport.parameters.emplace_back(std::move(name), inner_expression(child));
}

constexpr auto kSubreportChildren = std::to_array<ChildRule<Subreport>>({
    {"expression", read_expression<&Subreport::expression>},
    {"subreportExpression",
     [](Subreport& s, Tag& child) {
         child.ignore("class");
         s.expression = child.expression();
     }},
    {"parametersMapExpression", read_expression<&Subreport::parameters_map>},
    {"connectionExpression", read_expression<&Subreport::connection>},
    {"dataSourceExpression", read_expression<&Subreport::source>},
    {"parameter", read_subreport_parameter},
    {"subreportParameter", read_subreport_parameter},
    {"returnValue", [](Subreport& s, Tag& child) { s.returns.push_back(read_return_value(child)); }},
});

/// The attributes that both forms share: on the element itself, or on `reportElement` in the classic form.
void read_common_attributes(Tag& tag, Element& out)
{
    tag.read<Element>(kElementRules, out);
    tag.read<StyleAttributes>(style_rules(), out.attributes);
}

bool read_common_child(Element& out, Tag& child)
{
    if (child.name() == "reportElement") {
        read_common_attributes(child, out);
        child.each_child([&](Tag& part) { return read_common_child(out, part); });
        return true;
    }
    if (child.name() == "graphicElement") child.read<Element>(kGraphicRules, out);
    return read_property(out.properties, child) || read_child<Element>(kElementChildren, out, child) ||
           read_style_child(out.attributes, child);
}

/// Reads an element whose own part is read by `rules` and `visit`.
template <class Body, class Visit>
void read_parts(Tag& tag, Element& out, Body& body, std::span<const AttributeRule<Body>> rules, Visit visit)
{
    tag.read<Body>(rules, body);
    if constexpr (requires { body.link; }) tag.read<Hyperlink>(kLinkRules, body.link);
    read_common_attributes(tag, out);
    tag.each_child([&](Tag& child) {
        if (visit(child)) return true;
        if constexpr (requires { body.link; }) {
            if (read_link_child(body.link, child)) return true;
        }
        return read_common_child(out, child);
    });
}

template <class Body, const auto& rules, const auto& children>
void read_with(Tag& tag, Element& out)
{
    Body body;
    read_parts<Body>(tag, out, body, rules, [&](Tag& child) { return read_child<Body>(children, body, child); });
    out.body = std::move(body);
}

bool no_child(Tag&)
{
    return false;
}

void read_static_text(Tag& tag, Element& out)
{
    StaticText body;
    read_parts<StaticText>(tag, out, body, {}, [&](Tag& child) {
        if (child.name() != "text") return false;
        body.text = child.text();
        return true;
    });
    out.body = std::move(body);
}

template <class Body, const auto& rules>
void read_container(Tag& tag, Element& out)
{
    Body body;
    read_parts<Body>(tag, out, body, rules, [&](Tag& child) { return read_element_child(body.children, child); });
    out.body = std::move(body);
}

template <class Body, const auto& rules>
void read_simple(Tag& tag, Element& out)
{
    Body body;
    read_parts<Body>(tag, out, body, rules, no_child);
    out.body = std::move(body);
}

/// A line drawn without height or width is one point thick there.
void read_line(Tag& tag, Element& out)
{
    read_simple<Line, kLineRules>(tag, out);
    out.width = std::max(out.width, 1);
    out.height = std::max(out.height, 1);
}

void read_chart(Tag& tag, Element& out)
{
    Chart body;
    body.type = chart_type(tag.name() == "element" ? tag.value("chartType") : tag.name());
    if (body.type.empty()) tag.warn("the kind of chart is not known; the place stays empty");
    read_parts<Chart>(tag, out, body, chart_rules(), [&](Tag& child) {
        if (child.name() != "chart") return read_chart_child(body, child);
        child.read<Chart>(chart_rules(), body);
        child.read<Hyperlink>(kLinkRules, body.link);
        child.each_child([&](Tag& part) {
            return read_chart_child(body, part) || read_link_child(body.link, part) || read_common_child(out, part);
        });
        return true;
    });
    out.body = std::move(body);
}

void read_component_element(Tag& tag, Element& out)
{
    UnknownElement none{"component"};
    ElementBody body = none;
    read_parts<UnknownElement>(tag, out, none, {}, [&](Tag& child) {
        constexpr std::array<std::string_view, 6> kCommon{
            "reportElement", "property", "propertyExpression", "box", "printWhenExpression", "styleExpression"};
        if (std::ranges::find(kCommon, child.name()) != kCommon.end()) return false;
        body = read_component(child);
        return true;
    });
    out.body = std::move(body);
}

void read_not_drawn(Tag& tag, Element& out)
{
    UnknownElement body{std::string(tag.name() == "element" ? tag.value("kind") : tag.name())};
    tag.warn("elements of the kind '" + body.kind + "' are not drawn; the place stays empty");
    tag.each_child([&](Tag& child) {
        if (!read_common_child(out, child)) child.ignore_all();
        return true;
    });
    tag.read<Element>(kElementRules, out);
    tag.ignore_all();
    out.body = std::move(body);
}

struct Kind {
    std::string_view name;
    void (*read)(Tag& tag, Element& out);
};

constexpr std::array<AttributeRule<ElementGroup>, 0> kGroupRules{};
constexpr std::array<AttributeRule<Rectangle>, 0> kRectangleRules{};
constexpr std::array<AttributeRule<Ellipse>, 0> kEllipseRules{};

constexpr auto kKinds = std::to_array<Kind>({
    // clang-format off
    {"staticText",       read_static_text},
    {"textField",        read_with<TextField, kTextFieldRules, kTextFieldChildren>},
    {"image",            read_with<Image, kImageRules, kImageChildren>},
    {"subreport",        read_with<Subreport, kSubreportRules, kSubreportChildren>},
    {"line",             read_line},
    {"rectangle",        read_simple<Rectangle, kRectangleRules>},
    {"ellipse",          read_simple<Ellipse, kEllipseRules>},
    {"break",            read_simple<Break, kBreakRules>},
    {"frame",            read_container<Frame, kFrameRules>},
    {"elementGroup",     read_container<ElementGroup, kGroupRules>},
    {"chart",            read_chart},
    {"component",        read_component_element},
    {"componentElement", read_component_element},
    {"crosstab",         read_not_drawn},
    {"genericElement",   read_not_drawn},
    {"generic",          read_not_drawn},
    // clang-format on
});

/// How the element that a tag is gets read; null when it is none. An `element` is one of whatever kind.
const Kind* kind_of(Tag& tag)
{
    static constexpr Kind kClassicChart{"chart", read_chart};
    static constexpr Kind kOther{"", read_not_drawn};
    const bool current = tag.name() == "element";
    const std::string name = current ? tag.required("kind") : std::string(tag.name());
    const auto found = std::ranges::find(kKinds, name, &Kind::name);
    if (found != kKinds.end() && (current || name != "chart")) return &*found;
    if (current) return &kOther;
    return name.ends_with("Chart") && !chart_type(name).empty() ? &kClassicChart : nullptr;
}

}  // namespace

std::span<const AttributeRule<Hyperlink>> link_rules()
{
    return kLinkRules;
}

bool read_link_child(Hyperlink& target, Tag& child)
{
    return read_child<Hyperlink>(kLinkChildren, target, child);
}

bool read_element_child(std::vector<Element>& target, Tag& child)
{
    const Kind* kind = kind_of(child);
    if (kind == nullptr) return false;
    Element out;
    out.place = child.place();
    kind->read(child, out);
    target.push_back(std::move(out));
    return true;
}

}  // namespace velora::engine
