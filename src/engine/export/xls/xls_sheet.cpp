#include "engine/export/xls/xls_sheet.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velora::engine {
namespace {

constexpr uint16_t kBof = 0x0809, kEof = 0x000A, kRow = 0x0208, kBlank = 0x0201, kNumber = 0x0203, kLabel = 0x00FD;
constexpr uint32_t kRowsInBlock = 32;
constexpr size_t kMostMerges = 1026;  ///< in one record
constexpr int32_t kSlack = 14;        ///< points that rounding to whole pixels may add to a page

}  // namespace

XlsSheet::XlsSheet(XlsLayout& layout)
    : pages_(layout.pages),
      styles_(layout.styles),
      lines_(layout.columns),
      paper_(layout.paper),
      cells_(layout.pages, layout.columns, layout.measurer)
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
    cells_.fill(page, from, to, kMostRows - rows_);
    const auto& heights = cells_.heights();
    tallest_ = std::max(tallest_, std::accumulate(heights.begin(), heights.end(), gap));
    for (const XlsRange& range : cells_.merges()) merges_.push_back(in_sheet(range));
    place_links(page, from, to);
    place_pictures(page, from, to);
    write_rows(page);
    rows_ += cells_.rows();
}

XlsRange XlsSheet::in_sheet(const XlsRange& range) const
{
    return {range.top + rows_, range.bottom + rows_, range.left, range.right};
}

void XlsSheet::write_rows(const XlsPage& page)
{
    for (uint32_t block = 0; block < cells_.rows(); block += kRowsInBlock) {
        const uint32_t end = std::min(block + kRowsInBlock, cells_.rows());
        for (uint32_t row = block; row < end; ++row) write_row(rows_ + row, cells_.heights()[row]);
        for (uint32_t row = block; row < end; ++row) {
            for (uint32_t column = 0; column < cells_.columns(); ++column) write_cell(page, row, column);
        }
    }
}

void XlsSheet::write_row(uint32_t row, int32_t points)
{
    constexpr uint32_t kCustomHeight = 0x0140;
    XlsPayload payload;
    payload.u16(row).u16(0).u16(cells_.columns()).u16(static_cast<uint32_t>(points) * 20).u16(0).u16(0);
    payload.u32(kCustomHeight | uint32_t{XlsStyles::kPlainCell} << 16);
    table_.add(kRow, payload);
}

void XlsSheet::write_cell(const XlsPage& page, uint32_t row, uint32_t column)
{
    const XlsCell& at = cells_.at(row, column);
    XlsPayload payload;
    payload.u16(rows_ + row).u16(column);
    if (at.item < 0) {
        if (at.ground == XlsGround{}) return;
        payload.u16(styles_.cell({}, at.ground));
        return table_.add(kBlank, payload);
    }
    const XlsItem& item = page.items[static_cast<size_t>(at.item)];
    XlsLooks looks = pages_.looks(item.looks);
    looks.shrink |= at.tight && !looks.wrap;
    payload.u16(styles_.cell(looks, at.ground));
    if (item.kind == XlsItem::Kind::Number) return table_.add(kNumber, payload.f64(item.number));
    ++references_;
    table_.add(kLabel, payload.u32(item.label.text));
}

void XlsSheet::place_links(const XlsPage& page, uint32_t from, uint32_t to)
{
    for (const XlsLink& link : page.links) {
        if (link.top < from || link.top >= to) continue;
        links_.emplace_back(in_sheet(cells_.range_of(link.span, link.top, link.bottom)), link.address);
    }
}

namespace {

/// The cell that a place lies in and how far into it, told in `parts`. The cells begin at 0.
std::pair<uint16_t, uint16_t> cell_at(std::span<const int32_t> sizes, double at, int parts)
{
    size_t cell = 0;
    while (cell + 1 < sizes.size() && at >= sizes[cell]) at -= sizes[cell++];
    const double share = at / std::max(1, sizes[cell]);
    return {static_cast<uint16_t>(cell), static_cast<uint16_t>(std::clamp(share, 0.0, 0.999) * parts)};
}

std::vector<int32_t> sizes_between(const std::vector<int32_t>& lines)
{
    std::vector<int32_t> sizes;
    for (size_t i = 1; i < lines.size(); ++i) sizes.push_back(lines[i] - lines[i - 1]);
    return sizes;
}

}  // namespace

/// A picture keeps its distance from the top of the row it begins in, and its size, however high the rows have become.
void XlsSheet::place_pictures(const XlsPage& page, uint32_t from, uint32_t to)
{
    if (page.pictures.empty()) return;
    const std::vector<int32_t> widths = sizes_between(lines_.lines());
    const auto corner = [&](double x, double y) {
        const auto [column, across] = cell_at(widths, x - lines_.lines().front(), 1024);
        const auto [row, down] = cell_at(cells_.heights(), y, 256);
        return XlsAnchoredPicture::Corner{column, across, static_cast<uint16_t>(rows_ + row), down};
    };
    const auto& lines = page.row_lines;
    for (const XlsPicture& picture : page.pictures) {
        const PictureBox& box = picture.place;
        if ((box.y < static_cast<float>(lines[from]) && from > 0) || box.y > static_cast<float>(lines[to])) continue;
        double top = box.y - static_cast<float>(lines[from]);
        for (uint32_t row = from; row < to && static_cast<float>(lines[row + 1]) <= box.y; ++row) {
            top += cells_.heights()[row - from] - (lines[row + 1] - lines[row]);
        }
        // A little inside: rounded to pixels, a picture on a page's first row would show on the page before.
        constexpr double kInside = 0.75;
        pictures_.push_back(
            {corner(box.x, top + kInside), corner(box.x + box.width, top + box.height), picture.data, picture.words});
    }
}

void XlsSheet::write(XlsRecords& stream, bool selected, const XlsRecords& drawing) const
{
    stream.add(kBof, XlsPayload().u16(0x0600).u16(0x0010).u16(0x0DBB).u16(0x07CC).u32(0x41).u32(0x0006));
    write_settings(stream);
    write_page_setup(stream);
    write_columns(stream);
    stream.add(0x0200, XlsPayload().u32(0).u32(rows_).u16(0).u16(cells_.columns()).u16(0));
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
    const int32_t room = std::max(1, paper_.height - paper_.top - kSlack);  // rounding to whole pixels may add a little
    stream.add(0x0029, inches(std::max(0, room - tallest_)));
    const uint32_t flags = paper_.landscape ? 0U : 2U;
    stream.add(0x00A1, XlsPayload()
                           .u16(xls_paper_number(paper_.width, paper_.height))
                           .u16(static_cast<uint32_t>(std::clamp(room * 100 / std::max(1, tallest_), 10, 100)))
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
    for (uint32_t column = 0; column < cells_.columns(); ++column) {
        const double points = lines_.lines()[column + 1] - lines_.lines()[column];
        const auto width = static_cast<uint32_t>(std::lround(points / kXlsDigitPoints * 256));
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
            const XlsRange& range = merges_[i];
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
