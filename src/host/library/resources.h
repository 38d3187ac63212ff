#pragma once

#include <filesystem>
#include <string>

namespace velora {

/// The program beside which definitions and fonts are looked for: in the folder that is named, beside this library, or
/// in the `share` of the place where it is installed.
std::filesystem::path program_of(const std::string& resources);

}  // namespace velora
