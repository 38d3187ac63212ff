#pragma once

#include <cstdint>
#include <string_view>

#include "session/session_state.h"

namespace velora {

// The customer's overrides of the price list. 0 means that an override does not apply.

/// The contract price of the quote's customer, if the quote's date lies in the contract.
float Return_ContractPrice(SessionState& state, std::string_view item, std::string_view priceList,
                           std::string_view currency);

/// Markup cost plus a percentage (price type 4) or an amount, rounded to the currency.
float Return_MarkupCostPrice(SessionState& state, std::string_view item, std::string_view priceList,
                             std::string_view currency, float percent, float amount, int16_t priceType);

/// A cost of the item at a location plus a percentage (price type 4) or an amount, rounded to the currency.
float Return_ContractCostPrice(SessionState& state, std::string_view item, std::string_view location, float percent,
                               float amount, int16_t priceType, int16_t costMethod, std::string_view currency);

/// The cell of the manufacturer matrix for a customer code and a commodity; null when there is none.
Value Return_CIGPrice(SessionState& state, std::string_view customerCode, std::string_view commodity);

}  // namespace velora
