#include "engine/export/rtf/rtf_exporter.h"

#include <fmt/format.h>

#include <cmath>

#include "engine/export/common/drawing_words.h"
#include "engine/export/common/link_address.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/common/text_box.h"
#include "engine/export/common/two_part_file.h"
#include "engine/export/paint/drawing_picture.h"
#include "engine/export/rtf/rtf_shapes.h"
#include "engine/export/rtf/rtf_tables.h"
#include "values/text.h"

namespace velora::engine {
namespace {

/// Rich text whose every element is a drawing object at its place; a thin paragraph on each page carries them.
class RtfExporter : public PageSink {
public:
    RtfExporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
        : file_(std::move(file)), drawings_(context.fonts)
    {
    }

    void begin(const Document& document) override
    {
        document_ = &document;
        tables_.font(document.default_font);
    }
    void page(Page&& page) override;
    void end() override;

private:
    void element(const Element& element, const Place& place);
    void box(const Style& style, const Place& place);
    void text(const Text& text, const Style& style, const Place& place);
    void line(const Style& style, const Place& place);
    void image(const Image& image, const Style& style, const Place& place);
    [[nodiscard]] std::string paragraphs(const Text& text, const Style& style);
    void characters(std::string& out, const Text& text, uint32_t begin, uint32_t end);
    [[nodiscard]] std::string head() const;

