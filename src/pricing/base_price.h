#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// Price of one pricing unit of an accounting item: the manufacturer matrix, the customer's contract or the price
/// list with its levels and its sale, in that order.
///
/// @param quantity  in quote units; times `convFactor` it is compared with the quantity breaks
/// @return in `currency`, rounded to its decimals; 0 when there is no price
/// @note fills `currency` and `priceList` when they come in blank, and writes the price list of the current detail
///       line when that was blank or when the company's default price list had to serve
/// @throws nothing; a failing view is reported to the user and yields what was reached
float Return_BasePrice(SessionState& state, std::string_view item, std::string& priceList, std::string& currency,
                       int16_t customerType, float quantity, float convFactor);

/// The stored price of one of the product's own items, as it stands: no levels, no sale, no rounding.
float Return_VLBasePrice(SessionState& state, int32_t itemID, std::string_view currency, std::string_view priceList);

}  // namespace velora
