#pragma once

#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists the item lines of transferred orders that are not fully delivered, by item. All amounts are those of the whole
/// line, in the currency of the first.
/// @note the plain dialect's statement is one that no database takes; it is meant to stand, and the report ends in a
/// box
RunEnd Print_BackOrder(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                       const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust, int32_t pCustomerID,
                       bool pPreview, bool pExportIt);

/// The contract with the definitions of back order reports.
std::vector<PipeField> back_order_fields();

}  // namespace velora
