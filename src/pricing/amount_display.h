#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// The value in the mask "#,###,##0.00" with the marks of the machine's region; decimals other than 0 to 5 count
/// as 5. The component's one means of rounding.
std::string Format_Decimals(const SessionState& state, double value, int16_t decimals);

/// What reading the text of `Format_Decimals` back gives.
double rounded(double value, int16_t decimals);

/// The decimals of a currency. @throws Fault when the accounting system does not know it
int16_t currency_decimals(SessionState& state, std::string_view currency);

/// An amount as the accounting system shows it in the currency. A blank currency becomes the home currency.
/// @note only the fraction is rounded, and a fraction that rounds up to a whole loses the carry: 2.999 shows as
///       2.00. That is meant: it is how the product has always printed amounts.
std::string Display_AccpacCurrency(SessionState& state, double value, std::string& currency, bool showSymbol);

/// The formatted number of an accounting item; blank for an unknown one.
std::string Return_FormatItem(SessionState& state, std::string_view item);

/// The item number without the characters that the inventory options name as separators.
std::string Remove_Separators(SessionState& state, std::string_view item);

}  // namespace velora
