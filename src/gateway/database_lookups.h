#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

// Small questions to the product's own database; a missing row answers blank or false.

std::string Return_VLCustomerName(SessionState& state, int32_t pCustomerID);
bool Check_VLCustNumber(SessionState& state, std::string_view pNumber);
/// The customer's currency, or that of its account set where it has none.
std::string Return_VLCustCurCode(SessionState& state, int32_t pCustomerID);
std::string Return_VLCustomer(SessionState& state, int32_t pCustomerID);
/// Whether reports show the product's own quote number rather than the accounting order number.
bool Use_VLNumber(SessionState& state);
/// Fills `ranges` with the rows of a kind of range; disconnected if there are any.
void Get_LocationRange(SessionState& state, std::shared_ptr<Recordset>& ranges, int16_t pRType);

/// A date as a literal that the server reads under its default language; the empty text for what is no date.
/// The server is asked for its language each time.
std::string SQLServer_DateFormat(SessionState& state, const Value& pDate, bool pEndOfDay);

}  // namespace velora
