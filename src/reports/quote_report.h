#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Prints one quote: a row for each detail line, then one for each miscellaneous charge.
/// @param pShowCust  accepted and without effect: the company's defaults decide whose item numbers show
RunEnd Print_Quote(SessionState& state, int32_t pQuoteID, const std::string& pReportString, int16_t pShowCust,
                   bool pPreview, bool pExportIt);

/// The contract with the definitions of quotes.
std::vector<PipeField> quote_fields();

}  // namespace velora
