#pragma once

#include <filesystem>
#include <optional>

namespace velora {

/// The file that a relative name means below a folder, with all links followed. None when the name is absolute or leads
/// out of the folder, be it by "..", by a link, or by a link whose end is not there yet.
std::optional<std::filesystem::path> confined_path(const std::filesystem::path& folder,
                                                   const std::filesystem::path& name);

}  // namespace velora
