#pragma once

#include <cstdint>

#include "session/session_state.h"

namespace velora {

/// Loads the header of a quote into `record`. False when there is no such quote, or after a failure, which has been
/// told to the user; the record then holds what it held, or the members read so far.
bool Fetch_QuoteInfo(SessionState& state, QuoteRecord& record, int32_t quoteID);

}  // namespace velora
