#pragma once

#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists all quotes that have left the open status, each with its status; the definition counts and draws.
/// @param pCustFrom  a number of `CustomerFrom`; any other is everybody's
RunEnd Print_WinLoss(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                     const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust, int32_t pCustomerID,
                     bool pPreview, bool pExportIt);

/// The contract with the definitions of win loss reports.
std::vector<PipeField> win_loss_fields();

}  // namespace velora
