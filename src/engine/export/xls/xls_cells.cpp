#include "engine/export/xls/xls_cells.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velora::engine {
namespace {

constexpr int32_t kTallestRow = 409;  ///< points
constexpr int32_t kSpareRow = 15;     ///< height of a row for what found no place

// A spreadsheet leaves a margin in each cell and rounds letters to pixels: it breaks lines earlier than the page does.
constexpr double kCellMargins = 5;
constexpr double kWiderLetters = 1.06;

XlsBorder& over(XlsBorder& border, const XlsBorder& with)
{
    if (with.line != 0) border = with;
    return border;
}

bool is_content(const XlsItem& item)
{
    return item.kind == XlsItem::Kind::Text || item.kind == XlsItem::Kind::Number;
}

}  // namespace

XlsCells::XlsCells(const XlsPages& pages, const GridLines& columns, Measurer& measurer)
    : pages_(pages), lines_(columns), measurer_(measurer), columns_(static_cast<uint32_t>(columns.lines().size() - 1))
{
}

void XlsCells::fill(const XlsPage& page, uint32_t from, uint32_t to, size_t most_rows)
{
    page_ = &page;
    from_ = from;
    to_ = to;
    cells_.assign(size_t{to - from} * columns_, {});
    heights_.clear();
    for (uint32_t row = from; row < to; ++row) heights_.push_back(page.row_lines[row + 1] - page.row_lines[row]);
    ranges_.assign(page.items.size(), {});
    merges_.clear();
    for (const XlsItem& item : page.items) {
        if (item.top >= to || item.bottom < from) continue;
        const bool is_rule = item.kind == XlsItem::Kind::LevelRule || item.kind == XlsItem::Kind::UprightRule;
        if (is_rule) paint_rule(item);
        if (item.kind == XlsItem::Kind::Ground) {
            paint(range_of(item.span, item.top, item.bottom), pages_.ground(item.looks));
        }
    }
    place_contents(most_rows);
    make_room_for_lines();
}

XlsRange XlsCells::range_of(uint32_t span, uint32_t top_line, uint32_t bottom_line) const
{
    const auto& [left_edge, right_edge] = pages_.spans().at(span);
    const uint32_t left = std::min(lines_.line_of(left_edge), columns_ - 1);
    const uint32_t right = std::clamp(lines_.line_of(right_edge), left + 1, columns_);
    const uint32_t top = std::clamp(top_line, from_, to_ - 1);
    return {top - from_, std::clamp(bottom_line, top + 1, to_) - from_, left, right};
}

double XlsCells::points_between(uint32_t left, uint32_t right) const
{
    return lines_.lines()[right] - lines_.lines()[left];
}

void XlsCells::paint(const XlsRange& range, const XlsGround& ground)
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
void XlsCells::paint_rule(const XlsItem& item)
{
    const XlsGround& rule = pages_.ground(item.looks);
    const auto& [left_edge, right_edge] = pages_.spans().at(item.span);
    const uint32_t left = lines_.line_of(left_edge);
    if (item.kind == XlsItem::Kind::LevelRule) {
        const uint32_t row = item.top - std::min(item.top, from_);
        for (uint32_t column = left; column < lines_.line_of(right_edge); ++column) {
            over(row > 0 ? cell(row - 1, column).ground.bottom : cell(0, column).ground.top, rule.top);
        }
        return;
    }
    const uint32_t top = std::max(item.top, from_) - from_, bottom = std::min(item.bottom, to_) - from_;
    for (uint32_t row = top; row < bottom; ++row) {
        over(left > 0 ? cell(row, left - 1).ground.right : cell(row, 0).ground.left, rule.left);
    }
}

/// Small texts go first, so that a large one behind the others (a watermark) takes what they leave.
void XlsCells::place_contents(size_t most_rows)
{
    std::vector<std::pair<uint32_t, size_t>> by_area;
    for (size_t i = 0; i < page_->items.size(); ++i) {
        const XlsItem& item = page_->items[i];
        if (!is_content(item) || item.top < from_ || item.top >= to_) continue;
        ranges_[i] = range_of(item.span, item.top, item.bottom);
        by_area.emplace_back(ranges_[i].area(), i);
    }
    std::sort(by_area.begin(), by_area.end());
    for (const auto& [area, i] : by_area) {
        if (const auto free = free_part(ranges_[i])) {
            cover(i, *free);
        } else if (const auto beside = free_beside(ranges_[i])) {
            cover(i, *beside);
        } else if (rows() < most_rows) {
            heights_.push_back(kSpareRow);
            cells_.resize(cells_.size() + columns_);
            cover(i, {rows() - 1, rows(), ranges_[i].left, columns_});
        } else {
            ++hidden_;
        }
    }
}

/// Ranges must not overlap. A text whose place is taken moves to the next free cell of its range, and shrinks to what
/// is free around that.
std::optional<XlsRange> XlsCells::free_part(XlsRange range) const
{
    const uint32_t first = range.left;
    while (range.top < range.bottom && taken(range.top, range.left)) {
        if (++range.left == range.right) {
            range.left = first;
            ++range.top;
        }
    }
    if (range.top == range.bottom) return std::nullopt;
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
    return range;
}

/// The first free cells to the right, in the rows of the range.
std::optional<XlsRange> XlsCells::free_beside(const XlsRange& range) const
{
    for (uint32_t row = range.top; row < range.bottom; ++row) {
        uint32_t left = range.right;
        while (left < columns_ && taken(row, left)) ++left;
        uint32_t right = left;
        while (right < columns_ && !taken(row, right)) ++right;
        if (left < right) return XlsRange{row, row + 1, left, right};
    }
    return std::nullopt;
}

void XlsCells::cover(size_t item, const XlsRange& range)
{
    ranges_[item] = range;
    for (uint32_t row = range.top; row < range.bottom; ++row) {
        for (uint32_t column = range.left; column < range.right; ++column) cell(row, column).covered = true;
    }
    XlsCell& first = cell(range.top, range.left);
    first.item = static_cast<int32_t>(item);
    const XlsItem& content = page_->items[item];
    first.tight = content.kind == XlsItem::Kind::Text &&
                  content.label.width * kWiderLetters + kCellMargins > points_between(range.left, range.right);
    if (range.area() > 1) merges_.push_back(range);
}

/// A text in lines gets the height that it takes when a spreadsheet breaks it anew.
void XlsCells::make_room_for_lines()
{
    TextLayout layout;
    for (const XlsWrapped& wrapped : page_->wrapped) {
        const XlsRange& range = ranges_[wrapped.item];
        if (range.area() == 0) continue;
        const double width = (points_between(range.left, range.right) - kCellMargins) / kWiderLetters;
        const auto text = pages_.text(page_->items[wrapped.item]);
        measurer_.measure({text, {}, wrapped.style, static_cast<float>(std::max(width, 1.0)), 1e6F}, layout);
        const auto first = heights_.begin() + range.top, last = heights_.begin() + range.bottom;
        int32_t missing = static_cast<int32_t>(std::ceil(layout.height)) - std::accumulate(first, last, 0);
        for (auto row = last; row != first && missing > 0;) {
            const int32_t more = std::clamp(kTallestRow - *--row, 0, missing);
            *row += more;
            missing -= more;
        }
    }
}

}  // namespace velora::engine
