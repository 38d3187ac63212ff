#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace velora::testing {

/// Which call of a port fails: the n-th alone, or everything from it on.
struct FaultPlan {
    size_t fails_at = 0;  ///< counts from 1; 0 for none
    bool stays = false;   ///< what broke stays broken
    size_t calls = 0;
    std::map<std::string, std::vector<size_t>> of_kind;  ///< the calls of a run that met no fault

    [[nodiscard]] bool fails(const std::string& kind)
    {
        ++calls;
        if (fails_at == 0) of_kind[kind].push_back(calls);
        return fails_at != 0 && (calls == fails_at || (stays && calls > fails_at));
    }
    [[nodiscard]] bool was_met() const { return fails_at != 0 && calls >= fails_at; }
};

}  // namespace velora::testing
