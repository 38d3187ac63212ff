#pragma once

#include <string>
#include <string_view>

#include "reports/kinds.h"

namespace velora {

/// @throws UsageError naming the kinds that there are
const ReportKind& require_kind(std::string_view name);

/// The names of all kinds, as a help text lists them.
std::string kind_names();

/// The definition that a report of the kind is printed with, as a full path.
/// @param named  a file, or a name of the kind's list; empty for the default of the settings, else the first of the
/// list
/// @throws HostError when nothing is named and there is no default
std::string chosen_definition(SessionState& state, const ReportKind& kind, const std::string& named);

}  // namespace velora
