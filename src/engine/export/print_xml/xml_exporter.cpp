#include "engine/export/print_xml/xml_exporter.h"

#include <algorithm>

#include "engine/export/common/xml_text.h"
#include "engine/export/print_xml/drawing_text.h"
#include "engine/export/print_xml/xml_marked_text.h"
#include "engine/export/print_xml/xml_names.h"
#include "engine/page/color_text.h"
#include "engine/text/face.h"
#include "engine/text/font_store.h"
#include "values/atomic_file.h"
#include "values/base64.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

using namespace print_xml;

constexpr size_t kFlushAt = 1 << 16;

void append_pen(std::string& xml, const char* name, const Pen& pen)
{
    xml += '<';
    xml += name;
    append_number_attribute(xml, "lineWidth", pen.width);
    append_attribute(xml, "lineStyle", kLineStyles.name(pen.style));
    append_attribute(xml, "lineColor", color_text(pen.color));
    xml += "/>";
}

std::string box_xml(const Box& box)
{
    if (box == Box{}) return {};
    std::string xml = "<box";
    for (const auto& [name, padding] : kPaddings) {
        if (box.*padding != 0) append_number_attribute(xml, name, box.*padding);
    }
    xml += '>';
    for (const auto& [name, pen] : kBoxPens) {
        if (!(box.*pen == Pen{})) append_pen(xml, name, box.*pen);
    }
    return xml + "</box>";
}

std::string font_xml(const Font& font, const Font& usual)
{
    if (font == usual) return {};
    std::string xml = "<font";
    if (font.family != usual.family) append_attribute(xml, "fontName", font.family);
    if (font.size != usual.size) append_number_attribute(xml, "size", font.size);
    for (const auto& [name, flag] : kFontFlags) {
        if (font.*flag != usual.*flag) append_attribute(xml, name, font.*flag ? "true" : "false");
    }
    return xml + "/>";
}

std::string paragraph_xml(const Paragraph& paragraph)
{
    if (paragraph == Paragraph{}) return {};
    std::string xml = "<paragraph";
    if (paragraph.spacing != LineSpacing::Single) {
        append_attribute(xml, "lineSpacing", kSpacings.name(paragraph.spacing));
    }
    if (paragraph.spacing_size != 1) append_number_attribute(xml, "lineSpacingSize", paragraph.spacing_size);
    for (const auto& [name, length] : kParagraphLengths) {
        if (paragraph.*length != Paragraph{}.*length) append_number_attribute(xml, name, paragraph.*length);
    }
    return xml + "/>";
}

void append_link(std::string& xml, const Link& link)
{
    if (link.kind == Link::Kind::None) return;
    append_attribute(xml, "hyperlinkType", kLinks.name(link.kind));
    if (!link.target.empty()) append_attribute(xml, "hyperlinkReference", link.target);
    if (!link.anchor.empty()) append_attribute(xml, "hyperlinkAnchor", link.anchor);
    if (link.page != 0) append_number_attribute(xml, "hyperlinkPage", link.page);
    if (!link.tooltip.empty()) append_attribute(xml, "hyperlinkTooltip", link.tooltip);
}

void append_anchor(std::string& xml, const Anchor& anchor)
{
    if (!anchor.name.empty()) append_attribute(xml, "anchorName", anchor.name);
    if (anchor.bookmark_level != 0) append_number_attribute(xml, "bookmarkLevel", anchor.bookmark_level);
}

std::string lines_text(const std::vector<TextLine>& lines)
{
    std::string text;
    for (const TextLine& line : lines) {
        for (const uint32_t offset : {line.begin, line.end}) append_number(text, offset), text += ',';
        for (const float length : {line.width, line.ascent, line.height, line.indent}) {
            append_number(text, length);
            text += ',';
        }
        text += line.ends_paragraph ? "1;" : "0;";
    }
    return text;
}

/// The parts that every element with the same style repeats.
struct StyleXml {
    std::string text_attributes, image_attributes, colors, box, font, paragraph, pen;
    float line_spacing_factor = 0, leading_offset = 0;  ///< of a line in the style's font
};

class XmlExporter : public PageSink {
public:
    XmlExporter(std::unique_ptr<AtomicFile> file, FontStore& fonts) : file_(std::move(file)), fonts_(fonts) {}

    void begin(const Document& document) override;
    void page(Page&& page) override;
    void end() override
    {
        xml_ += "</jasperPrint>\n";
        file_->write(xml_);
        file_->finish();
    }

private:
    const StyleXml& style_xml(const Style& style);
    void write_element(const Element& element);
    void write_report_element(const Element& element, const StyleXml& style, std::string_view property = {},
                              std::string_view value = {});
    void write(const Element& element, const Text& text);
    void write(const Element& element, const Image& image);
    void write(const Element& element, const Frame& frame);
    void write(const Element& element, const Graphic& graphic);
    void write(const Element& element, const Line&) { write_shape(element, "line"); }
    void write(const Element& element, const Rectangle&) { write_shape(element, "rectangle"); }
    void write(const Element& element, const Ellipse&) { write_shape(element, "ellipse"); }
    void write_shape(const Element& element, const char* name);
    void write_origins();

