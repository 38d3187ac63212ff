#include "engine/export/xls/xls_sheet.h"

#include <cmath>

namespace velora::engine {
namespace {

constexpr uint16_t kBof = 0x0809, kEof = 0x000A, kRow = 0x0208, kBlank = 0x0201, kNumber = 0x0203, kLabel = 0x00FD;
constexpr uint32_t kRowsInBlock = 32;
constexpr double kDigitPoints = 6;    ///< width of a digit of the normal font: eight pixels of 96 an inch
constexpr size_t kMostMerges = 1026;  ///< in one record

XlsBorder& over(XlsBorder& border, const XlsBorder& with)
{
    if (with.line != 0) border = with;
    return border;
}

struct PaperSize {
    int32_t width, height;
    uint16_t number;
};
// clang-format off
constexpr PaperSize kPapers[] = {
    {595,  842, 9},   // A4
    {612,  792, 1},   // Letter
    {612, 1008, 5},   // Legal
    {842, 1191, 8},   // A3
    {420,  595, 11},  // A5
    {792, 1224, 3},   // Tabloid
    {522,  756, 7},   // Executive
    {709, 1001, 12},  // B4
    {516,  729, 13},  // B5
};
// clang-format on

/// The paper nearest in size; a workbook has no others.
uint16_t paper_number(int32_t width, int32_t height)
{
    const auto distance = [&](const PaperSize& paper) {
        return std::abs(paper.width - std::min(width, height)) + std::abs(paper.height - std::max(width, height));
    };
    return std::min_element(std::begin(kPapers), std::end(kPapers),
                            [&](const auto& a, const auto& b) { return distance(a) < distance(b); })
        ->number;
}

}  // namespace

XlsSheet::XlsSheet(const XlsPages& pages, XlsStyles& styles, const GridLines& columns, const XlsPaper& paper)
    : pages_(pages),
      styles_(styles),
      lines_(columns),
      paper_(paper),
      columns_(static_cast<uint32_t>(columns.lines().size() - 1))
{
}

bool XlsSheet::has_room(uint32_t rows) const
{
    return rows_ + rows + 1 <= kMostRows && breaks_.size() < kMostBreaks;
}

void XlsSheet::add_page(const XlsPage& page, uint32_t from, uint32_t to, int32_t gap)
{
    if (rows_ > 0) breaks_.push_back(rows_);
    if (gap > 0) write_row(rows_++, gap);
    cells_.assign(size_t{to - from} * columns_, {});
    for (const XlsItem& item : page.items) {
        if (item.top >= to || item.bottom < from) continue;
        const bool is_rule = item.kind == XlsItem::Kind::LevelRule || item.kind == XlsItem::Kind::UprightRule;
        if (is_rule) paint_rule(item, from, to);
        if (item.kind == XlsItem::Kind::Ground) paint(range_of(item, from, to), pages_.ground(item.looks));
    }
    place_contents(page, from, to);
    place_links(page, from, to);
    place_pictures(page, from, to);
    write_rows(page, from, to);
    rows_ += to - from;
}

/// Small texts go first, so that a large one behind the others (a watermark) takes what they leave.
void XlsSheet::place_contents(const XlsPage& page, uint32_t from, uint32_t to)
{
    std::vector<std::pair<uint32_t, size_t>> by_area;
    for (size_t i = 0; i < page.items.size(); ++i) {
        const XlsItem& item = page.items[i];
        const bool is_content = item.kind == XlsItem::Kind::Text || item.kind == XlsItem::Kind::Number;
        if (!is_content || item.top < from || item.top >= to) continue;
        const Range range = range_of(item, from, to);
        by_area.emplace_back((range.bottom - range.top) * (range.right - range.left), i);
    }
    std::sort(by_area.begin(), by_area.end());
    for (const auto& [area, i] : by_area) {
        place_content(page.items[i], static_cast<int32_t>(i), range_of(page.items[i], from, to));
    }
}

/// Cells of an item, relative to row `from`. What is thinner than the grid still gets one cell.
XlsSheet::Range XlsSheet::range_of(const XlsItem& item, uint32_t from, uint32_t to) const
{
    const auto& [left_edge, right_edge] = pages_.spans().at(item.span);
    const uint32_t left = std::min(lines_.line_of(left_edge), columns_ - 1);
    const uint32_t right = std::clamp(lines_.line_of(right_edge), left + 1, columns_);
    const uint32_t top = std::clamp(item.top, from, to - 1);
    return {top - from, std::clamp(item.bottom, top + 1, to) - from, left, right};
}

void XlsSheet::paint(const Range& range, const XlsGround& ground)
{
    for (uint32_t row = range.top; row < range.bottom; ++row) {
        for (uint32_t column = range.left; column < range.right; ++column) {
            XlsGround& under = cell(row, column).ground;
            if (ground.fill != 0) under.fill = ground.fill;
            if (row == range.top) over(under.top, ground.top);
            if (row + 1 == range.bottom) over(under.bottom, ground.bottom);
            if (column == range.left) over(under.left, ground.left);
            if (column + 1 == range.right) over(under.right, ground.right);
        }
    }
}

/// A rule becomes the border between two cells: the one above, or to the left, carries it.
void XlsSheet::paint_rule(const XlsItem& item, uint32_t from, uint32_t to)
{
    const XlsGround& rule = pages_.ground(item.looks);
    const auto& [left_edge, right_edge] = pages_.spans().at(item.span);
    const uint32_t left = lines_.line_of(left_edge);
    if (item.kind == XlsItem::Kind::LevelRule) {
        const uint32_t row = item.top - std::min(item.top, from);
        for (uint32_t column = left; column < lines_.line_of(right_edge); ++column) {
            row > 0 ? over(cell(row - 1, column).ground.bottom, rule.top) : over(cell(0, column).ground.top, rule.top);
        }
        return;
    }
    const uint32_t top = std::max(item.top, from) - from, bottom = std::min(item.bottom, to) - from;
    for (uint32_t row = top; row < bottom; ++row) {
        left > 0 ? over(cell(row, left - 1).ground.right, rule.left) : over(cell(row, 0).ground.left, rule.left);
    }
}

/// Ranges must not overlap. A text whose place is taken moves to the next free cell of its range, and shrinks to what
/// is free around that.
void XlsSheet::place_content(const XlsItem& item, int32_t number, Range range)
{
    const auto taken = [&](uint32_t row, uint32_t column) { return cell(row, column).covered; };
    while (range.top < range.bottom && taken(range.top, range.left)) {
        if (++range.left == range.right) {
            range.left = lines_.line_of(pages_.spans().at(item.span).first);
            ++range.top;
        }
    }
    if (range.top == range.bottom) {
        ++hidden_;
        return;
    }
    uint32_t right = range.left;
    while (right < range.right && !taken(range.top, right)) ++right;
    range.right = right;
    const auto row_is_free = [&](uint32_t row) {
        for (uint32_t column = range.left; column < range.right; ++column) {
            if (taken(row, column)) return false;
        }
        return true;
    };
    uint32_t bottom = range.top + 1;
    while (bottom < range.bottom && row_is_free(bottom)) ++bottom;
    range.bottom = bottom;

    for (uint32_t row = range.top; row < range.bottom; ++row) {
        for (uint32_t column = range.left; column < range.right; ++column) {
            cell(row, column).covered = true;
        }
    }
    cell(range.top, range.left).item = number;
    if (range.bottom - range.top > 1 || range.right - range.left > 1) {
        merges_.push_back({rows_ + range.top, rows_ + range.bottom, range.left, range.right});
    }
}

void XlsSheet::write_rows(const XlsPage& page, uint32_t from, uint32_t to)
{
    for (uint32_t block = from; block < to; block += kRowsInBlock) {
        const uint32_t end = std::min(block + kRowsInBlock, to);
        for (uint32_t row = block; row < end; ++row) {
            write_row(rows_ + row - from, page.row_lines[row + 1] - page.row_lines[row]);
        }
        for (uint32_t row = block; row < end; ++row) {
            for (uint32_t column = 0; column < columns_; ++column) write_cell(page, row - from, column);
        }
    }
}

void XlsSheet::write_row(uint32_t row, int32_t points)
{
    constexpr uint32_t kCustomHeight = 0x0140;
    XlsPayload payload;
    payload.u16(row).u16(0).u16(columns_).u16(static_cast<uint32_t>(points) * 20).u16(0).u16(0);
    payload.u32(kCustomHeight | uint32_t{XlsStyles::kPlainCell} << 16);
    table_.add(kRow, payload);
}

void XlsSheet::write_cell(const XlsPage& page, uint32_t row, uint32_t column)
{
    const Cell& at = cell(row, column);
    XlsPayload payload;
    payload.u16(rows_ + row).u16(column);
    if (at.item < 0) {
        if (at.ground == XlsGround{}) return;
        payload.u16(styles_.cell({}, at.ground));
        return table_.add(kBlank, payload);
    }
    const XlsItem& item = page.items[static_cast<size_t>(at.item)];
    payload.u16(styles_.cell(pages_.looks(item.looks), at.ground));
    if (item.kind == XlsItem::Kind::Number) return table_.add(kNumber, payload.f64(item.number));
    ++references_;
    table_.add(kLabel, payload.u32(item.text));
}

void XlsSheet::place_links(const XlsPage& page, uint32_t from, uint32_t to)
{
    for (const XlsLink& link : page.links) {
        if (link.top < from || link.top >= to) continue;
        XlsItem item;
        item.span = link.span;
        item.top = link.top;
        item.bottom = link.bottom;
        Range range = range_of(item, from, to);
        range.top += rows_;
        range.bottom += rows_;
        links_.emplace_back(range, link.address);
    }
}

namespace {

/// The cell that a place lies in, among the lines `first` to `last`, and how far into it, told in `parts`.
std::pair<size_t, uint16_t> cell_at(const std::vector<int32_t>& lines, float at, size_t first, size_t last, int parts)
{
    size_t cell = first;
    while (cell + 1 < last && static_cast<float>(lines[cell + 1]) <= at) ++cell;
    const float size = static_cast<float>(std::max(1, lines[cell + 1] - lines[cell]));
    const float share = (at - static_cast<float>(lines[cell])) / size;
    return {cell, static_cast<uint16_t>(std::clamp(share, 0.0F, 0.999F) * static_cast<float>(parts))};
}

}  // namespace

void XlsSheet::place_pictures(const XlsPage& page, uint32_t from, uint32_t to)
{
    const auto corner = [&](float x, float y) {
        const auto [column, across] = cell_at(lines_.lines(), x, 0, columns_, 1024);
        const auto [row, down] = cell_at(page.row_lines, y, from, to, 256);
        return XlsAnchoredPicture::Corner{static_cast<uint16_t>(column), across,
                                          static_cast<uint16_t>(rows_ + row - from), down};
    };
    for (const XlsPicture& picture : page.pictures) {
        const PictureBox& box = picture.place;
        const auto bottom_line = static_cast<float>(page.row_lines[to]);
        if ((box.y < static_cast<float>(page.row_lines[from]) && from > 0) || box.y > bottom_line) continue;
        // A little inside: rounded to pixels, a picture on a page's first row would show on the page before.
        constexpr float kInside = 0.75F;
        pictures_.push_back(
            {corner(box.x, box.y + kInside), corner(box.x + box.width, box.y + box.height), picture.data});
    }
}

void XlsSheet::write(XlsRecords& stream, bool selected, const XlsRecords& drawing) const
{
    stream.add(kBof, XlsPayload().u16(0x0600).u16(0x0010).u16(0x0DBB).u16(0x07CC).u32(0x41).u32(0x0006));
    write_settings(stream);
    write_page_setup(stream);
    write_columns(stream);
    stream.add(0x0200, XlsPayload().u32(0).u32(rows_).u16(0).u16(columns_).u16(0));
    stream.append(table_);
    stream.append(drawing);
    // Without lines between the cells: the sheet is to look like the page.
    const uint32_t view = 0x00B4U | (selected ? 0x0600U : 0U);
    stream.add(0x023E, XlsPayload().u16(view).u16(0).u16(0).u16(64).u16(0).u16(0).u16(0).u32(0));
    write_merges(stream);
    write_links(stream);
    stream.add(kEof);
}

void XlsSheet::write_settings(XlsRecords& stream) const
{
    stream.add(0x000D, XlsPayload().u16(1));      // calculate automatically
    stream.add(0x000C, XlsPayload().u16(100));    // rounds of an iteration
    stream.add(0x000F, XlsPayload().u16(1));      // references such as A1
    stream.add(0x0011, XlsPayload().u16(0));      // no iteration
    stream.add(0x0010, XlsPayload().f64(0.001));  // its precision
    stream.add(0x005F, XlsPayload().u16(1));      // calculate before saving
    stream.add(0x002A, XlsPayload().u16(0));      // print no row and column heads
    stream.add(0x002B, XlsPayload().u16(0));      // print no lines between the cells
    stream.add(0x0082, XlsPayload().u16(1));      // that setting was made
    stream.add(0x0080, XlsPayload().u32(0).u32(0));
    stream.add(0x0225, XlsPayload().u16(0).u16(255));  // height of other rows
    stream.add(0x0081, XlsPayload().u16(0x04C1));
}

void XlsSheet::write_page_setup(XlsRecords& stream) const
{
    if (!breaks_.empty()) {
        XlsPayload breaks;
        breaks.u16(static_cast<uint32_t>(breaks_.size()));
        for (const uint32_t row : breaks_) breaks.u16(row).u16(0).u16(255);
        stream.add(0x001B, breaks);
    }
    const auto inches = [](int32_t points) { return XlsPayload().f64(points / 72.0); };
    stream.add(0x0014);
    stream.add(0x0015);
    stream.add(0x0083, XlsPayload().u16(0));
    stream.add(0x0084, XlsPayload().u16(0));
    stream.add(0x0026, inches(paper_.left));
    stream.add(0x0027, inches(paper_.right));
    stream.add(0x0028, inches(paper_.top));
    stream.add(0x0029, inches(paper_.bottom));
    const uint32_t flags = paper_.landscape ? 0U : 2U;
    stream.add(0x00A1, XlsPayload()
                           .u16(paper_number(paper_.width, paper_.height))
                           .u16(100)
                           .u16(1)
                           .u16(1)
                           .u16(0)
                           .u16(flags)
                           .u16(600)
                           .u16(600)
                           .f64(0)
                           .f64(0)
                           .u16(1));
}

void XlsSheet::write_columns(XlsRecords& stream) const
{
    stream.add(0x0055, XlsPayload().u16(8));
    for (uint32_t column = 0; column < columns_; ++column) {
        const double points = lines_.lines()[column + 1] - lines_.lines()[column];
        const auto width = static_cast<uint32_t>(std::lround(points / kDigitPoints * 256));
        stream.add(
            0x007D,
            XlsPayload().u16(column).u16(column).u16(std::min(width, 65280U)).u16(XlsStyles::kPlainCell).u16(2).u16(0));
    }
}

void XlsSheet::write_merges(XlsRecords& stream) const
{
    for (size_t first = 0; first < merges_.size(); first += kMostMerges) {
        const size_t count = std::min(kMostMerges, merges_.size() - first);
        XlsPayload payload;
        payload.u16(static_cast<uint32_t>(count));
        for (size_t i = first; i < first + count; ++i) {
            const Range& range = merges_[i];
            payload.u16(range.top).u16(range.bottom - 1).u16(range.left).u16(range.right - 1);
        }
        stream.add(0x00E5, payload);
    }
}

void XlsSheet::write_links(XlsRecords& stream) const
{
    constexpr std::string_view kLinkClass("\xD0\xC9\xEA\x79\xF9\xBA\xCE\x11\x8C\x82\x00\xAA\x00\x4B\xA9\x0B", 16);
    constexpr std::string_view kAddressClass("\xE0\xC9\xEA\x79\xF9\xBA\xCE\x11\x8C\x82\x00\xAA\x00\x4B\xA9\x0B", 16);
    for (const auto& [range, address] : links_) {
        const std::u16string units = xls_utf16(address);
        XlsPayload payload;
        payload.u16(range.top).u16(range.bottom - 1).u16(range.left).u16(range.right - 1);
        payload.raw(kLinkClass).u32(2).u32(3).raw(kAddressClass);
        payload.u32(static_cast<uint32_t>((units.size() + 1) * 2));
        for (const char16_t unit : units) payload.u16(unit);
        stream.add(0x01B8, payload.u16(0));
    }
}

}  // namespace velora::engine
