#include "engine/export/docx/docx_text.h"

#include <algorithm>
#include <cmath>

#include "engine/export/common/link_address.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/common/text_box.h"
#include "engine/export/common/xml_text.h"

namespace velora::engine {
namespace {

long twips(float points)
{
    return std::lround(points * 20);
}

std::string_view alignment(HorizontalAlign align)
{
    switch (align) {
        case HorizontalAlign::Center:
            return "center";
        case HorizontalAlign::Right:
            return "right";
        case HorizontalAlign::Justified:
            return "both";
        case HorizontalAlign::Left:
            break;
    }
    return "left";
}

/// Name of a bookmark: a letter first, at most 40 characters.
std::string bookmark_name(std::string_view anchor)
{
    std::string name = "a_";
    for (const char c : anchor_identifier(anchor)) name += c == '.' || c == '-' ? '_' : c;
    return name.substr(0, 40);
}

/// Lines may run past the edges of their frame where they do not stand against them: frames that were wider than their
/// texts would lie over each other.
void append_slack(std::string& out, HorizontalAlign align)
{
    if (align == HorizontalAlign::Justified) return;
    const float left = align == HorizontalAlign::Right    ? kTextSlack
                       : align == HorizontalAlign::Center ? kTextSlack / 2
                                                          : 0;
    out += "<w:ind";
    append_number_attribute(out, "w:left", -twips(left));
    append_number_attribute(out, "w:right", -twips(kTextSlack - left));
    out += "/>";
}

void append_paragraph_settings(std::string& out, const Text& text, const Style& style, const PictureBox& box)
{
    out += "<w:pPr><w:framePr";
    append_number_attribute(out, "w:w", std::max(twips(box.width), 1L));
    append_number_attribute(out, "w:h", std::max(twips(box.height), 1L));
    out += " w:hRule=\"atLeast\" w:wrap=\"none\" w:vAnchor=\"page\" w:hAnchor=\"page\"";
    // a place of zero would mean none
    const auto place = [](float at) { return twips(at) == 0 ? 1L : twips(at); };
    append_number_attribute(out, "w:x", place(box.x));
    append_number_attribute(out, "w:y", place(box.y));
    out += "/><w:spacing w:before=\"0\" w:after=\"0\"";
    append_number_attribute(out, "w:line", std::max(twips(line_height(text, style)), 1L));
    out += " w:lineRule=\"exact\"/>";
    append_slack(out, style.horizontal);
    out += "<w:jc";
    append_attribute(out, "w:val", alignment(style.horizontal));
    out += "/>";
    if (style.rotation == Rotation::Left) out += "<w:textDirection w:val=\"btLr\"/>";
    if (style.rotation == Rotation::Right) out += "<w:textDirection w:val=\"tbRl\"/>";
    out += "</w:pPr>";
}

/// Characters of a line; tabs and line feeds are elements of their own.
void append_characters(std::string& out, std::string_view text)
{
    while (!text.empty()) {
        const size_t end = std::min(text.find_first_of("\t\n\r"), text.size());
        if (end > 0) {
            out += "<w:t xml:space=\"preserve\">";
            append_xml_text(out, text.substr(0, end));
            out += "</w:t>";
        }
        if (end == text.size()) return;
        if (text[end] == '\t') out += "<w:tab/>";
        if (text[end] == '\n') out += "<w:br/>";
        text.remove_prefix(end + 1);
    }
}

}  // namespace

void append_character_settings(std::string& out, const Font& font, Color ink, const TextRun* run)
{
    const std::string family(font_family_name(font));
    out += "<w:rPr><w:rFonts";
    for (const char* script : {"w:ascii", "w:hAnsi", "w:cs", "w:eastAsia"}) append_attribute(out, script, family);
    out += "/>";
    if (font.bold) out += "<w:b/>";
    if (font.italic) out += "<w:i/>";
    if (font.strike_through) out += "<w:strike/>";
    out += "<w:color";
    append_attribute(out, "w:val", office_color(ink));
    out += "/><w:sz";
    append_number_attribute(out, "w:val", std::max(std::lround(font.size * 2), 1L));
    out += "/>";
    if (font.underline) out += "<w:u w:val=\"single\"/>";
    if (run != nullptr && run->back) {
        out += "<w:shd w:val=\"clear\" w:color=\"auto\"";
        append_attribute(out, "w:fill", office_color(*run->back));
        out += "/>";
    }
    if (run != nullptr && run->script != TextRun::Script::Normal) {
        out += "<w:vertAlign";
        append_attribute(out, "w:val", run->script == TextRun::Script::Super ? "superscript" : "subscript");
        out += "/>";
    }
    out += "</w:rPr>";
}

void DocxText::append(std::string& out, const Text& text, const Style& style, const Place& place)
{
    if (text.shown().empty()) return;
    const size_t lines = text.detail ? std::max<size_t>(1, text.detail->lines.size()) : 1;
    const float height = std::max(text.text_height, line_height(text, style) * static_cast<float>(lines));
    out += "<w:p>";
    append_paragraph_settings(out, text, style, text_box(style, place, height, 0));
    if (text.detail && !text.detail->anchor.name.empty()) {
        const std::string number = std::to_string(++bookmarks_);
        out += "<w:bookmarkStart w:id=\"" + number + "\" w:name=\"" + bookmark_name(text.detail->anchor.name) +
               "\"/><w:bookmarkEnd w:id=\"" + number + "\"/>";
    }
    const bool linked = text.detail && open_link(out, text.detail->link);
    append_lines(out, text, style);
    if (linked) out += "</w:hyperlink>";
    out += "</w:p>";
}

bool DocxText::open_link(std::string& out, const Link& link)
{
    const bool outside = link.kind == Link::Kind::Reference || link.kind == Link::Kind::RemotePage ||
                         link.kind == Link::Kind::RemoteAnchor;
    if (link.kind == Link::Kind::LocalAnchor) {
        out += "<w:hyperlink";
        append_attribute(out, "w:anchor", bookmark_name(link.anchor));
        out += ">";
        return true;
    }
    const std::string_view address = outside ? safe_address(link.target) : std::string_view();
    if (address.empty()) return false;
    out += "<w:hyperlink r:id=\"rId" + std::to_string(relations_.add("hyperlink", address, true)) + "\">";
    return true;
}

void DocxText::append_lines(std::string& out, const Text& text, const Style& style)
{
    if (!text.detail || text.detail->lines.empty()) {
        return append_part(out, text, style, 0, static_cast<uint32_t>(text.shown().size()));
    }
    for (const TextLine& line : text.detail->lines) {
        append_part(out, text, style, line.begin, line.end);
        if (&line != &text.detail->lines.back()) out += "<w:r><w:br/></w:r>";
    }
}

void DocxText::append_part(std::string& out, const Text& text, const Style& style, uint32_t begin, uint32_t end)
{
    const std::string_view all = text.shown();
    end = std::min(end, static_cast<uint32_t>(all.size()));
    const auto until = [&](uint32_t to, const Font& font, Color ink, const TextRun* run) {
        if (to <= begin) return;
        out += "<w:r>";
        append_character_settings(out, font, ink, run);
        append_characters(out, all.substr(begin, to - begin));
        out += "</w:r>";
        begin = to;
    };
    if (text.detail) {
        for (const TextRun& run : text.detail->runs) {
            const uint32_t from = std::max(run.begin, begin), to = std::min(run.end, end);
            if (from >= to) continue;
            until(from, style.font, style.fore, nullptr);
            until(to, *run.font, run.fore, &run);
        }
    }
    until(end, style.font, style.fore, nullptr);
}

}  // namespace velora::engine
