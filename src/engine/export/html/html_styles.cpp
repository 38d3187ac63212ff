#include "engine/export/html/html_styles.h"

#include <fmt/format.h>

#include <cmath>

#include "engine/export/common/page_walk.h"
#include "engine/export/common/short_number.h"
#include "engine/export/html/html_text.h"
#include "engine/page/picture_head.h"
#include "values/base64.h"

namespace velora::engine {
namespace {

std::string_view css_name(LineStyle style)
{
    switch (style) {
        case LineStyle::Dashed:
            return "dashed";
        case LineStyle::Dotted:
            return "dotted";
        case LineStyle::Double:
            return "double";
        case LineStyle::Solid:
            break;
    }
    return "solid";
}

std::string_view css_name(HorizontalAlign align)
{
    switch (align) {
        case HorizontalAlign::Center:
            return "center";
        case HorizontalAlign::Right:
            return "right";
        case HorizontalAlign::Left:
        case HorizontalAlign::Justified:
            break;
    }
    return "left";
}

std::string border(std::string_view side, const Pen& pen)
{
    if (pen.width <= 0) return {};
    return fmt::format("border-{}:{}pt {} {};", side, short_number(pen.width), css_name(pen.style),
                       html_color(pen.color));
}

std::string font_css(const Font& font)
{
    std::string css = fmt::format("font:{}{}{}pt {};", font.italic ? "italic " : "", font.bold ? "bold " : "",
                                  short_number(font.size), html_font_families(font));
    if (font.underline || font.strike_through) {
        css += fmt::format("text-decoration:{}{};", font.underline ? "underline " : "",
                           font.strike_through ? "line-through" : "");
    }
    return css;
}

std::string text_css(const Style& style)
{
    std::string css = font_css(style.font);
    if (style.fore != kBlack) css += "color:" + html_color(style.fore) + ";";
    if (style.horizontal == HorizontalAlign::Center || style.horizontal == HorizontalAlign::Right) {
        css += fmt::format("text-align:{};", css_name(style.horizontal));
    }
    return css;
}

std::string ground_css(const Style& style)
{
    const std::string ground = style.opaque ? "background-color:" + html_color(style.back) + ";" : std::string();
    return ground + border("top", style.box.top) + border("left", style.box.left) + border("bottom", style.box.bottom) +
           border("right", style.box.right);
}

std::string turn_css(Rotation rotation)
{
    switch (rotation) {
        case Rotation::Left:
            return "top:100%;transform-origin:0 0;transform:rotate(-90deg);";
        case Rotation::Right:
            return "left:100%;transform-origin:0 0;transform:rotate(90deg);";
        case Rotation::UpsideDown:
            return "transform:rotate(180deg);";
        case Rotation::None:
            break;
    }
    return {};
}

/// Paddings count from the element's edge, which is the middle of the border.
std::string padding_css(const Style& style)
{
    TextArea area = text_area(style, {});
    const auto inside = [](float& padding, const Pen& pen) { padding = std::max(0.0F, padding - pen.width / 2); };
    inside(area.top, style.box.top);
    inside(area.right, style.box.right);
    inside(area.bottom, style.box.bottom);
    inside(area.left, style.box.left);
    if (area.top == 0 && area.right == 0 && area.bottom == 0 && area.left == 0) return {};
    return fmt::format("padding:{}pt {}pt {}pt {}pt;", short_number(area.top), short_number(area.right),
                       short_number(area.bottom), short_number(area.left));
}

std::string lines_css(const Style& style, float line_height)
{
    std::string css = fmt::format("line-height:{}pt;", short_number(line_height)) + padding_css(style);
    if (style.vertical == VerticalAlign::Middle) css += "justify-content:center;";
    if (style.vertical == VerticalAlign::Bottom) css += "justify-content:flex-end;";
    return css + turn_css(style.rotation);
}

std::string image_css(const ImageData& data)
{
    const std::string& bytes = data.drawn.empty() ? data.bytes : data.drawn;  // a drawing stays sharp
    return fmt::format("background:url(data:{};base64,{}) 0 0/100% 100% no-repeat;", image_media_type(bytes),
                       to_base64(bytes));
}

std::string run_css(const TextRun& run)
{
    std::string css = font_css(*run.font) + "line-height:inherit;color:" + html_color(run.fore) + ";";
    if (run.back) css += "background-color:" + html_color(*run.back) + ";";
    if (run.script == TextRun::Script::Super) css += "vertical-align:super;font-size:65%;line-height:0;";
    if (run.script == TextRun::Script::Sub) css += "vertical-align:sub;font-size:65%;line-height:0;";
    return css;
}

}  // namespace

const std::string& HtmlStyles::class_of(const std::string& declarations)
{
    const auto [place, is_new] = names_.try_emplace(declarations);
    if (is_new) place->second = fmt::format("c{}", names_.size());
    return place->second;
}

const std::string& HtmlStyles::text(const Style& style)
{
    const std::string*& known = texts_[&style];
    if (known == nullptr) known = &class_of(text_css(style) + ground_css(style));
    return *known;
}

std::string HtmlStyles::ground(const Style& style)
{
    const std::string declarations = ground_css(style);
    return declarations.empty() ? "b" : class_of(declarations);
}

const std::string& HtmlStyles::lines(const Style& style, float line_height)
{
    const std::string*& known = lines_[{&style, line_height}];
    if (known == nullptr) known = &class_of(lines_css(style, line_height));
    return *known;
}

const std::string& HtmlStyles::run(const TextRun& run)
{
    return class_of(run_css(run));
}

const std::string& HtmlStyles::image(const std::shared_ptr<const ImageData>& data)
{
    const std::string*& known = images_[data.get()];
    if (known == nullptr) {
        kept_images_.push_back(data);
        known = &class_of(image_css(*data));
    }
    return *known;
}

void HtmlStyles::write(std::string& out) const
{
    std::map<std::string_view, std::string_view> by_name;
    for (const auto& [declarations, name] : names_) by_name.emplace(name, declarations);
    for (const auto& [name, declarations] : by_name) out += fmt::format(".{}{{{}}}\n", name, declarations);
}

std::string html_color(Color color)
{
    if (color.alpha != 255) {
        return fmt::format("rgba({},{},{},{})", color.red, color.green, color.blue, short_number(color.alpha / 255.0));
    }
    return fmt::format("#{:02x}{:02x}{:02x}", color.red, color.green, color.blue);
}

std::string html_font_families(const Font& font)
{
    const std::string_view name = font_family_name(font);
    // A quote or a closing bracket in a font's name would end the style sheet.
    std::string families = "'";
    std::copy_if(name.begin(), name.end(), std::back_inserter(families), [](char c) {
        return static_cast<unsigned char>(c) >= 0x20 &&
               std::string_view("'\"<>\\{};").find(c) == std::string_view::npos;
    });
    families += '\'';
    if (name == "DejaVu Sans") return families + ",Verdana,sans-serif";
    if (name == "DejaVu Sans Mono") return families + ",monospace";
    if (name == "DejaVu Serif") return families + ",serif";
    return families + ",'DejaVu Sans',sans-serif";
}

std::string html_box_geometry(const Style& style, const Place& place)
{
    const float left = style.box.left.width / 2, top = style.box.top.width / 2;
    const float right = style.box.right.width / 2, bottom = style.box.bottom.width / 2;
    std::string css;  // put together by hand: each element of each page has one
    for (const auto& [name, points] :
         {std::pair{"left:", place.x - left}, std::pair{"pt;top:", place.y - top},
          std::pair{"pt;width:", place.width + left + right}, std::pair{"pt;height:", place.height + top + bottom}}) {
        css += name;
        append_short_number(css, points);
    }
    return css += "pt";
}

bool html_needs_inner(const Style& style)
{
    return style.rotation != Rotation::None || style.vertical == VerticalAlign::Middle ||
           style.vertical == VerticalAlign::Bottom;
}

}  // namespace velora::engine
