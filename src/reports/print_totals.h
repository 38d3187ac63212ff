#pragma once

#include <cstdint>

#include "session/session_state.h"

namespace velora {

/// Works out the totals that a document prints, from the lines as they stand in the database and the tax rates of
/// today, and leaves them in the `gPr…` members. The order of the rounding steps is part of the result.
///
/// @param pSlots  tax slots of the quote, their amounts at zero; the amounts are added to
/// @note `gQuote` and `gMiscCharges` must be loaded
/// @throws nothing; a fault that is not tolerated is told to the user, and the totals keep what they held
void Calculate_PrintTotals(SessionState& state, int32_t pQuoteID, int16_t pCount, TaxSlots& pSlots);

}  // namespace velora
