#include "engine/export/text/txt_exporter.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "engine/export/common/output_file.h"
#include "engine/export/common/page_walk.h"
#include "engine/text/utf8.h"

namespace velora::engine {
namespace {

// Points that one character takes. Narrow enough for the usual small print to find room in its column.
constexpr double kCellWidth = 4.8;
constexpr double kCellHeight = 11;
constexpr size_t kMostColumns = 10000;  ///< a page that claims to be wider than a house is cut there

/// One page of character cells.
class Grid {
public:
    Grid(double width, double height)
        : columns_(std::min(static_cast<size_t>(std::ceil(width / kCellWidth)), kMostColumns)),
          row_count_(static_cast<size_t>(std::ceil(height / kCellHeight)))
    {
    }

    [[nodiscard]] size_t row_count() const { return row_count_; }

    void write(size_t row, size_t column, std::u32string_view text)
    {
        if (column >= columns_) return;
        text = text.substr(0, columns_ - column);
        std::u32string& cells = rows_[row];
        if (cells.size() < column + text.size()) cells.resize(column + text.size(), U' ');
        std::ranges::copy(text, cells.begin() + static_cast<std::ptrdiff_t>(column));
    }
    [[nodiscard]] bool free(size_t row, size_t column, size_t count) const
    {
        const auto found = rows_.find(row);
        if (found == rows_.end() || column >= found->second.size()) return true;
        const auto cells = std::u32string_view(found->second).substr(column, count);
        return std::ranges::all_of(cells, [](char32_t c) { return c == U' '; });
    }

    [[nodiscard]] std::string text() const
    {
        std::string result;
        size_t written = 0;  // blank rows at the end of a page are left out
        for (const auto& [number, row] : rows_) {
            const size_t end = row.find_last_not_of(U' ') + 1;
            if (end == 0) continue;
            result.append(number - written, '\n');
            for (const char32_t character : row.substr(0, end)) append_utf8(result, character);
            result += '\n';
            written = number + 1;
        }
        return result;
    }

private:
    size_t columns_, row_count_;
    std::map<size_t, std::u32string> rows_;  ///< those that hold something
};

std::u32string characters(std::string_view text)
{
    std::u32string result;
    for (size_t at = 0; at < text.size();) {
        const auto [character, size] = utf8_at(text, at);
        result += character < ' ' ? U' ' : character;
        at += size;
    }
    return result;
}

class TxtExporter : public PageSink {
public:
    explicit TxtExporter(std::unique_ptr<OutputFile> file) : file_(std::move(file)) {}

    void begin(const Document& document) override { document_ = &document; }
    void page(Page&& page) override;
    void end() override { file_->finish(); }

private:
    struct Placed {
        double y;
        const Text* text;
        const Style* style;
        Place place;
    };
    static void place_text(Grid& grid, const Placed& placed);
    static void place_line(Grid& grid, const Placed& placed, std::string_view line, size_t row);

    std::unique_ptr<OutputFile> file_;
    const Document* document_ = nullptr;
    bool first_ = true;
};

/// Puts a line into its column by its alignment; what is too long is cut where its box ends, or runs on over
/// free cells.
void TxtExporter::place_line(Grid& grid, const Placed& placed, std::string_view line, size_t row)
{
    const Box& box = placed.style->box;
    const double left = placed.place.x + box.left_padding;
    const double right = placed.place.x + placed.place.width - box.right_padding;
    const auto first = static_cast<size_t>(std::lround(std::max(left, 0.0) / kCellWidth));
    const auto last = std::max(static_cast<size_t>(std::lround(std::max(right, 0.0) / kCellWidth)), first + 1);
    std::u32string text = characters(line);
    const size_t room = last - first;
    size_t column = first;
    if (text.size() <= room) {
        const size_t spare = room - text.size();
        if (placed.style->horizontal == HorizontalAlign::Right) column += spare;
        if (placed.style->horizontal == HorizontalAlign::Center) column += spare / 2;
    } else if (placed.style->horizontal == HorizontalAlign::Right) {
        const size_t more = std::min(text.size() - room, first);
        if (grid.free(row, first - more, more)) column -= more;
    } else if (!grid.free(row, last, text.size() - room + 1)) {
        text.resize(room);
    }
    grid.write(row, column, text);
}

void TxtExporter::place_text(Grid& grid, const Placed& placed)
{
    const auto row_at = [&](double y) {
        return static_cast<size_t>(std::clamp(y / kCellHeight, 0.0, static_cast<double>(grid.row_count() - 1)));
    };
    const std::string_view text = placed.text->text;
    double y = placed.y;
    if (!placed.text->detail || placed.text->detail->lines.empty()) {
        place_line(grid, placed, placed.text->shown(), row_at(y + placed.text->text_height / 2));
        return;
    }
    size_t row = 0;
    for (const TextLine& line : placed.text->detail->lines) {
        row = std::max(row, row_at(y + line.height / 2));
        if (row >= grid.row_count()) return;
        place_line(grid, placed, text.substr(line.begin, line.end - line.begin), row);
        y += line.height;
        ++row;
    }
}

void TxtExporter::page(Page&& page)
{
    if (!first_) file_->write("\f");
    first_ = false;
    if (document_->page_width <= 0 || document_->page_height <= 0) return;
    std::vector<Placed> texts;
    walk_elements(page.elements, [&](const Element& element, const Place& place) {
        const auto* text = std::get_if<Text>(&element.content);
        if (text == nullptr || text->text.empty()) return;
        const Box& box = element.style->box;
        const double room = place.height - box.top_padding - box.bottom_padding - text->text_height;
        const double share = element.style->vertical == VerticalAlign::Middle   ? 0.5
                             : element.style->vertical == VerticalAlign::Bottom ? 1.0
                                                                                : 0.0;
        texts.push_back({place.y + box.top_padding + room * share, text, element.style, place});
    });
    // From left to right, so that a long text sees what it would run over only where that is to its right.
    std::ranges::stable_sort(texts, std::ranges::greater{}, [](const Placed& placed) { return placed.place.x; });
    Grid grid(document_->page_width, document_->page_height);
    for (const Placed& placed : texts) place_text(grid, placed);
    file_->write(grid.text());
}

}  // namespace

std::unique_ptr<PageSink> make_txt_exporter(std::unique_ptr<OutputFile> file, const ExportContext&)
{
    return std::make_unique<TxtExporter>(std::move(file));
}

}  // namespace velora::engine
