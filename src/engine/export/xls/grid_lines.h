#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

namespace velora::engine {

/// Where the edge of a box stands and how far it may be moved without touching another box.
struct GridEdge {
    int32_t at = 0;
    int32_t low = 0, high = 0;  ///< low <= at <= high; all three equal for an edge that has to be kept
    bool operator<(const GridEdge& other) const
    {
        return std::tie(at, low, high) < std::tie(other.at, other.low, other.high);
    }
    bool operator==(const GridEdge&) const = default;
};

/// Finds the fewest lines of a grid on one axis such that every edge lies on one.
///
/// Edges that have to be kept are joined when they are no further apart than the tolerance. An edge that may move goes
/// to a line that is there already; only where there is none in its reach a line is added.
class GridLines {
public:
    /// @param tolerance  in the unit of the edges
    /// @param widest   a wider gap is divided by further lines
    GridLines(int32_t tolerance, int32_t widest) : tolerance_(tolerance), widest_(widest) {}

    void add(const GridEdge& edge) { ++edges_[edge]; }
    /// Works the lines out; the tolerance grows until there are at most `most` of them. Wide gaps add a few at most.
    void solve(size_t most);
    void clear();

    /// Positions in ascending order.
    [[nodiscard]] const std::vector<int32_t>& lines() const { return lines_; }
    /// Number of the line that the edge lies on.
    [[nodiscard]] uint32_t line_of(const GridEdge& edge) const;
    /// Number of the line nearest to a place.
    [[nodiscard]] uint32_t nearest(int32_t at) const;

private:
    void join_kept_edges(int32_t tolerance);
    void add_lines_for_movable(int32_t tolerance);
    void divide_wide_gaps(size_t most);

    int32_t tolerance_, widest_;
    std::map<GridEdge, uint32_t> edges_;  ///< with the number of their uses
    std::vector<int32_t> lines_;
};

}  // namespace velora::engine
