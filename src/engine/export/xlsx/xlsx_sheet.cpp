#include "engine/export/xlsx/xlsx_sheet.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "engine/export/common/xml_text.h"

namespace velora::engine {
namespace {

constexpr std::string_view kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr int32_t kSlack = 14;  ///< points that rounding to whole pixels may add to a page

/// "A1"
std::string cell_name(uint32_t row, uint32_t column)
{
    std::string letters;
    for (uint32_t rest = column + 1; rest > 0; rest = (rest - 1) / 26) {
        letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
    }
    return letters + std::to_string(row + 1);
}

std::string range_name(const XlsRange& range)
{
    const std::string first = cell_name(range.top, range.left);
    return range.area() > 1 ? first + ":" + cell_name(range.bottom - 1, range.right - 1) : first;
}

XlsRange moved(const XlsRange& range, uint32_t rows)
{
    return {range.top + rows, range.bottom + rows, range.left, range.right};
}

long emu(double points)
{
    return std::lround(points * 12700);
}

}  // namespace

XlsxSheet::XlsxSheet(XlsLayout& layout) : layout_(layout), cells_(layout.pages, layout.columns, layout.measurer) {}

bool XlsxSheet::has_room(uint32_t rows) const
{
    return rows_ + rows + 1 <= kMostRows && breaks_.size() < kMostBreaks;
}

void XlsxSheet::add_page(const XlsPage& page, uint32_t from, uint32_t to, int32_t gap)
{
    if (rows_ > 0) breaks_.push_back(rows_);
    if (gap > 0) {
        if (rows_ == 0) first_gap_ = 1;
        row_head(rows_++, gap);
        table_ += "</row>";
    }
    cells_.fill(page, from, to, kMostRows - rows_);
    const auto& heights = cells_.heights();
    tallest_ = std::max(tallest_, std::accumulate(heights.begin(), heights.end(), gap));
    for (const XlsRange& range : cells_.merges()) merges_.push_back(moved(range, rows_));
    for (const XlsLink& link : page.links) {
        if (link.top < from || link.top >= to) continue;
        links_.emplace_back(moved(cells_.range_of(link.span, link.top, link.bottom), rows_), link.address);
    }
    place_pictures(page, from, to);
    for (uint32_t row = 0; row < cells_.rows(); ++row) {
        row_head(rows_ + row, heights[row]);
        for (uint32_t column = 0; column < cells_.columns(); ++column) write_cell(page, row, column);
        table_ += "</row>";
    }
    rows_ += cells_.rows();
}

void XlsxSheet::keep_in_view(const XlsPage& page, int32_t end)
{
    uint32_t rows = 0;
    while (rows + 1 < page.row_lines.size() && page.row_lines[rows] < end) ++rows;
    kept_rows_ = rows + first_gap_;
}

void XlsxSheet::row_head(uint32_t row, int32_t points)
{
    table_ += "<row";
    append_number_attribute(table_, "r", row + 1);
    append_number_attribute(table_, "ht", points);
    table_ += " customHeight=\"1\">";
}

void XlsxSheet::write_cell(const XlsPage& page, uint32_t row, uint32_t column)
{
    const XlsCell& at = cells_.at(row, column);
    if (at.item < 0 && at.ground == XlsGround{}) return;
    XlsLooks looks;
    const XlsItem* item = at.item < 0 ? nullptr : &page.items[static_cast<size_t>(at.item)];
    if (item != nullptr) {
        looks = layout_.pages.looks(item->looks);
        looks.shrink |= at.tight && !looks.wrap;
    }
    table_ += "<c";
    append_attribute(table_, "r", cell_name(rows_ + row, column));
    append_number_attribute(table_, "s", layout_.styles.cell(looks, at.ground) - XlsStyles::kPlainCell);
    if (item == nullptr) {
        table_ += "/>";
        return;
    }
    const bool number = item->kind == XlsItem::Kind::Number;
    table_ += number ? "><v>" : " t=\"s\"><v>";
    if (number) {
        append_number(table_, item->number);
    } else {
        append_number(table_, item->label.text);
    }
    table_ += "</v></c>";
}

/// A picture keeps its distance from the top of the row it begins in, and its size, however high the rows have become.
void XlsxSheet::place_pictures(const XlsPage& page, uint32_t from, uint32_t to)
{
    const auto& lines = page.row_lines;
    const auto& columns = layout_.columns.lines();
    for (const XlsPicture& picture : page.pictures) {
        const PictureBox& box = picture.place;
        if ((box.y < static_cast<float>(lines[from]) && from > 0) || box.y > static_cast<float>(lines[to])) continue;
        Anchored anchored;
        uint32_t row = from;
        while (row + 1 < to && static_cast<float>(lines[row + 1]) <= box.y) ++row;
        while (anchored.column + 2 < columns.size() && static_cast<float>(columns[anchored.column + 1]) <= box.x) {
            ++anchored.column;
        }
        anchored.row = rows_ + row - from;
        anchored.down = std::max(0.0, static_cast<double>(box.y) - lines[row]);
        anchored.across = std::max(0.0, static_cast<double>(box.x) - columns[anchored.column]);
        anchored.width = static_cast<double>(box.width);
        anchored.height = static_cast<double>(box.height);
        anchored.picture = &picture;
        pictures_.push_back(anchored);
    }
}

void XlsxSheet::append_view(std::string& out, bool first) const
{
    out += "<sheetViews><sheetView showGridLines=\"0\" workbookViewId=\"0\"";
    if (first) out += " tabSelected=\"1\"";
    if (kept_rows_ == 0) {
        out += "/></sheetViews>";
        return;
    }
    out += "><pane";
    append_number_attribute(out, "ySplit", kept_rows_);
    append_attribute(out, "topLeftCell", cell_name(kept_rows_, 0));
    out += " activePane=\"bottomLeft\" state=\"frozen\"/></sheetView></sheetViews>";
}

void XlsxSheet::append_columns(std::string& out) const
{
    out += "<cols>";
    const auto& lines = layout_.columns.lines();
    for (size_t column = 0; column + 1 < lines.size(); ++column) {
        out += "<col";
        append_number_attribute(out, "min", column + 1);
        append_number_attribute(out, "max", column + 1);
        append_number_attribute(out, "width", std::min((lines[column + 1] - lines[column]) / kXlsDigitPoints, 255.0));
        out += " customWidth=\"1\"/>";
    }
    out += "</cols>";
}

void XlsxSheet::append_merges(std::string& out) const
{
    if (merges_.empty()) return;
    out += "<mergeCells";
    append_number_attribute(out, "count", merges_.size());
    out += ">";
    for (const XlsRange& range : merges_) {
        out += "<mergeCell";
        append_attribute(out, "ref", range_name(range));
        out += "/>";
    }
    out += "</mergeCells>";
}

void XlsxSheet::append_links(std::string& out, OfficeRelations& relations) const
{
    if (links_.empty()) return;
    out += "<hyperlinks>";
    for (const auto& [range, address] : links_) {
        out += "<hyperlink";
        append_attribute(out, "ref", range_name(range));
        append_attribute(out, "r:id", "rId" + std::to_string(relations.add("hyperlink", address, true)));
        out += "/>";
    }
    out += "</hyperlinks>";
}

void XlsxSheet::append_page_setup(std::string& out) const
{
    const XlsPaper& paper = layout_.paper;
    const int32_t room = std::max(1, paper.height - paper.top - kSlack);
    const auto inches = [&](const char* name, int32_t points) { append_number_attribute(out, name, points / 72.0); };
    out += "<pageMargins";
    inches("left", paper.left);
    inches("right", paper.right);
    inches("top", paper.top);
    inches("bottom", std::max(0, room - tallest_));
    inches("header", 0);
    inches("footer", 0);
    out += "/><pageSetup";
    append_number_attribute(out, "paperSize", xls_paper_number(paper.width, paper.height));
    append_number_attribute(out, "scale", std::clamp(room * 100 / std::max(1, tallest_), 10, 100));
    append_attribute(out, "orientation", paper.landscape ? "landscape" : "portrait");
    out += "/>";
    if (breaks_.empty()) return;
    out += "<rowBreaks";
    append_number_attribute(out, "count", breaks_.size());
    append_number_attribute(out, "manualBreakCount", breaks_.size());
    out += ">";
    for (const uint32_t row : breaks_) {
        out += "<brk";
        append_number_attribute(out, "id", row);
        out += " max=\"16383\" man=\"1\"/>";
    }
    out += "</rowBreaks>";
}

std::string XlsxSheet::drawing(OfficePictures& pictures, OfficeRelations& relations) const
{
    std::string out(kXmlHead);
    out +=
        "<xdr:wsDr xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing\" "
        "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" xmlns:r=\"" +
        std::string(kOfficeTypes) + "\">";
    for (size_t at = 0; at < pictures_.size(); ++at) {
        const Anchored& each = pictures_[at];
        const auto length = [&](const char* name, double points) {
            out += "<xdr:" + std::string(name) + ">" + std::to_string(emu(points)) + "</xdr:" + name + ">";
        };
        out += "<xdr:oneCellAnchor><xdr:from><xdr:col>" + std::to_string(each.column) + "</xdr:col>";
        length("colOff", each.across);
        out += "<xdr:row>" + std::to_string(each.row) + "</xdr:row>";
        length("rowOff", each.down);
        out += "</xdr:from><xdr:ext";
        append_number_attribute(out, "cx", emu(each.width));
        append_number_attribute(out, "cy", emu(each.height));
        out += "/><xdr:pic><xdr:nvPicPr><xdr:cNvPr";
        append_number_attribute(out, "id", at + 2);
        append_attribute(out, "name", "Picture " + std::to_string(at + 1));
        append_attribute(out, "descr", each.picture->words);
        const size_t relation = relations.add("image", "../media/" + pictures.add(each.picture->data));
        out += "/><xdr:cNvPicPr/></xdr:nvPicPr><xdr:blipFill><a:blip r:embed=\"rId" + std::to_string(relation) +
               "\"/><a:stretch><a:fillRect/></a:stretch></xdr:blipFill><xdr:spPr><a:prstGeom prst=\"rect\"><a:avLst/>"
               "</a:prstGeom></xdr:spPr></xdr:pic><xdr:clientData/></xdr:oneCellAnchor>";
    }
    return out + "</xdr:wsDr>";
}

XlsxSheet::Parts XlsxSheet::parts(size_t number, OfficePictures& pictures) const
{
    Parts parts;
    OfficeRelations relations;
    std::string& out = parts.sheet;
    out = std::string(kXmlHead) + "<worksheet xmlns=\"" + std::string(kMain) + "\" xmlns:r=\"" +
          std::string(kOfficeTypes) + "\">";
    append_view(out, number == 0);
    out += "<sheetFormatPr defaultRowHeight=\"12.75\"/>";
    append_columns(out);
    out += "<sheetData>" + table_ + "</sheetData>";
    append_merges(out);
    append_links(out, relations);
    append_page_setup(out);
    if (!pictures_.empty()) {
        OfficeRelations shown;
        parts.drawing = drawing(pictures, shown);
        parts.drawing_relations = shown.xml();
        const size_t relation = relations.add("drawing", "../drawings/drawing" + std::to_string(number + 1) + ".xml");
        out += "<drawing r:id=\"rId" + std::to_string(relation) + "\"/>";
    }
    out += "</worksheet>";
    if (!relations.empty()) parts.relations = relations.xml();
    return parts;
}

}  // namespace velora::engine
