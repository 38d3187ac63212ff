#pragma once

#include <optional>
#include <vector>

#include "engine/export/xls/xls_page.h"

namespace velora::engine {

/// Cells from `top` and `left` on; `bottom` and `right` lie behind the range.
struct XlsRange {
    uint32_t top = 0, bottom = 0, left = 0, right = 0;

    [[nodiscard]] uint32_t area() const { return (bottom - top) * (right - left); }
};

struct XlsCell {
    XlsGround ground;
    int32_t item = -1;     ///< content that stands here
    bool covered = false;  ///< belongs to a content's range
    bool tight = false;    ///< the content may need more width than it has
};

/// The cells of one page, or of the rows of a long one that a sheet takes.
class XlsCells {
public:
    /// @param columns  lines between the columns, at least two
    XlsCells(const XlsPages& pages, const GridLines& columns, Measurer& measurer);

    /// Takes rows `from` up to `to` of the page. What finds no place goes to rows below it, up to `most_rows` in all.
    void fill(const XlsPage& page, uint32_t from, uint32_t to, size_t most_rows);

    [[nodiscard]] uint32_t columns() const { return columns_; }
    [[nodiscard]] uint32_t rows() const { return static_cast<uint32_t>(heights_.size()); }
    /// Points; at least as on the page, and as high as the texts in them need.
    [[nodiscard]] const std::vector<int32_t>& heights() const { return heights_; }
    [[nodiscard]] const XlsCell& at(uint32_t row, uint32_t column) const { return cells_[index(row, column)]; }
    /// Ranges of more than one cell.
    [[nodiscard]] const std::vector<XlsRange>& merges() const { return merges_; }
    [[nodiscard]] uint32_t hidden() const { return hidden_; }  ///< texts for which there was no row left
    /// Cells between the edges of an item. What is thinner than the grid still gets one cell.
    [[nodiscard]] XlsRange range_of(uint32_t span, uint32_t top, uint32_t bottom) const;

private:
    [[nodiscard]] size_t index(uint32_t row, uint32_t column) const { return size_t{row} * columns_ + column; }
    XlsCell& cell(uint32_t row, uint32_t column) { return cells_[index(row, column)]; }
    [[nodiscard]] bool taken(uint32_t row, uint32_t column) const { return at(row, column).covered; }
    [[nodiscard]] double points_between(uint32_t left, uint32_t right) const;

    void paint(const XlsRange& range, const XlsGround& ground);
    void paint_rule(const XlsItem& item);
    void place_contents(size_t most_rows);
    [[nodiscard]] std::optional<XlsRange> free_part(XlsRange range) const;
    [[nodiscard]] std::optional<XlsRange> free_beside(const XlsRange& range) const;
    void cover(size_t item, const XlsRange& range);
    void make_room_for_lines();

    const XlsPages& pages_;
    const GridLines& lines_;
    Measurer& measurer_;
    uint32_t columns_;

    const XlsPage* page_ = nullptr;
    uint32_t from_ = 0, to_ = 0;
    std::vector<XlsCell> cells_;
    std::vector<int32_t> heights_;
    std::vector<XlsRange> ranges_;  ///< of the contents, by item
    std::vector<XlsRange> merges_;
    uint32_t hidden_ = 0;
};

}  // namespace velora::engine
