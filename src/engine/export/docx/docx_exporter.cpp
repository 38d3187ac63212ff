#include "engine/export/docx/docx_exporter.h"

#include <array>
#include <cmath>

#include "engine/export/common/drawing_words.h"
#include "engine/export/common/office_parts.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/docx/docx_shapes.h"
#include "engine/export/docx/docx_text.h"
#include "engine/export/paint/drawing_picture.h"

namespace velora::engine {
namespace {

constexpr std::string_view kTypes = "application/vnd.openxmlformats-officedocument.wordprocessingml.";
constexpr std::string_view kSpaces =
    " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\""
    " xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\""
    " xmlns:wp=\"http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing\""
    " xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\""
    " xmlns:pic=\"http://schemas.openxmlformats.org/drawingml/2006/picture\""
    " xmlns:wps=\"http://schemas.microsoft.com/office/word/2010/wordprocessingShape\"";

/// The style that every paragraph has. Without one, frames are white boxes to some programs.
std::string styles_part(const Document& document)
{
    std::string out(kXmlHead);
    out.append("<w:styles").append(kSpaces).append("><w:docDefaults><w:rPrDefault>");
    append_character_settings(out, document.default_font, kBlack);
    return out +
           "</w:rPrDefault></w:docDefaults><w:style w:type=\"paragraph\" w:default=\"1\" w:styleId=\"Normal\">"
           "<w:name w:val=\"Normal\"/></w:style></w:styles>";
}

class DocxExporter : public PageSink {
public:
    DocxExporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
        : file_(std::move(file)), drawings_(context.fonts)
    {
    }

    void begin(const Document& document) override { document_ = &document; }
    void page(Page&& page) override;
    void end() override;

private:
    void element(const Element& element, const Place& place);
    void box(const Style& style, const Place& place);
    void line(const Style& style, const Place& place);
    [[nodiscard]] std::string section() const;

    std::unique_ptr<AtomicFile> file_;
    const Document* document_ = nullptr;
    DrawingPictures drawings_;
    OfficeRelations relations_;
    OfficePictures pictures_;
    DocxShapes shapes_{relations_, pictures_};
    DocxText texts_{relations_};
    std::string body_;
    std::string behind_;  ///< what the paragraph that ends the page carries
    std::string frames_;
    bool any_page_ = false;
};

/// Each page is a section: its frames, and a paragraph as thin as can be that carries all else and ends it.
void DocxExporter::page(Page&& page)
{
    if (any_page_) body_ += "<w:p><w:pPr>" + std::string(kThinParagraph) + section() + "</w:pPr>" + behind_ + "</w:p>";
    any_page_ = true;
    frames_.clear();
    behind_.clear();
    walk_elements(page.elements, [&](const Element& each, const Place& place) { element(each, place); });
    body_ += frames_;
}

void DocxExporter::element(const Element& element, const Place& place)
{
    const Style& style = *element.style;
    const Color* fill = style.opaque ? &style.back : nullptr;
    if (std::holds_alternative<Line>(element.content)) return line(style, place);
    if (std::holds_alternative<Ellipse>(element.content)) {
        return shapes_.closed(behind_, "ellipse", box_of(place), fill, style.pen);
    }
    if (std::holds_alternative<Rectangle>(element.content)) {
        return shapes_.closed(behind_, style.radius > 0 ? "roundRect" : "rect", box_of(place), fill, style.pen);
    }
    box(style, place);
    if (const auto* text = std::get_if<Text>(&element.content)) texts_.append(frames_, *text, style, place);
    if (const auto* image = std::get_if<Image>(&element.content)) {
        if (!image->data || !shown_picture(image->data->bytes)) return;
        shapes_.picture(behind_, fitted_picture(style, place, *image->data), image->data, {});
    }
    if (const auto* graphic = std::get_if<Graphic>(&element.content)) {
        const auto picture = graphic->drawing ? drawings_.picture(*graphic->drawing, style) : nullptr;
        if (picture) shapes_.picture(behind_, box_of(place), picture, drawing_words(*graphic->drawing));
    }
}

/// Ground and borders. Borders that differ are lines of their own.
void DocxExporter::box(const Style& style, const Place& place)
{
    const Box& borders = style.box;
    const PictureBox at = box_of(place);
    const bool alike = borders.top == borders.left && borders.top == borders.bottom && borders.top == borders.right;
    shapes_.closed(behind_, "rect", at, style.opaque ? &style.back : nullptr, alike ? borders.top : Pen{});
    if (alike) return;
    const float right = at.x + at.width, bottom = at.y + at.height;
    shapes_.line(behind_, {at.x, at.y}, {right, at.y}, borders.top);
    shapes_.line(behind_, {right, at.y}, {right, bottom}, borders.right);
    shapes_.line(behind_, {at.x, bottom}, {right, bottom}, borders.bottom);
    shapes_.line(behind_, {at.x, at.y}, {at.x, bottom}, borders.left);
}

void DocxExporter::line(const Style& style, const Place& place)
{
    const PictureBox at = box_of(place);
    const float right = at.x + at.width, bottom = at.y + at.height;
    switch (line_way(place)) {
        case LineWay::Level:
            return shapes_.line(behind_, {at.x, at.y + at.height / 2}, {right, at.y + at.height / 2}, style.pen);
        case LineWay::Upright:
            return shapes_.line(behind_, {at.x + at.width / 2, at.y}, {at.x + at.width / 2, bottom}, style.pen);
        case LineWay::Across:
            break;
    }
    const bool up = style.line_bottom_up;
    shapes_.line(behind_, {at.x, up ? bottom : at.y}, {right, up ? at.y : bottom}, style.pen);
}

std::string DocxExporter::section() const
{
    const auto twips = [](int32_t points) { return std::to_string(int64_t{points} * 20); };
    std::string out = "<w:sectPr><w:type w:val=\"nextPage\"/><w:pgSz w:w=\"" + twips(document_->page_width) +
                      "\" w:h=\"" + twips(document_->page_height) + "\"";
    if (document_->page_width > document_->page_height) out += " w:orient=\"landscape\"";
    // the margins hold nothing: what the page shows stands at places of its own
    return out +
           "/><w:pgMar w:top=\"0\" w:right=\"0\" w:bottom=\"0\" w:left=\"0\" w:header=\"0\" w:footer=\"0\" "
           "w:gutter=\"0\"/></w:sectPr>";
}

void DocxExporter::end()
{
    ZipFile zip(*file_, document_->created);
    std::string out(kXmlHead);
    out.append("<w:document").append(kSpaces).append("><w:body>").append(body_);
    out += "<w:p><w:pPr>" + std::string(kThinParagraph) + "</w:pPr>" + behind_ + "</w:p>" + section();
    out += "</w:body></w:document>";
    zip.add("word/document.xml", out);
    relations_.add("styles", "styles.xml");
    zip.add("word/styles.xml", styles_part(*document_));
    zip.add("word/_rels/document.xml.rels", relations_.xml());
    pictures_.write(zip, "word");
    write_office_frame(zip, *document_, "word/document.xml",
                       {{"word/document.xml", std::string(kTypes) + "document.main+xml"},
                        {"word/styles.xml", std::string(kTypes) + "styles+xml"}});
    zip.finish();
    file_->finish();
}

}  // namespace

std::unique_ptr<PageSink> make_docx_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<DocxExporter>(std::move(file), context);
}

}  // namespace velora::engine
