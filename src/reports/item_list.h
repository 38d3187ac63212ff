#pragma once

#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists the product's own items that have not gone to the accounting system, each with its prices on its own price
/// list; in a multi-currency company with the one in the home currency.
RunEnd Print_ItemList(SessionState& state, const std::string& pReportString, bool pPreview, bool pExportIt);

/// The contract with the definitions of item lists.
std::vector<PipeField> item_list_fields();

}  // namespace velora
