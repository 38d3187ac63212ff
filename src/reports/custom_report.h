#pragma once

#include <string>

#include "session/session_state.h"

namespace velora {

/// Runs a definition that brings its own data. A file that is not there has a box of its own.
RunEnd Custom_Reports(SessionState& state, const std::string& pReportString, const std::string& pReportName,
                      bool pPreview, bool pExportIt);

}  // namespace velora
