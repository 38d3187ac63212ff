#pragma once

#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists quotes of one status or of all; of the status 3 a row for each reason why a quote was lost.
/// @param pStatusID  0 for all
/// @param pReasonID  0 for all; counts with the status 3 alone
RunEnd Print_Overview(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                      int16_t pStatusID, const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust,
                      int32_t pCustomerID, int16_t pReasonID, bool pPreview, bool pExportIt);

/// The contract with the definitions of quote overviews.
std::vector<PipeField> quote_overview_fields();

}  // namespace velora
