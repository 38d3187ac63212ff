#pragma once

#include "session/session_state.h"

namespace velora {

// What stands in the state before a builder runs: loaded by the operations of the public class, and by whoever prints
// a kind that has none.

/// Statuses, types, confidences and reasons, the active ones.
void load_lists(SessionState& state);

/// The company's defaults, the section of its settings and the versions of the accounting modules.
void load_company(SessionState& state);

void build_report_section(SessionState& state);

}  // namespace velora