    std::unique_ptr<AtomicFile> file_;
    FontStore& fonts_;
    const Document* document_ = nullptr;
    std::string xml_;
    std::unordered_map<const Style*, StyleXml> styles_;
    std::vector<size_t> origins_;  ///< by source
    std::unordered_map<uint32_t, uint32_t> printed_;
};

const StyleXml& XmlExporter::style_xml(const Style& style)
{
    const auto [entry, added] = styles_.try_emplace(&style);
    StyleXml& xml = entry->second;
    if (!added) return xml;
    const auto align = [&](std::string& attributes, const char* horizontal, const char* vertical) {
        if (style.horizontal != HorizontalAlign::Left) {
            append_attribute(attributes, horizontal, kHorizontal.name(style.horizontal));
        }
        if (style.vertical != VerticalAlign::Top)
            append_attribute(attributes, vertical, kVertical.name(style.vertical));
    };
    align(xml.text_attributes, "textAlignment", "verticalAlignment");
    if (style.rotation != Rotation::None)
        append_attribute(xml.text_attributes, "rotation", kRotations.name(style.rotation));
    if (!style.pattern.empty()) append_attribute(xml.text_attributes, "pattern", style.pattern);
    align(xml.image_attributes, "hAlign", "vAlign");
    if (style.scale != ScaleImage::RetainShape)
        append_attribute(xml.image_attributes, "scaleImage", kScales.name(style.scale));
    if (!(style.fore == kBlack)) append_attribute(xml.colors, "forecolor", color_text(style.fore));
    if (!(style.back == kWhite)) append_attribute(xml.colors, "backcolor", color_text(style.back));
    const Face& face = fonts_.face(style.font);
    const auto em = static_cast<float>(face.units_per_em());
    xml.line_spacing_factor = static_cast<float>(face.line_height()) / em;
    xml.leading_offset = -static_cast<float>(face.descent()) / em * style.font.size;
    xml.box = box_xml(style.box);
    xml.font = font_xml(style.font, document_->default_font);
    xml.paragraph = paragraph_xml(style.paragraph);
    xml.pen = "<graphicElement>";
    append_pen(xml.pen, "pen", style.pen);
    xml.pen += "</graphicElement>";
    return xml;
}

void XmlExporter::write_origins()
{
    std::vector<std::pair<std::string, std::string>> known;
    for (const Source& source : *document_->sources) {
        const std::pair origin{source.group, source.band};
        const auto found = std::ranges::find(known, origin);
        origins_.push_back(static_cast<size_t>(found - known.begin()));
        if (found != known.end()) continue;
        known.push_back(origin);
        xml_ += "\t<origin";
        if (!source.group.empty()) append_attribute(xml_, "group", source.group);
        if (!source.band.empty()) append_attribute(xml_, "band", source.band);
        xml_ += "/>\n";
    }
}

void XmlExporter::begin(const Document& document)
{
    document_ = &document;
    xml_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<jasperPrint";
    append_attribute(xml_, "name", document.name);
    for (const auto& [name, length] : kDocumentLengths) append_number_attribute(xml_, name, document.*length);
    if (document.landscape) append_attribute(xml_, "orientation", "Landscape");
    append_attribute(xml_, "locale", document.locale);
    append_attribute(xml_, "timezone", document.time_zone);
    xml_ += ">\n";
    const auto property = [&](const char* name, const std::string& value) {
        if (value.empty()) return;
        xml_ += "\t<property";
        append_attribute(xml_, "name", name);
        append_attribute(xml_, "value", value);
        xml_ += "/>\n";
    };
    for (const auto& [name, text] : kDocumentProperties) property(name, document.*text);
    if (document.created) property(kCreated, document.created->iso());
    write_origins();
    const Font& font = document.default_font;
    xml_ += "\t<style name=\"Default\" isDefault=\"true\"";
    append_attribute(xml_, "fontName", font.family);
    append_number_attribute(xml_, "fontSize", font.size);
    for (const auto& [name, flag] : kFontFlags) append_attribute(xml_, name, font.*flag ? "true" : "false");
    xml_ += "/>\n";
}

void XmlExporter::page(Page&& page)
{
    xml_ += "\t<page>\n";
    for (const Element& element : page.elements) write_element(element);
    xml_ += "\t</page>\n";
    if (xml_.size() < kFlushAt) return;
    file_->write(xml_);
    xml_.clear();
}

void XmlExporter::write_element(const Element& element)
{
    std::visit([&](const auto& content) { write(element, content); }, element.content);
}

