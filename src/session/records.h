#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "session/enumerations.h"
#include "values/date_time.h"

namespace velora {

/// The header of one quote in memory. Members bear the names of the columns that fill them.
struct QuoteRecord {
    int32_t QuoteID = 0;
    std::string QuoteNumber;
    int16_t CustFrom = 0;  ///< 0: an accounting customer, known by AccpacID; else one of the product's own
    std::string AccpacID;
    int32_t CustomerID = 0;
    std::string CustContact;
    int32_t BillToID = 0;
    int32_t ShipToID = 0;
    int16_t QuoteStatusID = 0;
    int16_t QuoteTypeID = 0;
    int16_t QuoteConfidID = 0;
    std::string quACCPACNum;
    std::string quPONumber;
    DateTime quDateEnter;
    DateTime quDateShip;
    DateTime quDateExpire;
    DateTime quDateTransfer;
    std::string quCompany;
    std::string quUserEnter;
    DateTime quDateModify;
    std::string quUserModify;
    std::string quLocation;
    std::string quDesc;
    std::string quReference;
    int16_t quLines = 0;
    std::string quNotes;
    std::string quShipToLoc;
    std::string quShipVia;
    std::string quShipViaDesc;
    std::string quFOBPoint;
    int16_t quCustomerType = 0;  ///< discount level: 0 the base, 1 to 5 the levels A to E
    std::string quPriceList;
    std::string quTaxGroup;
    std::string quTermsCode;
    std::string quCurCode;
    std::string quEmail;
    std::array<std::string, kTaxSlots> quTaxClass;
    std::array<std::string, kTaxSlots> quRegNumber;
    std::array<std::string, 5> quSalesperson;
    std::array<float, 5> quPercentSS{};
    int16_t quRevision = 0;
    int32_t quOriginal = 0;
    std::string quHomeCurr;
    std::string quSourceCurr;
    std::string quRateType;
    DateTime quRateDate;
    float quRateEx = 0;
    bool quOnHold = false;
    bool quOverCredit = false;
    std::string quCrApproval;
    std::string quCrApprPwd;
    double quCrApprLimit = 0;
    bool quPrPickSlip = false;
    bool quPrConfirm = false;
    std::string quCIGCustomer;  ///< nothing here fills it; a host may, for prices from the manufacturer matrix
    bool quComplete = false;
    int32_t quBOfor = 0;
};

/// One miscellaneous charge of a quote.
struct MiscChargeRecord {
    int32_t ChargeID = 0;
    int32_t QuoteID = 0;
    int16_t Line = 0;
    std::string ChargeCode;
    std::string ChDesc;
    float Amount = 0;
    std::array<std::string, kTaxSlots> TaxClass;
    std::array<std::string, kTaxSlots> TaxIncl;
    std::string MiscAccount;
    std::string MiscAccountDesc;
};

/// One report of a report list file.
struct ReportListEntry {
    std::string Name;
    std::string Location;
    int16_t Type = 0;  ///< a ReportType number, which is not a WhichReport
};

}  // namespace velora
