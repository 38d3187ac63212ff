#pragma once

#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists the quotes of status 1 that have expired or will within seven days, by day and in four groups.
RunEnd Print_Expiration(SessionState& state, const std::string& pReportString, bool pPreview, bool pExportIt);

/// The contract with the definitions of quote expiration reports.
std::vector<PipeField> quote_expiration_fields();

}  // namespace velora
