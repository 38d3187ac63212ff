#include "engine/export/xls/grid_lines.h"

#include <algorithm>

namespace velora::engine {

void GridLines::clear()
{
    edges_.clear();
    lines_.clear();
}

void GridLines::solve(size_t most)
{
    for (int32_t tolerance = tolerance_;; tolerance = tolerance * 2 + 1) {
        lines_.clear();
        join_kept_edges(tolerance);
        add_lines_for_movable(tolerance);
        if (lines_.size() <= most) break;
    }
    divide_wide_gaps(most);
}

/// Of edges that are joined, the line takes the place of the one used most.
void GridLines::join_kept_edges(int32_t tolerance)
{
    std::map<int32_t, uint32_t> kept;
    for (const auto& [edge, uses] : edges_) {
        if (edge.low == edge.high) kept[edge.at] += uses;
    }
    for (auto group = kept.begin(); group != kept.end();) {
        const auto end = kept.upper_bound(group->first + tolerance);
        const auto most_used =
            std::max_element(group, end, [](const auto& a, const auto& b) { return a.second < b.second; });
        lines_.push_back(most_used->first);
        group = end;
    }
}

void GridLines::add_lines_for_movable(int32_t tolerance)
{
    std::vector<GridEdge> unmet;
    for (const auto& [edge, uses] : edges_) {
        const auto line = std::lower_bound(lines_.begin(), lines_.end(), edge.low - tolerance);
        if (line == lines_.end() || *line > edge.high + tolerance) unmet.push_back(edge);
    }
    std::sort(unmet.begin(), unmet.end(), [](const auto& a, const auto& b) { return a.high < b.high; });
    std::vector<int32_t> added;
    for (size_t first = 0, next = 0; first < unmet.size(); first = next) {
        int32_t reach_from = unmet[first].low, wish = unmet[first].at;
        const int32_t reach_to = unmet[first].high;
        for (next = first; next < unmet.size() && unmet[next].low <= reach_to; ++next) {
            const GridEdge& edge = unmet[next];
            reach_from = std::max(reach_from, edge.low);
            // An edge that may move both ways is seen (a rule); one that moves one way is the open end of a text.
            if (edge.low < edge.at && edge.at < edge.high) wish = edge.at;
        }
        added.push_back(std::clamp(wish, reach_from, reach_to));
    }
    lines_.insert(lines_.end(), added.begin(), added.end());
    std::sort(lines_.begin(), lines_.end());
}

/// Where it would take more lines than the format has, a gap stays as wide as it is: something stands far off.
void GridLines::divide_wide_gaps(size_t most)
{
    constexpr size_t kFew = 5;
    size_t further = 0;
    for (size_t i = 1; i < lines_.size(); ++i) {
        further += static_cast<size_t>((lines_[i] - lines_[i - 1] - 1) / widest_);
    }
    if (further > kFew && lines_.size() + further > most) return;
    std::vector<int32_t> divided;
    for (const int32_t line : lines_) {
        while (!divided.empty() && line - divided.back() > widest_) divided.push_back(divided.back() + widest_);
        divided.push_back(line);
    }
    lines_ = std::move(divided);
}

uint32_t GridLines::line_of(const GridEdge& edge) const
{
    const auto next = std::lower_bound(lines_.begin(), lines_.end(), edge.at);
    const bool next_in_reach = next != lines_.end() && *next <= edge.high;
    const bool last_in_reach = next != lines_.begin() && *(next - 1) >= edge.low;
    const auto number = static_cast<uint32_t>(next - lines_.begin());
    // A line a little nearer, but beyond what the edge may move, would overlap a neighbour.
    if (next_in_reach != last_in_reach) return next_in_reach ? number : number - 1;
    return nearest(edge.at);
}

uint32_t GridLines::nearest(int32_t at) const
{
    const auto next = std::lower_bound(lines_.begin(), lines_.end(), at);
    if (next == lines_.begin()) return 0;
    if (next == lines_.end()) return static_cast<uint32_t>(lines_.size() - 1);
    const auto number = static_cast<uint32_t>(next - lines_.begin());
    return *next - at < at - *(next - 1) ? number : number - 1;
}

}  // namespace velora::engine
