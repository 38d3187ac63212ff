#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists the parts of an order for those who prepare its shipment: a row for each location, ship date or range that
/// its item lines name, as the company splits its orders. Nothing of a line and no amount stands on it.
RunEnd Print_Checklist(SessionState& state, int32_t pQuoteID, const std::string& pReportString, bool pPreview,
                       bool pExportIt);

/// The contract with the definitions of order checklists.
std::vector<PipeField> checklist_fields();

}  // namespace velora
