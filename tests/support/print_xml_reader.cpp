#include "support/print_xml_reader.h"

#include <charconv>
#include <pugixml.hpp>

#include "engine/export/print_xml/xml_names.h"
#include "engine/page/color_text.h"
#include "engine/text/markup.h"
#include "engine/text/measurer.h"
#include "support/drawing_reader.h"
#include "values/base64.h"
#include "values/fault.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

using namespace print_xml;
using pugi::xml_node;

template <class Number>
Number number(xml_node node, const char* name, Number otherwise)
{
    const std::string_view text = node.attribute(name).value();
    Number value = otherwise;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : otherwise;
}

Color color(xml_node node, const char* name, Color otherwise)
{
    return color_from_text(node.attribute(name).value()).value_or(otherwise);
}

void read_flags(xml_node node, Font& font)
{
    for (const auto& [name, flag] : kFontFlags) font.*flag = node.attribute(name).as_bool(font.*flag);
}

Pen read_pen(xml_node node, const Pen& otherwise)
{
    if (!node) return otherwise;
    return {number(node, "lineWidth", otherwise.width),
            kLineStyles.value(node.attribute("lineStyle").value(), otherwise.style),
            color(node, "lineColor", otherwise.color)};
}

Box read_box(xml_node node)
{
    Box box;
    const auto padding = number<int16_t>(node, "padding", 0);
    for (const auto& [name, length] : kPaddings) box.*length = number(node, name, padding);
    const Pen all = read_pen(node.child("pen"), Pen{});
    for (const auto& [name, pen] : kBoxPens) box.*pen = read_pen(node.child(name), all);
    return box;
}

Paragraph read_paragraph(xml_node node)
{
    Paragraph paragraph;
    paragraph.spacing = kSpacings.value(node.attribute("lineSpacing").value(), paragraph.spacing);
    paragraph.spacing_size = number(node, "lineSpacingSize", paragraph.spacing_size);
    for (const auto& [name, length] : kParagraphLengths) paragraph.*length = number(node, name, paragraph.*length);
    return paragraph;
}

Link read_link(xml_node node)
{
    return {kLinks.value(node.attribute("hyperlinkType").value(), Link::Kind::None),
            node.attribute("hyperlinkReference").value(), node.attribute("hyperlinkAnchor").value(),
            number(node, "hyperlinkPage", 0), node.attribute("hyperlinkTooltip").value()};
}

Anchor read_anchor(xml_node node)
{
    return {node.attribute("anchorName").value(), number(node, "bookmarkLevel", 0)};
}

/// Reads what `lines_text` of the writer wrote.
std::vector<TextLine> read_lines(std::string_view text)
{
    std::vector<TextLine> lines;
    const char* at = text.data();
    const char* const end = at + text.size();
    const auto take = [&](auto& value) {
        const auto result = std::from_chars(at, end, value);
        if (result.ec != std::errc() || result.ptr == end) return false;  // each number has a sign behind it
        at = result.ptr + 1;
        return true;
    };
    while (at != end) {
        TextLine line;
        int last = 0;
        const bool whole = take(line.begin) && take(line.end) && take(line.width) && take(line.ascent) &&
                           take(line.height) && take(line.indent) && take(last);
        if (!whole) break;
        line.ends_paragraph = last != 0;
        lines.push_back(line);
    }
    return lines;
}

/// Byte offset of a number of UTF-16 units.
uint32_t byte_offset(std::string_view text, uint32_t units)
{
    uint32_t at = 0;
    while (at < text.size() && units > 0) {
        const auto [character, size] = utf8_at(text, at);
        units -= std::min<uint32_t>(units, character > 0xFFFF ? 2 : 1);
        at += size;
    }
    return at;
}

class Reader {
public:
    Reader(xml_node root, PageSink& sink) : root_(root), sink_(sink) {}

