#include "engine/export/xls/xls_exporter.h"

#include "engine/export/xls/xls_workbook.h"
#include "values/atomic_file.h"

namespace velora::engine {
namespace {

class XlsExporter : public PageSink {
public:
    XlsExporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
        : file_(std::move(file)), warn_(context.warn), layout_(context.fonts)
    {
    }

    [[nodiscard]] bool wants_values() const override { return true; }
    void begin(const Document& document) override
    {
        document_ = &document;
        layout_.pages.speak(document.locale);
    }
    void page(Page&& page) override { layout_.pages.add(page); }
    void end() override;

private:
    void add_to_sheets(const XlsPage& page);

    void tell_of_hidden_texts() const;

    std::unique_ptr<AtomicFile> file_;
    std::function<void(const std::string&)> warn_;
    const Document* document_ = nullptr;
    XlsLayout layout_;
    std::vector<XlsSheet> sheets_;
};

/// A page longer than a sheet, as a report without page breaks gives, goes on in the next one.
void XlsExporter::add_to_sheets(const XlsPage& page)
{
    if (page.row_lines.size() < 2) return;
    const auto rows = static_cast<uint32_t>(page.row_lines.size() - 1);
    for (uint32_t from = 0; from < rows;) {
        const uint32_t to = std::min(rows, from + XlsSheet::kMostRows - 1);
        if (!sheets_.back().has_room(to - from)) sheets_.emplace_back(layout_);
        const int32_t gap = from == 0 ? std::max(0, page.row_lines.front() - layout_.paper.top) : 0;
        sheets_.back().add_page(page, from, to, gap);
        from = to;
    }
}

void XlsExporter::tell_of_hidden_texts() const
{
    uint32_t hidden = 0;
    for (const XlsSheet& sheet : sheets_) hidden += sheet.hidden();
    if (hidden == 0 || !warn_) return;
    warn_(std::to_string(hidden) + " texts lie behind others and are left out of the workbook");
}

void XlsExporter::end()
{
    layout_.settle(*document_);
    sheets_.emplace_back(layout_);
    for (const XlsPage& page : layout_.pages.pages()) add_to_sheets(page);
    tell_of_hidden_texts();
    const std::string& title = document_->title.empty() ? document_->name : document_->title;
    write_xls_workbook(*file_, {title, document_->author, document_->subject, document_->keywords}, layout_.styles,
                       layout_.strings, sheets_);
    file_->finish();
}

}  // namespace

std::unique_ptr<PageSink> make_xls_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<XlsExporter>(std::move(file), context);
}

}  // namespace velora::engine
