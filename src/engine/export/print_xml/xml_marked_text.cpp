#include "engine/export/print_xml/xml_marked_text.h"

#include "engine/export/common/xml_text.h"
#include "engine/export/print_xml/xml_names.h"
#include "engine/page/color_text.h"

namespace velora::engine {
namespace {

void append_escaped(std::string& marked, std::string_view text)
{
    for (const char c : text) {
        if (c == '&') {
            marked += "&amp;";
        } else if (c == '<') {
            marked += "&lt;";
        } else if (c == '>') {
            marked += "&gt;";
        } else {
            marked += c;
        }
    }
}

std::string style_tag(const TextRun& run, const Style& style)
{
    const Font& font = *run.font;
    std::string tag = "<style";
    if (font.family != style.font.family) append_attribute(tag, "fontName", font.family);
    if (font.size != style.font.size) append_number_attribute(tag, "size", font.size);
    for (const auto& [name, flag] : print_xml::kFontFlags) {
        // A link sets its own underline, so that one is always told.
        const bool told = font.*flag != style.font.*flag || (!run.link.empty() && flag == &Font::underline);
        if (told) append_attribute(tag, name, font.*flag ? "true" : "false");
    }
    if (!(run.fore == style.fore)) append_attribute(tag, "forecolor", color_text(run.fore));
    if (run.back) append_attribute(tag, "backcolor", color_text(*run.back));
    return tag + ">";
}

void append_run(std::string& marked, std::string_view text, const TextRun& run, const Style& style)
{
    const char* script = run.script == TextRun::Script::Super ? "sup" : "sub";
    const bool shifted = run.script != TextRun::Script::Normal;
    if (!run.link.empty()) {
        marked += "<a";
        append_attribute(marked, "href", run.link);
        marked += '>';
    }
    marked += style_tag(run, style);
    if (shifted) marked += std::string("<") + script + ">";
    append_escaped(marked, text.substr(run.begin, run.end - run.begin));
    if (shifted) marked += std::string("</") + script + ">";
    marked += "</style>";
    if (!run.link.empty()) marked += "</a>";
}

}  // namespace

std::string marked_text(std::string_view text, const TextDetail& detail, const Style& style)
{
    if (!detail.marked.empty()) return detail.marked;
    std::string marked;
    uint32_t at = 0;
    for (const TextRun& run : detail.runs) {
        append_escaped(marked, text.substr(at, run.begin - at));
        append_run(marked, text, run, style);
        at = run.end;
    }
    append_escaped(marked, text.substr(at));
    return marked;
}

}  // namespace velora::engine
