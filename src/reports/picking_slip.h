#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reports/data_pipe.h"
#include "session/session_state.h"

namespace velora {

/// Prints the slips by which the warehouse picks an order: one for the whole of it, or one for each location, ship
/// date, picking sequence or range, as the company splits. Once all went out the quote is marked.
/// @param pQuantAsInt  prints whole quantities, and with them the comments and instructions of the lines
RunEnd Print_PickingSlip(SessionState& state, int32_t pQuoteID, const std::string& pReportString, bool pPreview,
                         bool pExportIt, bool pQuantAsInt);

/// The contract with the definitions of picking slips.
std::vector<PipeField> picking_slip_fields();
std::vector<PipeField> whole_quantity_slip_fields();

}  // namespace velora
