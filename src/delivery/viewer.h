#pragma once

#include <memory>
#include <string>

#include "session/session_state.h"

namespace velora {

// Show a prepared report in a window of its own and return at once. The report has taken its data by then. A fault
// is told to the user and goes no further; they answer whether the window is there.

bool InitializeTTX(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption);
bool InitializeCustom(SessionState& state, const std::shared_ptr<OpenedReport>& report, const std::string& caption);

}  // namespace velora
