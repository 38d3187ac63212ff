#pragma once

#include <filesystem>
#include <optional>

namespace velora::engine {

/// The file that a definition or a template in `folder` names. An absolute name is taken as it is; a relative one
/// stays in the folder, and there is none when it leads out of it.
std::optional<std::filesystem::path> file_beside(const std::filesystem::path& folder,
                                                 const std::filesystem::path& name);

}  // namespace velora::engine
