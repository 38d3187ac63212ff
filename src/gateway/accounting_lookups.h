#pragma once

#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

// Small questions to the accounting system. Each takes a code and answers one trimmed text, blank where there is
// none. A blank code is not asked for, except where noted.

std::string Return_AccPacName(SessionState& state, std::string_view pCustomer);  ///< asks for a blank code too
std::string Return_LocationName(SessionState& state, std::string_view pLocation);
std::string Return_TaxGroupDesc(SessionState& state, std::string_view pTaxGroup);
std::string Return_TermsCodeDesc(SessionState& state, std::string_view pTermsCode);
std::string Return_PriceListDesc(SessionState& state, std::string_view pPriceList);
std::string Return_CategoryDesc(SessionState& state, std::string_view pCategory);
std::string Return_CustCurCode(SessionState& state, std::string_view pCustomer);
std::string Return_ItemCommCode(SessionState& state, std::string_view pItem);
std::string Return_SalesPersonName(SessionState& state, std::string_view pSalesperson);

bool Check_APCustNumber(SessionState& state, std::string_view pCustomer);  ///< asks for a blank code too

/// The first location of an item whose code is a number other than 0.
std::string Return_DefaultLocation(SessionState& state, std::string_view pItem);

/// The currency of an account set as it is stored, not trimmed.
std::string Check_CustCurrencyCode(SessionState& state, std::string_view pAccountSet);

}  // namespace velora