    void read()
    {
        read_document();
        sink_.begin(document_);
        for (const xml_node node : root_.children("page")) sink_.page({read_elements(node)});
        sink_.end();
    }

private:
    void read_document();
    std::vector<Element> read_elements(xml_node parent);
    std::optional<Element> read_element(xml_node node);
    Style read_style(xml_node node, const Element& element) const;
    uint32_t read_source(xml_node box);
    Text read_text(xml_node node, const Style& style);
    static Image read_image(xml_node node);
    static std::string_view property(xml_node node, std::string_view name);

    xml_node root_;
    PageSink& sink_;
    Document document_;
    int depth_ = 0;  ///< of frames
    std::vector<std::pair<std::string, std::string>> origins_;
};

std::string_view Reader::property(xml_node node, std::string_view name)
{
    for (const xml_node child : node.children("property")) {
        if (child.attribute("name").value() == name) return child.attribute("value").value();
    }
    return {};
}

void Reader::read_document()
{
    document_.name = root_.attribute("name").value();
    for (const auto& [name, length] : kDocumentLengths) document_.*length = number(root_, name, document_.*length);
    document_.landscape = std::string_view(root_.attribute("orientation").value()) == "Landscape";
    document_.locale = root_.attribute("locale").as_string(document_.locale.c_str());
    document_.time_zone = root_.attribute("timezone").as_string(document_.time_zone.c_str());
    for (const auto& [name, text] : kDocumentProperties) document_.*text = property(root_, name);
    document_.created = DateTime::from_iso(property(root_, kCreated));
    for (const xml_node origin : root_.children("origin")) {
        origins_.emplace_back(origin.attribute("group").value(), origin.attribute("band").value());
    }
    const xml_node style = root_.find_child_by_attribute("style", "isDefault", "true");
    Font& font = document_.default_font;
    if (style.attribute("fontName")) font.family = style.attribute("fontName").value();
    font.size = number(style, "fontSize", font.size);
    read_flags(style, font);
}

std::vector<Element> Reader::read_elements(xml_node parent)
{
    constexpr int kDeepest = 256;
    if (++depth_ > kDeepest) throw Fault(fault::kReportFile, "The pages cannot be read: too many frames in frames.");
    std::vector<Element> elements;
    for (const xml_node node : parent.children()) {
        if (auto element = read_element(node)) elements.push_back(std::move(*element));
    }
    --depth_;
    return elements;
}

std::optional<Element> Reader::read_element(xml_node node)
{
    const xml_node box = node.child("reportElement");
    const std::string_view kind = node.name();
    Element element;
    element.place = {number(box, "x", 0), number(box, "y", 0), number(box, "width", 0), number(box, "height", 0)};
    if (kind == "line") {
        element.content = Line{};
    } else if (kind == "rectangle") {
        element.content = Rectangle{};
    } else if (kind == "ellipse") {
        element.content = Ellipse{};
    } else if (kind != "text" && kind != "image" && kind != "frame") {
        return std::nullopt;
    }
    const Style style = read_style(node, element);
    element.style = document_.styles->intern(style);
    element.source = read_source(box);
    if (kind == "text") element.content = read_text(node, style);
    if (kind == "frame") element.content = Frame{read_elements(node)};
    if (kind == "image") {
        const auto drawing = drawing_from_text(property(box, kDrawing));
        if (drawing) {
            element.content = Graphic{std::make_shared<const Drawing>(*drawing)};
        } else {
            element.content = read_image(node);
        }
    }
    return element;
}

Style Reader::read_style(xml_node node, const Element& element) const
{
    const xml_node box = node.child("reportElement");
    Style style;
    const std::string_view mode = box.attribute("mode").value();
    style.opaque = mode.empty() ? opaque_by_default(element) : mode == "Opaque";
    style.fore = color(box, "forecolor", style.fore);
    style.back = color(box, "backcolor", style.back);
    style.pen = read_pen(node.child("graphicElement").child("pen"), style.pen);
    style.radius = number(node, "radius", style.radius);
    style.line_bottom_up = std::string_view(node.attribute("direction").value()) == "BottomUp";
    style.box = read_box(node.child("box"));
    const bool image = std::string_view(node.name()) == "image";
    style.horizontal = kHorizontal.value(node.attribute(image ? "hAlign" : "textAlignment").value(), style.horizontal);
    style.vertical = kVertical.value(node.attribute(image ? "vAlign" : "verticalAlignment").value(), style.vertical);
    style.scale = kScales.value(node.attribute("scaleImage").value(), style.scale);
    style.font = document_.default_font;
    if (std::string_view(node.name()) != "text") return style;
    const xml_node font = node.child("font");
    if (font.attribute("fontName")) style.font.family = font.attribute("fontName").value();
    style.font.size = number(font, "size", style.font.size);
    read_flags(font, style.font);
    style.rotation = kRotations.value(node.attribute("rotation").value(), style.rotation);
    style.pattern = node.attribute("pattern").value();
    style.paragraph = read_paragraph(node.child("paragraph"));
    return style;
}

