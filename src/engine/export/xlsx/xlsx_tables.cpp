#include "engine/export/xlsx/xlsx_tables.h"

#include <array>

#include "engine/export/common/office_parts.h"
#include "engine/export/common/xml_text.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr std::string_view kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

void append_color(std::string& out, const char* element, Color color)
{
    out.append("<").append(element);
    append_attribute(out, "rgb", "FF" + office_color(color));
    out += "/>";
}

/// @param name  what the element of the font's name is called
void append_font(std::string& out, const XlsStyles::FontKey& font, const XlsStyles& styles, const char* name)
{
    if ((font.traits & XlsStyles::kBold) != 0) out += "<b/>";
    if ((font.traits & XlsStyles::kItalic) != 0) out += "<i/>";
    if ((font.traits & XlsStyles::kStrike) != 0) out += "<strike/>";
    if ((font.traits & XlsStyles::kUnderline) != 0) out += "<u/>";
    out += "<sz";
    append_number_attribute(out, "val", font.twips / 20.0);
    out += "/>";
    if (font.color != 0) append_color(out, "color", styles.color_of(font.color));
    out.append("<").append(name);
    std::string family;
    append_utf16(family, font.written_name());
    append_attribute(out, "val", family);
    out += "/>";
}

const XlsStyles::FontKey& font_of(const XlsStyles& styles, uint16_t number)
{
    return styles.fonts()[number < 4 ? number : number - 1U];
}

void append_side(std::string& out, const char* side, const XlsBorder& border, const XlsStyles& styles)
{
    constexpr std::array kLines{"", "thin", "medium", "dashed", "dotted", "thick", "double", "hair", "mediumDashed"};
    out.append("<").append(side);
    if (border.line == 0) {
        out += "/>";
        return;
    }
    append_attribute(out, "style", kLines[border.line]);
    out += ">";
    append_color(out, "color", styles.color_of(border.color));
    out.append("</").append(side).append(">");
}

void append_cell_format(std::string& out, const XlsLooks& looks, size_t ground)
{
    constexpr std::array kHorizontal{"general", "left", "center", "right", "general", "justify"};
    constexpr std::array kVertical{"top", "center", "bottom", "justify"};
    out += "<xf";
    append_number_attribute(out, "numFmtId", looks.format);
    append_number_attribute(out, "fontId", looks.font < 4 ? looks.font : looks.font - 1);
    append_number_attribute(out, "fillId", ground + 2);
    append_number_attribute(out, "borderId", ground + 1);
    out +=
        " xfId=\"0\" applyNumberFormat=\"1\" applyFont=\"1\" applyFill=\"1\" applyBorder=\"1\" "
        "applyAlignment=\"1\"><alignment";
    append_attribute(out, "horizontal", kHorizontal.at(looks.horizontal));
    append_attribute(out, "vertical", kVertical.at(looks.vertical));
    if (looks.rotation != 0) append_number_attribute(out, "textRotation", unsigned{looks.rotation});
    if (looks.wrap) append_attribute(out, "wrapText", "1");
    if (looks.shrink) append_attribute(out, "shrinkToFit", "1");
    out += "/></xf>";
}

void append_grounds(std::string& out, const XlsStyles& styles)
{
    const auto count = [&](const char* name, size_t more) {
        out.append("<").append(name);
        append_number_attribute(out, "count", styles.cells().size() + more);
        out += ">";
    };
    count("fills", 2);
    out += "<fill><patternFill patternType=\"none\"/></fill><fill><patternFill patternType=\"gray125\"/></fill>";
    for (const auto& [looks, ground] : styles.cells()) {
        if (ground.fill == 0) {
            out += "<fill><patternFill patternType=\"none\"/></fill>";
            continue;
        }
        out += "<fill><patternFill patternType=\"solid\">";
        append_color(out, "fgColor", styles.color_of(ground.fill));
        out += "</patternFill></fill>";
    }
    out += "</fills>";
    count("borders", 1);
    out += "<border><left/><right/><top/><bottom/><diagonal/></border>";
    for (const auto& [looks, ground] : styles.cells()) {
        out += "<border>";
        append_side(out, "left", ground.left, styles);
        append_side(out, "right", ground.right, styles);
        append_side(out, "top", ground.top, styles);
        append_side(out, "bottom", ground.bottom, styles);
        out += "<diagonal/></border>";
    }
    out += "</borders>";
}

}  // namespace

std::string xlsx_styles(const XlsStyles& styles)
{
    std::string out = std::string(kXmlHead) + "<styleSheet xmlns=\"" + std::string(kMain) + "\">";
    if (!styles.formats().empty()) {
        out += "<numFmts";
        append_number_attribute(out, "count", styles.formats().size());
        out += ">";
        for (const auto& [code, number] : styles.formats()) {
            out += "<numFmt";
            append_number_attribute(out, "numFmtId", number);
            append_attribute(out, "formatCode", code);
            out += "/>";
        }
        out += "</numFmts>";
    }
    out += "<fonts";
    append_number_attribute(out, "count", styles.fonts().size());
    out += ">";
    for (const auto& font : styles.fonts()) {
        out += "<font>";
        append_font(out, font, styles, "name");
        out += "</font>";
    }
    out += "</fonts>";
    append_grounds(out, styles);
    out +=
        "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" "
        "borderId=\"0\"/></cellStyleXfs><cellXfs";
    append_number_attribute(out, "count", styles.cells().size());
    out += ">";
    for (size_t at = 0; at < styles.cells().size(); ++at) append_cell_format(out, styles.cells()[at].first, at);
    return out +
           "</cellXfs><cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"
           "</styleSheet>";
}

std::string xlsx_strings(const XlsStrings& strings, const XlsStyles& styles)
{
    std::string out = std::string(kXmlHead) + "<sst xmlns=\"" + std::string(kMain) + "\"";
    append_number_attribute(out, "uniqueCount", strings.size());
    out += ">";
    const auto append_text = [&](std::string_view text) {
        out += "<t xml:space=\"preserve\">";
        append_xml_text(out, text);
        out += "</t>";
    };
    for (uint32_t number = 0; number < strings.size(); ++number) {
        const std::string_view text = strings.text(number);
        const auto parts = strings.parts(number);
        out += "<si>";
        if (parts.empty()) append_text(text);
        if (!parts.empty() && parts.front().begin > 0) {
            out += "<r>";
            append_text(text.substr(0, parts.front().begin));
            out += "</r>";
        }
        for (size_t at = 0; at < parts.size(); ++at) {
            const size_t end = at + 1 < parts.size() ? parts[at + 1].begin : text.size();
            out += "<r><rPr>";
            append_font(out, font_of(styles, parts[at].font), styles, "rFont");
            out += "</rPr>";
            append_text(text.substr(parts[at].begin, end - parts[at].begin));
            out += "</r>";
        }
        out += "</si>";
    }
    return out + "</sst>";
}

}  // namespace velora::engine
