#pragma once

#include "reports/kinds.h"

namespace velora {

/// Prints a report as a host does that opens no window: by the operation of `Report` where there is one for the kind,
/// else with what the windows load before they print. The state holds connection, session, engine and currency mode.
/// @param kind  one with a builder
RunEnd print_report(SessionState& state, const ReportKind& kind, const Selection& what, const Delivery& how);

}  // namespace velora
