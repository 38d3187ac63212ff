#include "engine/export/csv/csv_exporter.h"

#include <algorithm>
#include <map>

#include "engine/export/common/page_walk.h"
#include "values/number_text.h"

namespace velora::engine {
namespace {

constexpr int32_t kTolerance = 4;  ///< points by which cells of one line or column may stand apart

struct CsvCell {
    int32_t left = 0;
    int32_t top = 0;
    std::string text;
};

using CsvLine = std::vector<CsvCell>;

/// A value that programs read; else the text as it is printed.
std::string text_of(const Text& text)
{
    const Value* value = text.detail ? &text.detail->value : nullptr;
    if (value == nullptr || value->is_null() || value->type() == Value::Type::Text) return std::string(text.shown());
    if (const auto* date = value->get_if<DateTime>()) {
        const std::string iso = date->iso();
        return date->second_of_day() == 0 ? iso.substr(0, 10) : iso;
    }
    if (const auto* whole = value->get_if<int64_t>()) return std::to_string(*whole);
    if (value->get_if<bool>() != nullptr) return std::string(text.shown());
    return velora::plain_text(to_number(*value));
}

std::string as_cell(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text) c == '"' ? out += "\"\"" : out += c;
    return out + "\"";
}

class CsvExporter : public PageSink {
public:
    explicit CsvExporter(std::unique_ptr<AtomicFile> file) : file_(std::move(file)) {}

    [[nodiscard]] bool wants_values() const override { return true; }
    void begin(const Document& document) override { document_ = &document; }
    void page(Page&& page) override;
    void end() override;

private:
    void note(const Element& element, const Place& place);
    void find_columns();
    void write(const CsvLine& line);

    std::unique_ptr<AtomicFile> file_;
    const Document* document_ = nullptr;
    std::vector<CsvLine> heads_, rows_, others_;  ///< by kind of band
    std::vector<int32_t> columns_;
    std::vector<CsvCell> head_cells_, row_cells_, other_cells_;  ///< of the page at hand
};

void CsvExporter::note(const Element& element, const Place& place)
{
    const auto* text = std::get_if<Text>(&element.content);
    if (text == nullptr || text->shown().empty()) return;
    const auto& sources = *document_->sources;
    const std::string_view band = element.source < sources.size() ? sources[element.source].band : std::string_view();
    auto& cells = band == "columnHeader" ? head_cells_ : band == "detail" ? row_cells_ : other_cells_;
    cells.push_back({place.x, place.y, text_of(*text)});
}

/// Cells that stand at about the same height are a line.
void append_lines(std::vector<CsvCell>& cells, std::vector<CsvLine>& lines)
{
    std::ranges::stable_sort(cells, {}, &CsvCell::top);
    int32_t top = 0;
    bool open = false;
    for (CsvCell& cell : cells) {
        if (!open || cell.top > top + kTolerance) {
            lines.emplace_back();
            top = cell.top;
            open = true;
        }
        lines.back().push_back(std::move(cell));
    }
    cells.clear();
}

void CsvExporter::page(Page&& page)
{
    walk_elements(page.elements, [&](const Element& element, const Place& place) { note(element, place); });
    if (heads_.empty()) append_lines(head_cells_, heads_);
    head_cells_.clear();
    append_lines(row_cells_, rows_);
    append_lines(other_cells_, others_);
}

/// Left edges that stand apart by more than the tolerance are columns.
void CsvExporter::find_columns()
{
    std::vector<int32_t> edges;
    for (const auto* lines : {&heads_, &rows_}) {
        for (const CsvLine& line : *lines) {
            for (const CsvCell& cell : line) edges.push_back(cell.left);
        }
    }
    std::ranges::sort(edges);
    for (const int32_t edge : edges) {
        if (columns_.empty() || edge > columns_.back() + kTolerance) columns_.push_back(edge);
    }
}

/// A cell that stands where one is already goes behind it, with a blank between.
void CsvExporter::write(const CsvLine& line)
{
    std::map<size_t, std::string> cells;
    for (const CsvCell& cell : line) {
        const auto after = std::ranges::upper_bound(columns_, cell.left);
        std::string& text = cells[static_cast<size_t>(std::max<std::ptrdiff_t>(after - columns_.begin() - 1, 0))];
        if (!text.empty()) text += ' ';
        text += cell.text;
    }
    std::string out;
    for (size_t column = 0; column < columns_.size(); ++column) {
        if (column > 0) out += ',';
        if (const auto cell = cells.find(column); cell != cells.end()) out += as_cell(cell->second);
    }
    file_->write(out + "\r\n");
}

void CsvExporter::end()
{
    if (rows_.empty()) rows_ = std::move(others_);  // a report without rows says what it has
    find_columns();
    for (const CsvLine& line : heads_) write(line);
    for (const CsvLine& line : rows_) write(line);
    file_->finish();
}

}  // namespace

std::unique_ptr<PageSink> make_csv_exporter(std::unique_ptr<AtomicFile> file, const ExportContext&)
{
    return std::make_unique<CsvExporter>(std::move(file));
}

}  // namespace velora::engine
