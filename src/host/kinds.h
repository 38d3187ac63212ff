#pragma once

#include <string>
#include <string_view>

#include "reports/report_kinds.h"
#include "session/session_state.h"

namespace velora {

/// @throws UsageError naming the kinds that there are
const ReportKind& require_kind(std::string_view name);

/// The definition that a report of the kind is printed with when the command line names none: the default of the
/// user's settings, else the first of the kind's list. @throws HostError when there is neither
std::string default_definition(SessionState& state, const ReportKind& kind);

}  // namespace velora
