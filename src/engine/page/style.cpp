#include "engine/page/style.h"

#include <algorithm>

namespace velora::engine {
namespace {

void mix(size_t& seed, size_t value)
{
    seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}

/// Covers what styles usually differ in; the rest is left to the comparison.
size_t hash_of(const Style& style)
{
    size_t seed = std::hash<std::string>{}(style.font.family);
    mix(seed, std::hash<float>{}(style.font.size));
    mix(seed, size_t{style.font.bold} | size_t{style.font.italic} << 1 | size_t{style.opaque} << 2);
    mix(seed, std::hash<std::string>{}(style.pattern));
    for (const Color& color : {style.fore, style.back, style.pen.color}) {
        mix(seed, static_cast<size_t>(color.red) << 16 | static_cast<size_t>(color.green) << 8 | color.blue);
    }
    mix(seed, static_cast<size_t>(style.horizontal) << 4 | static_cast<size_t>(style.vertical));
    return seed;
}

}  // namespace

const Style* StyleSheet::intern(const Style& style)
{
    auto& candidates = by_hash_[hash_of(style)];
    const auto known = std::ranges::find_if(candidates, [&](const Style* other) { return *other == style; });
    if (known != candidates.end()) return *known;
    const Style* added = &styles_.emplace_back(style);
    positions_.emplace(added, styles_.size() - 1);
    candidates.push_back(added);
    return added;
}

}  // namespace velora::engine
