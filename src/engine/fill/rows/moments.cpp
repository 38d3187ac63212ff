#include "engine/fill/rows/moments.h"

namespace velora::engine {

std::optional<std::string> MomentEnvironment::resource(std::string_view key) const
{
    if (const auto found = shared_.resources.find(key); found != shared_.resources.end()) return found->second;
    if (shared_.when_resource_missing == "Key") return std::string(key);
    if (shared_.when_resource_missing == "Empty") return std::string();
    return std::nullopt;
}

}  // namespace velora::engine
