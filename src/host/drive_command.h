#pragma once

#include <filesystem>
#include <iosfwd>

#include "host/host.h"

namespace velora {

/// Runs the forms of the company by a script.
/// @param windows  module by whose widgets the script acts; blank for none, and no toolkit is needed
/// @throws UsageError for a line that is no JSON, HostError for a module that cannot be loaded
ExitStatus drive_forms(Host& host, std::istream& script, const std::filesystem::path& windows = {});

}  // namespace velora
