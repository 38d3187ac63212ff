#pragma once

#include <filesystem>
#include <string>

namespace velora {

/// A folder that belongs to the program, "definitions" or "fonts": beside the program, or in its data folder once it
/// is installed. @throws HostError when it is in neither
std::filesystem::path shipped_folder(const std::filesystem::path& program, const std::string& name);

}  // namespace velora
