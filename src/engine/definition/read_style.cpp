#include "engine/definition/parts.h"
#include "values/text.h"

namespace velora::engine {

namespace {

using namespace model;

// clang-format off
constexpr auto kModes = std::to_array<Choice<Mode>>({{"Opaque", Mode::Opaque}, {"Transparent", Mode::Transparent}});
constexpr auto kHorizontal = std::to_array<Choice<HorizontalAlign>>({
    {"Left", HorizontalAlign::Left}, {"Center", HorizontalAlign::Center},
    {"Right", HorizontalAlign::Right}, {"Justified", HorizontalAlign::Justified}});
constexpr auto kVertical = std::to_array<Choice<VerticalAlign>>({
    {"Top", VerticalAlign::Top}, {"Middle", VerticalAlign::Middle},
    {"Bottom", VerticalAlign::Bottom}, {"Justified", VerticalAlign::Justified}});
constexpr auto kRotations = std::to_array<Choice<Rotation>>({
    {"None", Rotation::None}, {"Left", Rotation::Left}, {"Right", Rotation::Right}, {"UpsideDown", Rotation::UpsideDown}});
constexpr auto kScales = std::to_array<Choice<ScaleImage>>({
    {"Clip", ScaleImage::Clip}, {"FillFrame", ScaleImage::FillFrame}, {"RetainShape", ScaleImage::RetainShape},
    {"RealHeight", ScaleImage::RealHeight}, {"RealSize", ScaleImage::RealSize}});
constexpr auto kMarkups = std::to_array<Choice<Markup>>({
    {"none", Markup::None}, {"styled", Markup::Styled}, {"html", Markup::Html}, {"rtf", Markup::Rtf}});
constexpr auto kLineStyles = std::to_array<Choice<LineStyle>>({
    {"Solid", LineStyle::Solid}, {"Dashed", LineStyle::Dashed}, {"Dotted", LineStyle::Dotted}, {"Double", LineStyle::Double}});
constexpr auto kLineSpacings = std::to_array<Choice<LineSpacing>>({
    {"Single", LineSpacing::Single}, {"1_1_2", LineSpacing::OneAndHalf}, {"Double", LineSpacing::Double},
    {"AtLeast", LineSpacing::AtLeast}, {"Fixed", LineSpacing::Fixed}, {"Proportional", LineSpacing::Proportional}});

/// The pens of the first definitions, which had names instead of widths.
constexpr auto kNamedPens = std::to_array<Choice<float>>({
    {"None", 0.0F}, {"Thin", 0.5F}, {"1Point", 1.0F}, {"2Point", 2.0F}, {"4Point", 4.0F}, {"Dotted", 1.0F}});

void set_styled(StyleAttributes& s, const Attribute& a)
{
    if (a.flag().value_or(false)) s.markup = Markup::Styled;
}

void set_both_horizontal(StyleAttributes& s, const Attribute& a)
{
    s.text_align = a.one_of(kHorizontal);
    s.image_align = s.text_align;
}

void set_both_vertical(StyleAttributes& s, const Attribute& a)
{
    s.text_valign = a.one_of(kVertical);
    s.image_valign = s.text_valign;
}

template <auto pen>
void set_named_pen(OwnerOf<pen>& target, const Attribute& a)
{
    const auto width = a.one_of(kNamedPens);
    if (!width) return;
    (target.*pen).width = width;
    (target.*pen).style = a.text() == "Dotted" ? LineStyle::Dashed : LineStyle::Solid;
}

template <auto pen>
void set_pen_color(OwnerOf<pen>& target, const Attribute& a)
{
    (target.*pen).color = a.color();
}

constexpr auto kStyleRules = std::to_array<AttributeRule<StyleAttributes>>({
    {"mode",              set_choice<&StyleAttributes::mode, kModes>},
    {"forecolor",         set_color<&StyleAttributes::forecolor>},
    {"backcolor",         set_color<&StyleAttributes::backcolor>},
    {"radius",            set_length<&StyleAttributes::radius>},
    {"scaleImage",        set_choice<&StyleAttributes::scale_image, kScales>},
    {"hTextAlign",        set_choice<&StyleAttributes::text_align, kHorizontal>},
    {"textAlignment",     set_choice<&StyleAttributes::text_align, kHorizontal>},
    {"vTextAlign",        set_choice<&StyleAttributes::text_valign, kVertical>},
    {"verticalAlignment", set_choice<&StyleAttributes::text_valign, kVertical>},
    {"hImageAlign",       set_choice<&StyleAttributes::image_align, kHorizontal>},
    {"vImageAlign",       set_choice<&StyleAttributes::image_valign, kVertical>},
    {"hAlign",            set_both_horizontal},
    {"vAlign",            set_both_vertical},
    {"rotation",          set_choice<&StyleAttributes::rotation, kRotations>},
    {"pattern",           set_text<&StyleAttributes::pattern>},
    {"blankWhenNull",     set_flag<&StyleAttributes::blank_when_null>},
    {"markup",            set_choice<&StyleAttributes::markup, kMarkups>},
    {"styledText",        set_styled},
    {"fontName",          [](StyleAttributes& s, const Attribute& a) { s.font.name = std::string(a.text()); }},
    {"fontSize",          [](StyleAttributes& s, const Attribute& a) { s.font.size = a.number(); }},
    {"bold",              [](StyleAttributes& s, const Attribute& a) { s.font.bold = a.flag(); }},
    {"italic",            [](StyleAttributes& s, const Attribute& a) { s.font.italic = a.flag(); }},
    {"underline",         [](StyleAttributes& s, const Attribute& a) { s.font.underline = a.flag(); }},
    {"strikeThrough",     [](StyleAttributes& s, const Attribute& a) { s.font.strike_through = a.flag(); }},
    {"lineSpacing",       [](StyleAttributes& s, const Attribute& a) { s.paragraph.line_spacing = a.one_of(kLineSpacings); }},
    {"pen",               set_named_pen<&StyleAttributes::pen>},
    {"border",            [](StyleAttributes& s, const Attribute& a) { set_named_pen<&BoxAttributes::pen>(s.box, a); }},
    {"borderColor",       [](StyleAttributes& s, const Attribute& a) { s.box.pen.color = a.color(); }},
    {"padding",           [](StyleAttributes& s, const Attribute& a) { s.box.padding = a.whole(0); }},
    {"fill",              set_nothing<StyleAttributes>},
    {"pdfFontName",       set_nothing<StyleAttributes>},
    {"pdfEncoding",       set_nothing<StyleAttributes>},
    {"pdfEmbedded",       set_nothing<StyleAttributes>},
});

constexpr auto kFontRules = std::to_array<AttributeRule<FontAttributes>>({
    {"fontName",      set_text<&FontAttributes::name>},
    {"size",          set_number<&FontAttributes::size>},
    {"fontSize",      set_number<&FontAttributes::size>},
    {"bold",          set_flag<&FontAttributes::bold>},
    {"italic",        set_flag<&FontAttributes::italic>},
    {"underline",     set_flag<&FontAttributes::underline>},
    {"strikeThrough", set_flag<&FontAttributes::strike_through>},
    {"pdfFontName",   set_nothing<FontAttributes>},
    {"pdfEncoding",   set_nothing<FontAttributes>},
    {"pdfEmbedded",   set_nothing<FontAttributes>},
    {"reportFont",    set_nothing<FontAttributes>},
});

constexpr auto kPenRules = std::to_array<AttributeRule<PenAttributes>>({
    {"lineWidth", set_number<&PenAttributes::width>},
    {"lineStyle", set_choice<&PenAttributes::style, kLineStyles>},
    {"lineColor", set_color<&PenAttributes::color>},
});

constexpr auto kBoxRules = std::to_array<AttributeRule<BoxAttributes>>({
    {"padding",           set_length<&BoxAttributes::padding>},
    {"topPadding",        set_length<&BoxAttributes::top_padding>},
    {"leftPadding",       set_length<&BoxAttributes::left_padding>},
    {"bottomPadding",     set_length<&BoxAttributes::bottom_padding>},
    {"rightPadding",      set_length<&BoxAttributes::right_padding>},
    {"border",            set_named_pen<&BoxAttributes::pen>},
    {"topBorder",         set_named_pen<&BoxAttributes::top>},
    {"leftBorder",        set_named_pen<&BoxAttributes::left>},
    {"bottomBorder",      set_named_pen<&BoxAttributes::bottom>},
    {"rightBorder",       set_named_pen<&BoxAttributes::right>},
    {"borderColor",       set_pen_color<&BoxAttributes::pen>},
    {"topBorderColor",    set_pen_color<&BoxAttributes::top>},
    {"leftBorderColor",   set_pen_color<&BoxAttributes::left>},
    {"bottomBorderColor", set_pen_color<&BoxAttributes::bottom>},
    {"rightBorderColor",  set_pen_color<&BoxAttributes::right>},
});

constexpr auto kParagraphRules = std::to_array<AttributeRule<ParagraphAttributes>>({
    {"lineSpacing",     set_choice<&ParagraphAttributes::line_spacing, kLineSpacings>},
    {"lineSpacingSize", set_number<&ParagraphAttributes::line_spacing_size>},
    {"firstLineIndent", set_whole<&ParagraphAttributes::first_line_indent>},
    {"leftIndent",      set_length<&ParagraphAttributes::left_indent>},
    {"rightIndent",     set_length<&ParagraphAttributes::right_indent>},
    {"spacingBefore",   set_length<&ParagraphAttributes::spacing_before>},
    {"spacingAfter",    set_length<&ParagraphAttributes::spacing_after>},
    {"tabStopWidth",    set_length<&ParagraphAttributes::tab_stop_width>},
});

constexpr auto kTabStopRules = std::to_array<AttributeRule<TabStop>>({
    {"position",  set_length<&TabStop::position>},
    {"alignment", set_choice<&TabStop::align, kHorizontal>},
});
// clang-format on

template <auto pen>
void read_pen(OwnerOf<pen>& target, Tag& child)
{
    child.read<PenAttributes>(kPenRules, target.*pen);
}

constexpr auto kPens = std::to_array<ChildRule<BoxAttributes>>({{"pen", read_pen<&BoxAttributes::pen>},
                                                                {"topPen", read_pen<&BoxAttributes::top>},
                                                                {"leftPen", read_pen<&BoxAttributes::left>},
                                                                {"bottomPen", read_pen<&BoxAttributes::bottom>},
                                                                {"rightPen", read_pen<&BoxAttributes::right>}});

void read_paragraph(StyleAttributes& target, Tag& tag)
{
    tag.read<ParagraphAttributes>(kParagraphRules, target.paragraph);
    tag.each_child([&](Tag& child) {
        if (child.name() != "tabStop") return false;
        child.read<TabStop>(kTabStopRules, target.paragraph.tab_stops.emplace_back());
        return true;
    });
}

/// The classic wrappers hold some of the attributes that the current form has on the element itself.
void read_wrapper(StyleAttributes& target, Tag& tag)
{
    tag.read<StyleAttributes>(kStyleRules, target);
    tag.each_child([&](Tag& child) { return read_style_child(target, child); });
}

constexpr auto kStyleChildren = std::to_array<ChildRule<StyleAttributes>>({
    {"box", [](StyleAttributes& s, Tag& child) { read_box(s.box, child); }},
    {"pen", read_pen<&StyleAttributes::pen>},
    {"paragraph", read_paragraph},
    {"font", [](StyleAttributes& s, Tag& child) { read_font(s.font, child); }},
    {"textElement", read_wrapper},
    {"graphicElement", read_wrapper},
});

/// The attributes stand on the condition itself, or on a style inside it.
ConditionalStyle read_condition(Tag& tag)
{
    ConditionalStyle out;
    out.parent = tag.value("style");
    tag.read<StyleAttributes>(kStyleRules, out.attributes);
    tag.each_child([&](Tag& child) {
        if (child.name() == "conditionExpression") {
            out.condition = child.expression();
            return true;
        }
        if (child.name() != "style") return read_style_child(out.attributes, child);
        out.parent = child.value("style");
        child.ignore("name");
        child.ignore("default");
        read_wrapper(out.attributes, child);
        return true;
    });
    return out;
}

}  // namespace

std::span<const AttributeRule<StyleAttributes>> style_rules()
{
    return kStyleRules;
}

std::span<const AttributeRule<FontAttributes>> font_rules()
{
    return kFontRules;
}

void read_box(BoxAttributes& target, Tag& tag)
{
    tag.ignore("style");
    tag.read<BoxAttributes>(kBoxRules, target);
    tag.each_child([&](Tag& child) { return read_child<BoxAttributes>(kPens, target, child); });
}

void read_font(FontAttributes& target, Tag& tag)
{
    tag.read<FontAttributes>(kFontRules, target);
}

bool read_style_child(StyleAttributes& target, Tag& child)
{
    return read_child<StyleAttributes>(kStyleChildren, target, child);
}

model::Style read_style(Tag& tag)
{
    model::Style out;
    out.place = tag.place();
    out.name = tag.required("name");
    out.parent = tag.value("style");
    out.is_default = same_name(tag.value("default"), "true");
    tag.read<StyleAttributes>(kStyleRules, out.attributes);
    if (tag.name() == "reportFont") tag.read<FontAttributes>(kFontRules, out.attributes.font);
    tag.each_child([&](Tag& child) {
        if (child.name() != "conditionalStyle") return read_style_child(out.attributes, child);
        out.conditions.push_back(read_condition(child));
        return true;
    });
    return out;
}

}  // namespace velora::engine
