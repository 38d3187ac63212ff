#pragma once

#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Lists why quotes were lost, a row for each reason of each quote whatever its status; the definition counts and
/// draws.
/// @note the first quote of a customer of the product's own that is found ends the report in its box: no one has ever
///       seen their country here, since it is asked for by a name that no column has
RunEnd Print_LostReason(SessionState& state, const std::string& pReportString, bool pAllDates, int16_t pCustFrom,
                        const DateTime& pFrom, const DateTime& pTo, const std::string& pACCPACCust, int32_t pCustomerID,
                        bool pPreview, bool pExportIt);

/// The contract with the definitions of lost reason reports.
std::vector<PipeField> lost_reason_fields();

}  // namespace velora
