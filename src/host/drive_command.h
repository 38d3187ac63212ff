#pragma once

#include <iosfwd>

#include "host/host.h"

namespace velora {

/// Runs the forms of the company by a script. @throws UsageError for a line that is no JSON
ExitStatus drive_forms(Host& host, std::istream& script);

}  // namespace velora
