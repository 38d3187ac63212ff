#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// The unit in which a price list prices an item; blank when there is none. The company's default price list may
/// serve, and is then written to the current detail line.
std::string Return_BaseUnit(SessionState& state, std::string_view item, std::string_view priceList,
                            std::string_view currency);

/// The factor of that unit; 1 where the price list has none, so that a caller can divide by it.
/// @param keepLine  leaves the current detail line alone when the default price list has to serve
double Return_BaseConvFactor(SessionState& state, std::string_view item, std::string_view priceList,
                             std::string_view currency, bool keepLine);

/// The stock unit of one of the product's own items.
std::string Return_VLBaseUnit(SessionState& state, int32_t itemID);

/// Whether the unit is defined for the accounting item; a person who typed it is told when not, unless `quiet`.
bool Check_ItemUofM(SessionState& state, std::string_view item, std::string_view unit, bool quiet);

/// The factor of a unit of an accounting item, 0 when the item does not have it.
float Return_APFactor(SessionState& state, std::string_view item, std::string_view unit);

/// The unit in which item weights are given.
std::string Return_ItemWeightUnit(SessionState& state);

}  // namespace velora