    TwoPartFile file_;
    const Document* document_ = nullptr;
    RtfTables tables_;
    RtfShapes shapes_;
    DrawingPictures drawings_;
    int32_t pages_ = 0;
    std::string out_;
};

void RtfExporter::page(Page&& page)
{
    // The page breaks in front of an empty paragraph of its own: objects of a paragraph that itself starts a page are
    // taken for the page before.
    constexpr std::string_view kThin = "\\fs2\\sl-20\\slmult0 ";
    out_ = pages_++ == 0 ? std::string() : fmt::format("\\pard\\plain\\pagebb{}\\par\n", kThin);
    out_ += fmt::format("\\pard\\plain{}", kThin);
    walk_elements(page.elements, [&](const Element& each, const Place& place) { element(each, place); });
    out_ += "\\par\n";
    file_.body(out_);
}

void RtfExporter::element(const Element& element, const Place& place)
{
    const Style& style = *element.style;
    const Color* fill = style.opaque ? &style.back : nullptr;
    if (std::holds_alternative<Line>(element.content)) return line(style, place);
    if (std::holds_alternative<Ellipse>(element.content)) {
        return shapes_.closed(out_, RtfShapes::Kind::Ellipse, box_of(place), fill, style.pen);
    }
    if (std::holds_alternative<Rectangle>(element.content)) {
        const auto kind = style.radius > 0 ? RtfShapes::Kind::RoundRectangle : RtfShapes::Kind::Rectangle;
        return shapes_.closed(out_, kind, box_of(place), fill, style.pen, static_cast<float>(style.radius));
    }
    box(style, place);
    if (const auto* content = std::get_if<Text>(&element.content)) text(*content, style, place);
    if (const auto* content = std::get_if<Image>(&element.content)) image(*content, style, place);
    if (const auto* content = std::get_if<Graphic>(&element.content)) {
        const auto picture = content->drawing ? drawings_.picture(*content->drawing, style) : nullptr;
        if (picture) shapes_.picture(out_, box_of(place), picture->bytes, drawing_words(*content->drawing));
    }
}

/// Ground and borders. Borders that differ are lines of their own.
void RtfExporter::box(const Style& style, const Place& place)
{
    const Box& borders = style.box;
    const RtfBox at = box_of(place);
    const bool alike = borders.top == borders.left && borders.top == borders.bottom && borders.top == borders.right;
    shapes_.closed(out_, RtfShapes::Kind::Rectangle, at, style.opaque ? &style.back : nullptr,
                   alike ? borders.top : Pen{});
    if (alike) return;
    const Point corners[] = {
        {at.x, at.y}, {at.x + at.width, at.y}, {at.x + at.width, at.y + at.height}, {at.x, at.y + at.height}};
    shapes_.line(out_, corners[0], corners[1], borders.top);
    shapes_.line(out_, corners[1], corners[2], borders.right);
    shapes_.line(out_, corners[3], corners[2], borders.bottom);
    shapes_.line(out_, corners[0], corners[3], borders.left);
}

void RtfExporter::line(const Style& style, const Place& place)
{
    const RtfBox at = box_of(place);
    switch (line_way(place)) {
        case LineWay::Level:
            return shapes_.line(out_, {at.x, at.y + at.height / 2}, {at.x + at.width, at.y + at.height / 2}, style.pen);
        case LineWay::Upright:
            return shapes_.line(out_, {at.x + at.width / 2, at.y}, {at.x + at.width / 2, at.y + at.height}, style.pen);
        case LineWay::Across:
            break;
    }
    const float start = style.line_bottom_up ? at.y + at.height : at.y;
    const float end = style.line_bottom_up ? at.y : at.y + at.height;
    shapes_.line(out_, {at.x, start}, {at.x + at.width, end}, style.pen);
}

void RtfExporter::image(const Image& image, const Style& style, const Place& place)
{
    if (!image.data) return;
    const std::string& bytes = image.data->bytes;
    if (shown_picture(bytes)) shapes_.picture(out_, fitted_picture(style, place, *image.data), bytes);
}

void RtfExporter::text(const Text& text, const Style& style, const Place& place)
{
    if (text.shown().empty()) return;
    const size_t lines = text.detail ? std::max<size_t>(1, text.detail->lines.size()) : 1;
    const float height = std::max(text.text_height, line_height(text, style) * static_cast<float>(lines));
    std::string content;
    if (text.detail && !text.detail->anchor.name.empty()) {
        const std::string name = anchor_identifier(text.detail->anchor.name);
        content = fmt::format("{{\\*\\bkmkstart {0}}}{{\\*\\bkmkend {0}}}", name);
    }
    content += paragraphs(text, style);
    shapes_.text(out_, text_box(style, place, height, kTextSlack), style.rotation, content);
}

std::string_view alignment_word(HorizontalAlign align)
{
    switch (align) {
        case HorizontalAlign::Center:
            return "\\qc";
        case HorizontalAlign::Right:
            return "\\qr";
        case HorizontalAlign::Justified:
            return "\\qj";
        case HorizontalAlign::Left:
            break;
    }
    return "\\ql";
}

/// Field that a link becomes, up to the text that is shown. Empty when there is no link.
std::string link_field(const Link& link)
{
    std::string address;
    switch (link.kind) {
        case Link::Kind::Reference:
        case Link::Kind::RemotePage:
            address = "\"" + replaced(safe_address(link.target), "\"", "%22") + "\"";
            break;
        case Link::Kind::RemoteAnchor:
            address = "\"" + replaced(safe_address(link.target), "\"", "%22") + "\" \\l \"" +
                      anchor_identifier(link.anchor) + "\"";
            break;
        case Link::Kind::LocalAnchor:
            address = "\\l \"" + anchor_identifier(link.anchor) + "\"";
            break;
        case Link::Kind::LocalPage:
        case Link::Kind::None:
            return {};
    }
    if (address.starts_with("\"\"")) return {};
    std::string field = "{\\field{\\*\\fldinst HYPERLINK ";
    rtf_append(field, address);
    return field + "}{\\fldrslt ";
}

/// Lines as they were measured: a line break ends each, a paragraph's last one ends the paragraph.
std::string RtfExporter::paragraphs(const Text& text, const Style& style)
{
    std::string out =
        fmt::format("\\pard\\plain{}\\sl-{}\\slmult0{}", alignment_word(style.horizontal),
                    std::lround(line_height(text, style) * 20), tables_.character_format(style.font, style.fore));
    const std::string field = text.detail ? link_field(text.detail->link) : std::string();
    out += field;
    if (!text.detail || text.detail->lines.empty()) {
        characters(out, text, 0, static_cast<uint32_t>(text.shown().size()));
    } else {
        for (const TextLine& each : text.detail->lines) {
            characters(out, text, each.begin, each.end);
            if (&each != &text.detail->lines.back()) out += each.ends_paragraph ? "\\par " : "\\line ";
        }
    }
    if (!field.empty()) out += "}}";
    return out + "\\par";
}

void RtfExporter::characters(std::string& out, const Text& text, uint32_t begin, uint32_t end)
{
    const std::string_view all = text.shown();
    end = std::min(end, static_cast<uint32_t>(all.size()));
    const auto plain_until = [&](uint32_t to) {
        if (to > begin) rtf_append(out, all.substr(begin, to - begin));
        begin = std::max(begin, to);
    };
    if (text.detail) {
        for (const TextRun& run : text.detail->runs) {
            const uint32_t from = std::max(run.begin, begin), to = std::min(run.end, end);
            if (from >= to) continue;
            plain_until(from);
            out += run.script == TextRun::Script::Super ? "{\\super"
                   : run.script == TextRun::Script::Sub ? "{\\sub"
                                                        : "{";
            if (run.back) out += fmt::format("\\chcbpat{}", tables_.color(*run.back));
            out += tables_.character_format(*run.font, run.fore);
            plain_until(to);
            out += '}';
        }
    }
    plain_until(end);
}

std::string RtfExporter::head() const
{
    std::string head = "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n";
    tables_.write(head);
    head += "{\\info";
    const auto info = [&](std::string_view word, const std::string& text) {
        if (text.empty()) return;
        head += "{\\";
        head += word;
        head += ' ';
        rtf_append(head, text);
        head += '}';
    };
    info("title", document_->title.empty() ? document_->name : document_->title);
    info("author", document_->author);
    info("subject", document_->subject);
    info("keywords", document_->keywords);
    head += "}\n";
    const auto twips = [](int32_t points) { return int64_t{points} * 20; };
    head += fmt::format("\\paperw{}\\paperh{}\\margl{}\\margr{}\\margt{}\\margb{}{}\\viewkind1\\noproof\n",
                        twips(document_->page_width), twips(document_->page_height), twips(document_->left_margin),
                        twips(document_->right_margin), twips(document_->top_margin), twips(document_->bottom_margin),
                        document_->page_width > document_->page_height ? "\\landscape" : "");
    return head;
}

void RtfExporter::end()
{
    file_.finish(head(), "}\n");
}

}  // namespace

std::unique_ptr<PageSink> make_rtf_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<RtfExporter>(std::move(file), context);
}

}  // namespace velora::engine
