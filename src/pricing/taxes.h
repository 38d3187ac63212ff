#pragma once

#include <cstdint>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// Loads the slots of a tax group. `count` becomes the highest slot in use, which may lie above empty ones.
/// An unknown group leaves the slots as they were and gives 0.
void Get_TaxAuthorities(SessionState& state, std::string_view group, TaxSlots& slots, int16_t& count);

/// Fills the tax classes of the current detail line from the accounting item, for the slots of `gTaxAuthorities`.
void Get_APItemTaxes(SessionState& state);

/// The sales tax rate in percent of an authority for a customer's and an item's class (1 to 10); 0 where there is
/// none. Not rounded.
float Return_TaxRate(SessionState& state, std::string_view authority, std::string_view buyerClass,
                     std::string_view itemClass);

}  // namespace velora
