#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Confirms an order to the customer: the quote without the figures that are none of a customer's business. Once it
/// went out, to paper, window or file, the quote is marked.
RunEnd Print_Confirmation(SessionState& state, int32_t pQuoteID, const std::string& pReportString, bool pPreview,
                          bool pExportIt);

/// The contract with the definitions of order confirmations.
std::vector<PipeField> confirmation_fields();

}  // namespace velora
