#pragma once

#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists the product's own customers that have not gone to the accounting system.
RunEnd Print_CustomerList(SessionState& state, const std::string& pReportString, bool pPreview, bool pExportIt);

/// The contract with the definitions of customer lists.
std::vector<PipeField> customer_list_fields();

}  // namespace velora
