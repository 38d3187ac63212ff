#pragma once

#include <filesystem>
#include <memory>

#include "forms/toolkit.h"

namespace velora {

/// Where the module of the windows stands: beside the program, or in its library folder once it is installed.
std::filesystem::path windows_module(const std::filesystem::path& program);

/// Loads the module and shows the desk's forms as windows from now on.
/// @throws HostError where there is no module or no display
std::unique_ptr<forms::Toolkit> open_toolkit(const std::filesystem::path& module, forms::Desk& desk,
                                             const forms::ToolkitOptions& options);

}  // namespace velora
