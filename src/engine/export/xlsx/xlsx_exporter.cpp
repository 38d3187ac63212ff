#include "engine/export/xlsx/xlsx_exporter.h"

#include "engine/export/common/office_parts.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/common/xml_text.h"
#include "engine/export/xls/xls_layout.h"
#include "engine/export/xlsx/xlsx_sheet.h"
#include "engine/export/xlsx/xlsx_tables.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr std::string_view kTypes = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
constexpr std::string_view kDrawing = "application/vnd.openxmlformats-officedocument.drawing+xml";

class XlsxExporter : public PageSink {
public:
    XlsxExporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
        : file_(std::move(file)), warn_(context.warn), layout_(context.fonts)
    {
    }

    [[nodiscard]] bool wants_values() const override { return true; }
    void begin(const Document& document) override
    {
        document_ = &document;
        layout_.pages.speak(document.locale);
    }
    void page(Page&& page) override
    {
        if (layout_.pages.pages().empty()) heads_end_ = end_of_heads(page);
        layout_.pages.add(page);
    }
    void end() override;

private:
    [[nodiscard]] int32_t end_of_heads(const Page& page) const;
    void make_sheets();
    void write();

    std::unique_ptr<AtomicFile> file_;
    std::function<void(const std::string&)> warn_;
    const Document* document_ = nullptr;
    XlsLayout layout_;
    int32_t heads_end_ = 0;  ///< points; 0 where there are none
    std::vector<XlsxSheet> sheets_;
};

/// Where the heads of the columns end that the rows of the first page stand below.
int32_t XlsxExporter::end_of_heads(const Page& page) const
{
    int32_t end = 0;
    walk_elements(page.elements, [&](const Element& element, const Place& place) {
        const bool head =
            element.source < document_->sources->size() && (*document_->sources)[element.source].band == "columnHeader";
        if (head) end = std::max(end, place.y + place.height);
    });
    return end <= document_->page_height / 2 ? end : 0;
}

/// A page longer than a sheet goes on in the next one.
void XlsxExporter::make_sheets()
{
    sheets_.emplace_back(layout_);
    for (const XlsPage& page : layout_.pages.pages()) {
        if (page.row_lines.size() < 2) continue;
        const auto rows = static_cast<uint32_t>(page.row_lines.size() - 1);
        for (uint32_t from = 0; from < rows;) {
            const uint32_t to = std::min(rows, from + XlsxSheet::kMostRows - 1);
            if (!sheets_.back().has_room(to - from)) sheets_.emplace_back(layout_);
            const int32_t gap = from == 0 ? std::max(0, page.row_lines.front() - layout_.paper.top) : 0;
            sheets_.back().add_page(page, from, to, gap);
            from = to;
        }
    }
    if (heads_end_ > 0) sheets_.front().keep_in_view(layout_.pages.pages().front(), heads_end_);
}

void XlsxExporter::write()
{
    ZipFile zip(*file_, document_->created);
    std::vector<std::pair<std::string, std::string>> types;
    const auto part = [&](std::string name, std::string_view type, const std::string& bytes) {
        zip.add(name, bytes);
        types.emplace_back(std::move(name), type);
    };
    OfficePictures pictures;
    OfficeRelations relations;
    std::string list;
    const std::string& title = document_->title.empty() ? document_->name : document_->title;
    for (size_t at = 0; at < sheets_.size(); ++at) {
        const std::string number = std::to_string(at + 1);
        std::string name;
        append_utf16(name, xls_sheet_name(title, at, sheets_.size()));
        list += "<sheet";
        append_attribute(list, "name", name);
        append_number_attribute(list, "sheetId", at + 1);
        append_attribute(list, "r:id",
                         "rId" + std::to_string(relations.add("worksheet", "worksheets/sheet" + number + ".xml")));
        list += "/>";
        const XlsxSheet::Parts parts = sheets_[at].parts(at, pictures);
        part("xl/worksheets/sheet" + number + ".xml", std::string(kTypes) + "worksheet+xml", parts.sheet);
        if (!parts.relations.empty()) zip.add("xl/worksheets/_rels/sheet" + number + ".xml.rels", parts.relations);
        if (parts.drawing.empty()) continue;
        part("xl/drawings/drawing" + number + ".xml", kDrawing, parts.drawing);
        zip.add("xl/drawings/_rels/drawing" + number + ".xml.rels", parts.drawing_relations);
    }
    relations.add("styles", "styles.xml");
    relations.add("sharedStrings", "sharedStrings.xml");
    part("xl/styles.xml", std::string(kTypes) + "styles+xml", xlsx_styles(layout_.styles));
    part("xl/sharedStrings.xml", std::string(kTypes) + "sharedStrings+xml",
         xlsx_strings(layout_.strings, layout_.styles));
    part("xl/workbook.xml", std::string(kTypes) + "sheet.main+xml",
         std::string(kXmlHead) +
             "<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" xmlns:r=\"" +
             std::string(kOfficeTypes) + "\"><bookViews><workbookView/></bookViews><sheets>" + list +
             "</sheets></workbook>");
    zip.add("xl/_rels/workbook.xml.rels", relations.xml());
    pictures.write(zip, "xl");
    write_office_frame(zip, *document_, "xl/workbook.xml", types);
    zip.finish();
}

void XlsxExporter::end()
{
    layout_.settle(*document_);
    make_sheets();
    uint32_t hidden = 0;
    for (const XlsxSheet& sheet : sheets_) hidden += sheet.hidden();
    if (hidden > 0 && warn_) {
        warn_(std::to_string(hidden) + " texts lie behind others and are left out of the workbook");
    }
    write();
    file_->finish();
}

}  // namespace

std::unique_ptr<PageSink> make_xlsx_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<XlsxExporter>(std::move(file), context);
}

}  // namespace velora::engine
