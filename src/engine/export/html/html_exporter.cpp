#include "engine/export/html/html_exporter.h"

#include <fmt/format.h>

#include <set>

#include "engine/export/common/link_address.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/common/picture_fit.h"
#include "engine/export/common/short_number.h"
#include "engine/export/common/two_part_file.h"
#include "engine/export/html/html_drawing.h"
#include "engine/export/html/html_styles.h"
#include "engine/export/html/html_text.h"
#include "engine/page/picture_head.h"
#include "engine/text/visual_order.h"

namespace velora::engine {
namespace {

/// What holds for every file; the classes of the report's own styles follow.
constexpr std::string_view kCommonRules = R"(
html{background:#e8e8e8}
body{margin:0}
section{position:relative;overflow:hidden;background:#fff;margin:12pt auto;box-shadow:0 1pt 4pt rgba(0,0,0,.35)}
section div,section svg{overflow:visible;position:absolute;box-sizing:border-box;-webkit-print-color-adjust:exact;print-color-adjust:exact}
.t,.x{white-space:pre;tab-size:8}
.x{top:0;left:0;width:100%;height:100%;display:flex;flex-direction:column}
p{margin:0}
.j{white-space:normal;text-align:justify;text-align-last:justify}
a{color:inherit;text-decoration:inherit}
@media print{html{background:none}section{margin:0;box-shadow:none;break-after:page}section:last-of-type{break-after:auto}}
)";

/// The height of a text's line.
float line_height(const Text& text, const Style& style)
{
    const size_t lines = text.detail ? std::max<size_t>(1, text.detail->lines.size()) : 1;
    if (lines > 1) return text.detail->lines.front().height;
    return measured_height(text, style);
}

std::string geometry(const PictureBox& box)
{
    return fmt::format("left:{}pt;top:{}pt;width:{}pt;height:{}pt", short_number(box.x), short_number(box.y),
                       short_number(box.width), short_number(box.height));
}

class HtmlExporter : public PageSink {
public:
    HtmlExporter(std::unique_ptr<AtomicFile> file, std::function<void(const std::string&)> warn)
        : file_(std::move(file)), warn_(std::move(warn))
    {
    }

    void begin(const Document& document) override { document_ = &document; }
    void page(Page&& page) override;
    void end() override;

private:
    void element(const Element& element, const Place& place);
    void content(const Text& text, const Element& element, const Place& place);
    void content(const Line& line, const Element& element, const Place& place);
    void content(const Rectangle& rectangle, const Element& element, const Place& place);
    void content(const Ellipse& ellipse, const Element& element, const Place& place);
    void content(const Image& image, const Element& element, const Place& place);
    void content(const Frame& frame, const Element& element, const Place& place);
    void content(const Graphic& graphic, const Element& element, const Place& place);

    void outline(const Style& style, const Place& place, std::string_view corners);
    void open_box(std::string_view classes, const Style& style, const Place& place, const Anchor* anchor);
    void text_lines(const Text& text, const Style& style);
    void line(const Text& text, const TextLine& line, bool right_to_left);
    bool open_link(const Link& link);
    [[nodiscard]] std::string head() const;

    TwoPartFile file_;
    std::function<void(const std::string&)> warn_;
    const Document* document_ = nullptr;
    HtmlStyles styles_;
    std::set<std::string, std::less<>> anchors_;  ///< an identifier may stand only once
    int32_t pages_ = 0;
    std::string out_;
};

void HtmlExporter::page(Page&& page)
{
    out_ = fmt::format("<section id=\"page-{}\">\n", ++pages_);
    walk_elements(page.elements, [&](const Element& each, const Place& place) { element(each, place); });
    out_ += "</section>\n";
    file_.body(out_);
}

void HtmlExporter::element(const Element& element, const Place& place)
{
    std::visit([&](const auto& what) { content(what, element, place); }, element.content);
}

void HtmlExporter::open_box(std::string_view classes, const Style& style, const Place& place, const Anchor* anchor)
{
    out_.append("<div class=\"").append(classes).append("\" style=\"");
    out_.append(html_box_geometry(style, place)) += '"';
    if (anchor != nullptr && !anchor->name.empty()) {
        const std::string id = "a-" + anchor_identifier(anchor->name);
        if (anchors_.insert(id).second) out_ += " id=\"" + id + "\"";
    }
    out_ += '>';
}

bool HtmlExporter::open_link(const Link& link)
{
    std::string address;
    switch (link.kind) {
        case Link::Kind::None:
            return false;
        case Link::Kind::Reference:
            address = safe_address(link.target);
            break;
        case Link::Kind::LocalAnchor:
            address = "#a-" + anchor_identifier(link.anchor);
            break;
        case Link::Kind::LocalPage:
            address = fmt::format("#page-{}", link.page);
            break;
        case Link::Kind::RemoteAnchor:
            address = std::string(safe_address(link.target)) + "#" + anchor_identifier(link.anchor);
            break;
        case Link::Kind::RemotePage:
            address = fmt::format("{}#page={}", safe_address(link.target), link.page);
            break;
    }
    if (address.empty()) {
        if (warn_) warn_("A link is left out of the HTML file, its address could run a program: " + link.target);
        return false;
    }
    out_ += "<a href=\"" + html_escaped(address) + "\"";
    if (!link.tooltip.empty()) out_ += " title=\"" + html_escaped(link.tooltip) + "\"";
    out_ += '>';
    return true;
}

void HtmlExporter::content(const Text& text, const Element& element, const Place& place)
{
    const Style& style = *element.style;
    const std::string lines_class = styles_.lines(style, line_height(text, style));
    const bool inner = html_needs_inner(style);
    open_box(styles_.text(style) + (inner ? std::string() : " t " + lines_class), style, place,
             text.detail ? &text.detail->anchor : nullptr);
    const bool linked = text.detail && open_link(text.detail->link);
    if (inner) {
        const TextArea area = text_area(style, place);
        const bool turned = area.width != static_cast<float>(place.width);
        const std::string size = turned ? fmt::format(" style=\"width:{}pt;height:{}pt\"", short_number(area.width),
                                                      short_number(area.height))
                                        : std::string();
        out_ += fmt::format("<div class=\"x {}\"{}><p>", lines_class, size);
    }
    text_lines(text, style);
    if (inner) out_ += "</p></div>";
    if (linked) out_ += "</a>";
    out_ += "</div>\n";
}

/// Lines that stand alike are joined by line feeds; a line that is indented, stretched or of another height gets a
/// block of its own.
void HtmlExporter::text_lines(const Text& text, const Style& style)
{
    const auto shown = static_cast<uint32_t>(text.shown().size());
    ReadingOrder order(text.text);
    if (!text.detail || text.detail->lines.empty()) {
        const TextLine all{0, shown, 0, 0, 0, 0, true};
        return line(text, all, order.is_right_to_left(all));
    }
    const auto& lines = text.detail->lines;
    const float usual_height = line_height(text, style);
    bool joined = false;
    for (const TextLine& each : lines) {
        const bool right_to_left = order.is_right_to_left(each);
        const bool stretched = style.horizontal == HorizontalAlign::Justified && !each.ends_paragraph;
        const bool own_height = std::abs(each.height - usual_height) > 0.01F && lines.size() > 1;
        if (!stretched && !own_height && each.indent == 0) {
            if (joined) out_ += '\n';
            line(text, each, right_to_left);
            joined = true;
            continue;
        }
        joined = false;
        out_ += stretched ? "<span class=\"j\" style=\"display:block" : "<span style=\"display:block";
        if (own_height) out_ += fmt::format(";line-height:{}pt", short_number(each.height));
        if (each.indent != 0) out_ += fmt::format(";margin-left:{}pt", short_number(each.indent));
        out_ += "\">";
        line(text, each, right_to_left);
        out_ += "</span>";
    }
}

void HtmlExporter::line(const Text& text, const TextLine& line, bool right_to_left)
{
    const std::string_view all = text.shown();
    uint32_t begin = line.begin;
    const uint32_t end = std::min(line.end, static_cast<uint32_t>(all.size()));
    if (right_to_left) out_ += "<span dir=\"rtl\">";
    const auto plain_until = [&](uint32_t to) {
        if (to > begin) html_append(out_, all.substr(begin, to - begin));
        begin = std::max(begin, to);
    };
    if (text.detail) {
        for (const TextRun& run : text.detail->runs) {
            const uint32_t from = std::max(run.begin, begin), to = std::min(run.end, end);
            if (from >= to) continue;
            plain_until(from);
            out_ += "<span class=\"" + styles_.run(run) + "\">";
            const bool linked = !run.link.empty() && open_link({Link::Kind::Reference, run.link, {}, 0, {}});
            plain_until(to);
            out_ += linked ? "</a></span>" : "</span>";
        }
    }
    plain_until(end);
    if (right_to_left) out_ += "</span>";
}

/// A closed shape whose outline stands centred on the element's edges.
void HtmlExporter::outline(const Style& style, const Place& place, std::string_view corners)
{
    Style looks;
    looks.opaque = style.opaque;
    looks.back = style.back;
    looks.box.top = looks.box.left = looks.box.bottom = looks.box.right = style.pen;
    out_ += fmt::format("<div class=\"{}\" style=\"{}{}\"></div>\n", styles_.ground(looks),
                        html_box_geometry(looks, place), corners);
}

void HtmlExporter::content(const Rectangle&, const Element& element, const Place& place)
{
    const int radius = element.style->radius;
    outline(*element.style, place, radius > 0 ? fmt::format(";border-radius:{}pt", radius) : std::string());
}

void HtmlExporter::content(const Ellipse&, const Element& element, const Place& place)
{
    outline(*element.style, place, ";border-radius:50%");
}

void HtmlExporter::content(const Line&, const Element& element, const Place& place)
{
    const Style& style = *element.style;
    if (style.pen.width <= 0) return;
    const auto width = static_cast<float>(place.width), height = static_cast<float>(place.height);
    Shape shape{.path = {}, .closed = false, .filled = false, .fill = kBlack, .stroke = style.pen};
    switch (line_way(place)) {
        case LineWay::Level:
            shape.path = {Point{0, height / 2}, Point{width, height / 2}};
            break;
        case LineWay::Upright:
            shape.path = {Point{width / 2, 0}, Point{width / 2, height}};
            break;
        case LineWay::Across:
            shape.path = {Point{0, style.line_bottom_up ? height : 0}, Point{width, style.line_bottom_up ? 0 : height}};
            break;
    }
    out_ += fmt::format("<div style=\"left:{}pt;top:{}pt\">", place.x, place.y);
    html_append_drawing(out_, {std::max(width, 1.0F), std::max(height, 1.0F), {shape}, {}});
    out_ += "</div>\n";
}

void HtmlExporter::content(const Image& image, const Element& element, const Place& place)
{
    const Style& style = *element.style;
    open_box(styles_.ground(style), style, place, image.anchor.get());
    out_ += "</div>\n";
    if (!image.data || image_media_type(image.data->bytes).empty()) return;
    const bool linked = image.link && open_link(*image.link);
    const PictureBox box = fitted_picture(style, place, *image.data, Cut::Possible);
    const PictureBox area = picture_area(style, place);
    const bool cut = box.width > area.width || box.height > area.height;
    out_ += "<div role=\"img\" class=\"" + styles_.image(image.data) + "\" style=\"" + geometry(box);
    if (cut) {
        out_ += fmt::format(";clip-path:inset({}pt {}pt {}pt {}pt)", short_number(area.y - box.y),
                            short_number(box.x + box.width - area.x - area.width),
                            short_number(box.y + box.height - area.y - area.height), short_number(area.x - box.x));
    }
    out_ += linked ? "\"></div></a>\n" : "\"></div>\n";
}

void HtmlExporter::content(const Frame&, const Element& element, const Place& place)
{
    const Style& style = *element.style;
    const Box& box = style.box;
    const bool visible = style.opaque || box.top.width + box.left.width + box.bottom.width + box.right.width > 0;
    if (!visible) return;
    open_box(styles_.ground(style), style, place, nullptr);
    out_ += "</div>\n";
}

void HtmlExporter::content(const Graphic& graphic, const Element& element, const Place& place)
{
    open_box(styles_.ground(*element.style), *element.style, place, nullptr);
    if (graphic.drawing) html_append_drawing(out_, *graphic.drawing);
    out_ += "</div>\n";
}

std::string HtmlExporter::head() const
{
    const std::string language = document_->locale.substr(0, document_->locale.find('_'));
    std::string head = "<!DOCTYPE html>\n<html lang=\"" + html_escaped(language) +
                       "\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
                       html_escaped(document_->title.empty() ? document_->name : document_->title) + "</title>\n";
    if (!document_->author.empty()) {
        head += "<meta name=\"author\" content=\"" + html_escaped(document_->author) + "\">\n";
    }
    head += "<style>";
    head += kCommonRules;
    head += fmt::format("@page{{size:{0}pt {1}pt;margin:0}}\nsection{{width:{0}pt;height:{1}pt}}\n",
                        document_->page_width, document_->page_height);
    styles_.write(head);
    return head + "</style>\n</head>\n<body>\n";
}

void HtmlExporter::end()
{
    file_.finish(head(), "</body>\n</html>\n");
}

}  // namespace

std::unique_ptr<PageSink> make_html_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<HtmlExporter>(std::move(file), context.warn);
}

}  // namespace velora::engine
