#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "session/session_state.h"

namespace velora {

/// Loads the miscellaneous charges of a quote, in the order of their lines, with description and account from the
/// accounting system. False when the quote has none; the array then has no storage.
bool Get_MiscChargeInfo(SessionState& state, std::optional<std::vector<MiscChargeRecord>>& charges, int32_t quoteID,
                        std::string_view currency);

}  // namespace velora
