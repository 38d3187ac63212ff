#include "engine/export/text/text_grid.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>

#include "values/utf8.h"

namespace velora::engine {
namespace {

// Points that one character takes. Narrow enough for the usual small print to find room in its column.
constexpr double kCellWidth = 4.8;
constexpr double kCellHeight = 11;
constexpr double kSameLine = 3;         ///< points between the middles of lines that stand side by side
constexpr double kMostStretch = 6;      ///< characters by which a column may grow for one line
constexpr size_t kMostColumns = 10000;  ///< a page that claims to be wider than a house is cut there

struct Extent {
    double left, right;
};

/// What a row of the grid holds so far.
class TakenRow {
public:
    [[nodiscard]] bool covers(const Extent& extent) const
    {
        constexpr double kTouching = kCellWidth / 2;
        const auto behind = rights_.lower_bound(extent.left);
        if (behind != rights_.end() && behind->first + kTouching < extent.right) return true;
        return behind != rights_.begin() && std::prev(behind)->second > extent.left + kTouching;
    }
    void take(const Extent& extent) { rights_[extent.left] = extent.right; }

private:
    std::map<double, double> rights_;  ///< by left end
};

/// How much of a line lies before the point by which it is aligned.
double share_before(HorizontalAlign align)
{
    if (align == HorizontalAlign::Center) return 0.5;
    return align == HorizontalAlign::Right ? 1 : 0;
}

/// A line with its place among the others.
struct Placed {
    const GridLine* line;
    double share, anchor;  ///< the line is aligned at `anchor`
    Extent extent;         ///< what it takes on the page
    size_t row = 0;

    explicit Placed(const GridLine& from)
        : line(&from), share(share_before(from.align)), anchor(from.left + share * (from.right - from.left))
    {
        const double room = from.right - from.left;
        double width = static_cast<double>(from.text.size()) * kCellWidth;
        if (room > 0 && width > room && width < room + kMostStretch * kCellWidth) width = std::max(room, kCellWidth);
        extent = {anchor - share * width, anchor + (1 - share) * width};
    }

    [[nodiscard]] double size() const { return static_cast<double>(line->text.size()); }
};

/// Gives every line its row, from the top down.
class Rows {
public:
    /// Lines that stand side by side stay in one row; it lies below all that they would cover.
    void place(std::span<Placed> group)
    {
        const double natural = std::floor(std::max(group.front().line->y, 0.0) / kCellHeight);
        size_t row = std::max(static_cast<size_t>(natural), last_);
        while (std::ranges::any_of(group, [&](const Placed& each) { return covers(each, row); })) ++row;
        last_ = row;
        size_t pushed = row + 1;
        for (Placed& each : group) {
            each.row = row;
            if (covers(each, row)) {
                while (covers(each, pushed)) ++pushed;
                each.row = pushed;
            }
            taken_[each.row].take(each.extent);
        }
    }

private:
    [[nodiscard]] bool covers(const Placed& placed, size_t row) const
    {
        const auto found = taken_.find(row);
        return found != taken_.end() && found->second.covers(placed.extent);
    }

    std::map<size_t, TakenRow> taken_;
    size_t last_ = 0;
};

/// Finds a column for every point of the page by which a line is aligned: the one that it has by its place, or as far
/// to the right as the lines in front of it need.
class Columns {
public:
    void add(const Placed& placed)
    {
        columns_.try_emplace(placed.anchor, 0);
        needs_[placed.anchor].push_back({0, placed.share * placed.size(), false});
    }
    /// Both are in one row, with a blank between them.
    void add(const Placed& left, const Placed& right)
    {
        if (right.anchor <= left.anchor) return;
        const double room = (1 - left.share) * left.size() + 1 + right.share * right.size();
        needs_[right.anchor].push_back({left.anchor, room, true});
    }
    void solve()
    {
        double before = 0;
        for (auto& [anchor, column] : columns_) {
            column = std::max(before, std::round(anchor / kCellWidth));
            for (const Need& need : needs_[anchor]) {
                column = std::max(column, std::ceil((need.beside ? columns_[need.from] : 0) + need.room));
            }
            before = column;
        }
    }
    [[nodiscard]] double at(double anchor) const { return columns_.at(anchor); }

private:
    struct Need {
        double from, room;
        bool beside;  ///< counted from the column of `from`, else from the page's edge
    };
    std::map<double, double> columns_;
    std::map<double, std::vector<Need>> needs_;
};

/// The lines of one row as characters.
std::u32string row_text(std::span<const Placed> row, const Columns& columns)
{
    std::u32string cells;
    for (const Placed& placed : row) {
        const double wanted = std::floor(columns.at(placed.anchor) - placed.share * placed.size());
        const size_t least = cells.empty() ? 0 : cells.size() + 1;
        const size_t column = std::max(static_cast<size_t>(std::max(wanted, 0.0)), least);
        if (column >= kMostColumns) break;
        cells.resize(column, U' ');
        cells += placed.line->text.substr(0, kMostColumns - column);
    }
    return cells.substr(0, cells.find_last_not_of(U' ') + 1);
}

template <class Same, class Take>
void for_each_group(std::vector<Placed>& lines, const Same& same, const Take& take)
{
    for (auto first = lines.begin(); first != lines.end();) {
        const auto last = std::find_if_not(first, lines.end(), [&](const Placed& each) { return same(*first, each); });
        take(std::span(first, last));
        first = last;
    }
}

}  // namespace

std::string text_rows(std::vector<GridLine> lines)
{
    std::vector<Placed> placed(lines.begin(), lines.end());
    std::ranges::stable_sort(placed, {}, [](const Placed& each) { return each.line->y; });
    Rows rows;
    for_each_group(
        placed, [](const Placed& first, const Placed& each) { return each.line->y - first.line->y <= kSameLine; },
        [&](std::span<Placed> group) { rows.place(group); });

    std::ranges::stable_sort(placed, {}, [](const Placed& each) { return std::pair(each.row, each.extent.left); });
    const auto same_row = [](const Placed& first, const Placed& each) { return each.row == first.row; };
    Columns columns;
    for_each_group(placed, same_row, [&](std::span<const Placed> row) {
        for (size_t i = 0; i < row.size(); ++i) {
            columns.add(row[i]);
            if (i > 0) columns.add(row[i - 1], row[i]);
        }
    });
    columns.solve();

    std::string text;
    size_t written = 0;
    for_each_group(placed, same_row, [&](std::span<const Placed> row) {
        const std::u32string cells = row_text(row, columns);
        if (cells.empty()) return;
        text.append(row.front().row - written, '\n');
        for (const char32_t character : cells) append_utf8(text, character);
        text += '\n';
        written = row.front().row + 1;
    });
    return text;
}

}  // namespace velora::engine
