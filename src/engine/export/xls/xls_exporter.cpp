#include "engine/export/xls/xls_exporter.h"

#include "engine/export/common/page_walk.h"
#include "engine/export/xls/xls_page.h"
#include "engine/export/xls/xls_workbook.h"
#include "values/atomic_file.h"

namespace velora::engine {
namespace {

constexpr int32_t kColumnTolerance = 4;
constexpr int32_t kWidestColumn = 1300;  ///< points; the format ends at 255 digits
constexpr size_t kMostColumns = 250;
constexpr int32_t kSlack = 14;  ///< points that rounding to whole pixels may add to a page

class XlsExporter : public PageSink {
public:
    XlsExporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
        : file_(std::move(file)),
          warn_(context.warn),
          measurer_(context.fonts),
          pages_(styles_, strings_, measurer_, context.fonts)
    {
    }

    [[nodiscard]] bool wants_values() const override { return true; }
    void begin(const Document& document) override
    {
        document_ = &document;
        pages_.speak(document.locale);
    }
    void page(Page&& page) override { pages_.add(page); }
    void end() override;

private:
    void find_columns();
    void find_margins();
    void add_to_sheets(const XlsPage& page);

    void tell_of_hidden_texts() const;

    std::unique_ptr<AtomicFile> file_;
    std::function<void(const std::string&)> warn_;
    const Document* document_ = nullptr;
    XlsStyles styles_;
    XlsStrings strings_;
    Measurer measurer_;
    XlsPages pages_;
    GridLines columns_{kColumnTolerance, kWidestColumn};
    XlsPaper paper_;
    std::vector<XlsSheet> sheets_;
};

void XlsExporter::find_columns()
{
    for (uint32_t number = 0; number < pages_.spans().size(); ++number) {
        const auto& [left, right] = pages_.spans().at(number);
        columns_.add(left);
        columns_.add(right);
    }
    columns_.solve(kMostColumns);
}

/// The margins end where the content begins, so that no empty row or column stands in front of it; behind it they
/// leave room for what rounding adds.
void XlsExporter::find_margins()
{
    int32_t top = INT32_MAX;
    for (const XlsPage& page : pages_.pages()) {
        if (page.row_lines.size() < 2) continue;
        top = std::min(top, page.row_lines.front());
    }
    const auto& columns = columns_.lines();
    paper_.width = std::clamp(document_->page_width, 0, kFarthest);
    paper_.height = std::clamp(document_->page_height, 0, kFarthest);
    paper_.landscape = document_->page_width > document_->page_height;
    paper_.left = std::clamp(columns.front(), 0, paper_.width);
    paper_.right = std::clamp(paper_.width - columns.back() - kSlack, 0, paper_.width);
    paper_.top = top == INT32_MAX ? 0 : std::clamp(top, 0, paper_.height);
}

/// A page longer than a sheet, as a report without page breaks gives, goes on in the next one.
void XlsExporter::add_to_sheets(const XlsPage& page)
{
    if (page.row_lines.size() < 2) return;
    const auto rows = static_cast<uint32_t>(page.row_lines.size() - 1);
    for (uint32_t from = 0; from < rows;) {
        const uint32_t to = std::min(rows, from + XlsSheet::kMostRows - 1);
        if (!sheets_.back().has_room(to - from)) sheets_.emplace_back(pages_, styles_, columns_, paper_, measurer_);
        const int32_t gap = from == 0 ? std::max(0, page.row_lines.front() - paper_.top) : 0;
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
    pages_.settle_amounts();
    find_columns();
    if (columns_.lines().size() < 2) {
        // Nothing to show: one empty cell makes a sheet all the same.
        columns_.clear();
        columns_.add({0, 0, 0});
        columns_.add({72, 72, 72});
        columns_.solve(kMostColumns);
    }
    find_margins();
    sheets_.emplace_back(pages_, styles_, columns_, paper_, measurer_);
    for (const XlsPage& page : pages_.pages()) add_to_sheets(page);
    tell_of_hidden_texts();
    const std::string& title = document_->title.empty() ? document_->name : document_->title;
    write_xls_workbook(*file_, {title, document_->author, document_->subject, document_->keywords}, styles_, strings_,
                       sheets_);
    file_->finish();
}

}  // namespace

std::unique_ptr<PageSink> make_xls_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context)
{
    return std::make_unique<XlsExporter>(std::move(file), context);
}

}  // namespace velora::engine
