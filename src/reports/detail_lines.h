#pragma once

#include <cstdint>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// Loads the detail lines of a quote with their comments into `gQuoteDetails`, disconnected, standing on the first.
/// A quote without lines leaves it unset. A line with two comments comes twice.
void Get_DetailPrRecordset(SessionState& state, int32_t pQuoteID);

/// Completes the current line of `gQuoteDetails` from the item master, in memory only.
void Fetch_PrItemDetails(SessionState& state, std::string_view pCurrency, bool pGetPrice);

/// How much of an item is free at a location, as text with two decimals; "0" for a blank item, null without a row.
Value Return_QuantityAvailable(SessionState& state, std::string_view pItem, std::string_view pLocation, float pFactor);

}  // namespace velora