uint32_t Reader::read_source(xml_node box)
{
    constexpr uint32_t kMost = 100000;  // a number from outside must not decide how much memory is taken
    const auto id = number<uint32_t>(box, "srcId", 0);
    if (id == 0 || id > kMost) return 0;
    auto& sources = *document_.sources;
    if (sources.size() <= id) sources.resize(id + 1);
    sources[id].uuid = box.attribute("uuid").value();
    const auto origin = number<size_t>(box, "origin", origins_.size());
    if (origin < origins_.size()) std::tie(sources[id].group, sources[id].band) = origins_[origin];
    return id;
}

Text Reader::read_text(xml_node node, const Style& style)
{
    const xml_node content = node.child("textContent");
    TextDetail detail;
    Text text;
    const std::string_view markup = node.attribute("markup").value();
    detail.marked_as_html = markup == "html";
    if (markup == "styled" || markup == "html") {
        detail.marked = content.text().get();
        text.text =
            plain_text_of(detail.marked, detail.marked_as_html ? Markup::Html : Markup::Styled, style, detail.runs);
    } else {
        text.text = content.text().get();
    }
    text.text_height = number(node, "textHeight", 0.0F);
    detail.lines = read_lines(property(node.child("reportElement"), kLines));
    if (!detail.lines.empty()) {  // else they are those of the font
        detail.line_spacing_factor = number(node, "lineSpacingFactor", 0.0F);
        detail.leading_offset = number(node, "leadingOffset", 0.0F);
    }
    const auto size = static_cast<uint32_t>(text.text.size());
    std::erase_if(detail.lines, [&](const TextLine& line) { return line.begin > line.end || line.end > size; });
    if (content.attribute("truncateIndex")) {
        detail.truncate_at = byte_offset(text.text, number<uint32_t>(content, "truncateIndex", 0));
    }
    detail.link = read_link(node);
    detail.anchor = read_anchor(node);
    if (!(detail == TextDetail{})) text.detail = std::make_unique<TextDetail>(std::move(detail));
    return text;
}

Image Reader::read_image(xml_node node)
{
    Image image;
    const xml_node source = node.child("imageSource");
    if (source.attribute("isEmbedded").as_bool()) {
        image.data = std::make_shared<const ImageData>(ImageData{from_base64(source.text().get()).value_or(""), {}});
    }
    const Link link = read_link(node);
    if (link.kind != Link::Kind::None) image.link = std::make_shared<const Link>(link);
    const Anchor anchor = read_anchor(node);
    if (!(anchor == Anchor{})) image.anchor = std::make_shared<const Anchor>(anchor);
    return image;
}

}  // namespace

void read_print_xml(std::string_view xml, PageSink& sink)
{
    pugi::xml_document document;
    const auto result =
        document.load_buffer(xml.data(), xml.size(), pugi::parse_default | pugi::parse_ws_pcdata_single);
    if (!result) {
        throw Fault(fault::kReportFile, "The pages cannot be read: " + std::string(result.description()) + " at byte " +
                                            std::to_string(result.offset));
    }
    const xml_node root = document.child("jasperPrint");
    if (!root) throw Fault(fault::kReportFile, "The pages cannot be read: there is no 'jasperPrint' element.");
    Reader(root, sink).read();
}

}  // namespace velora::engine
