#pragma once

#include <cstddef>
#include <cstdint>

namespace velora::sample {

/// Numbers that look random and are the same for a seed on every machine: the SplitMix64 generator.
class Random {
public:
    explicit constexpr Random(uint64_t seed) : state_(seed) {}

    constexpr uint64_t next()
    {
        state_ += 0x9E3779B97F4A7C15ULL;
        uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBULL;
        return mixed ^ (mixed >> 31);
    }

    /// From `low` to `high`, both included.
    constexpr int between(int low, int high)
    {
        return low + static_cast<int>(next() % static_cast<uint64_t>(high - low + 1));
    }

    constexpr bool chance(int percent) { return between(1, 100) <= percent; }

    /// One of a list, which may not be empty.
    template <class List>
    constexpr const auto& pick(const List& choices)
    {
        return choices[static_cast<size_t>(between(0, static_cast<int>(choices.size()) - 1))];
    }

private:
    uint64_t state_;
};

}  // namespace velora::sample