void XmlExporter::write_report_element(const Element& element, const StyleXml& style, std::string_view property,
                                       std::string_view value)
{
    xml_ += "<reportElement";
    if (element.source < document_->sources->size()) {
        const Source& source = (*document_->sources)[element.source];
        if (!source.uuid.empty()) append_attribute(xml_, "uuid", source.uuid);
    }
    if (element.style->opaque != opaque_by_default(element)) {
        append_attribute(xml_, "mode", element.style->opaque ? "Opaque" : "Transparent");
    }
    append_number_attribute(xml_, "x", element.place.x);
    append_number_attribute(xml_, "y", element.place.y);
    append_number_attribute(xml_, "width", element.place.width);
    append_number_attribute(xml_, "height", element.place.height);
    xml_ += style.colors;
    if (element.source != 0) {
        if (element.source < origins_.size()) append_number_attribute(xml_, "origin", origins_[element.source]);
        append_number_attribute(xml_, "srcId", element.source);
        append_number_attribute(xml_, "printId", ++printed_[element.source]);
    }
    if (property.empty()) {
        xml_ += "/>";
        return;
    }
    xml_ += "><property";
    append_attribute(xml_, "name", property == kLines ? kLines : kDrawing);
    append_attribute(xml_, "value", value);
    xml_ += "/></reportElement>";
}

void XmlExporter::write(const Element& element, const Text& text)
{
    static const TextDetail kPlain;
    const TextDetail& detail = text.detail ? *text.detail : kPlain;
    const StyleXml& style = style_xml(*element.style);
    const bool by_lines = !detail.lines.empty();
    xml_ += "\t\t<text";
    append_number_attribute(xml_, "textHeight", text.text_height);
    const bool by_font = detail.line_spacing_factor == 0;
    append_number_attribute(xml_, "lineSpacingFactor",
                            by_font ? style.line_spacing_factor : detail.line_spacing_factor);
    append_number_attribute(xml_, "leadingOffset", by_font ? style.leading_offset : detail.leading_offset);
    xml_ += style.text_attributes;
    if (!detail.runs.empty()) append_attribute(xml_, "markup", detail.marked_as_html ? "html" : "styled");
    append_link(xml_, detail.link);
    append_anchor(xml_, detail.anchor);
    xml_ += ">\n\t\t\t";
    write_report_element(element, style, by_lines ? kLines : "", by_lines ? lines_text(detail.lines) : "");
    xml_ += style.box;
    xml_ += style.font;
    xml_ += style.paragraph;
    xml_ += "\n\t\t\t<textContent";
    if (detail.truncate_at) {
        append_number_attribute(xml_, "truncateIndex",
                                utf16_size(std::string_view(text.text).substr(0, *detail.truncate_at)));
    }
    xml_ += '>';
    append_xml_text(xml_, detail.runs.empty() ? text.text : marked_text(text.text, detail, *element.style));
    xml_ += "</textContent>\n\t\t</text>\n";
}

void XmlExporter::write(const Element& element, const Image& image)
{
    const StyleXml& style = style_xml(*element.style);
    xml_ += "\t\t<image";
    xml_ += style.image_attributes;
    if (image.link) append_link(xml_, *image.link);
    if (image.anchor) append_anchor(xml_, *image.anchor);
    xml_ += ">\n\t\t\t";
    write_report_element(element, style);
    xml_ += style.box;
    xml_ += style.pen;
    if (image.data)
        xml_ += "\n\t\t\t<imageSource isEmbedded=\"true\">" +
                to_base64(image.data->drawn.empty() ? image.data->bytes : image.data->drawn) + "</imageSource>";
    xml_ += "\n\t\t</image>\n";
}

void XmlExporter::write(const Element& element, const Frame& frame)
{
    const StyleXml& style = style_xml(*element.style);
    xml_ += "\t\t<frame>\n\t\t\t";
    write_report_element(element, style);
    xml_ += style.box;
    xml_ += '\n';
    for (const Element& child : frame.children) write_element(child);
    xml_ += "\t\t</frame>\n";
}

void XmlExporter::write(const Element& element, const Graphic& graphic)
{
    const StyleXml& style = style_xml(*element.style);
    xml_ += "\t\t<image>\n\t\t\t";
    write_report_element(element, style, kDrawing, graphic.drawing ? drawing_to_text(*graphic.drawing) : "");
    xml_ += style.box;
    xml_ += "\n\t\t</image>\n";
}

void XmlExporter::write_shape(const Element& element, const char* name)
{
    const Style& style = *element.style;
    xml_ += "\t\t<";
    xml_ += name;
    if (style.radius != 0 && std::holds_alternative<Rectangle>(element.content)) {
        append_number_attribute(xml_, "radius", style.radius);
    }
    if (style.line_bottom_up) append_attribute(xml_, "direction", "BottomUp");
    xml_ += ">\n\t\t\t";
    write_report_element(element, style_xml(style));
    xml_ += style_xml(style).pen;
    xml_ += "\n\t\t</";
    xml_ += name;
    xml_ += ">\n";
}

}  // namespace

std::unique_ptr<PageSink> make_xml_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<XmlExporter>(std::move(file), context.fonts);
}

}  // namespace velora::engine
