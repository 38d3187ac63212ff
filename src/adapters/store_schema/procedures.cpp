#include "adapters/store_schema/procedures.h"

#include <algorithm>
#include <array>

#include "values/text.h"

namespace velora::stores {

namespace {

// clang-format off
constexpr auto kProcedures = std::to_array<Procedure>({
    {"sprQuoteStatus",           "", 0, "SELECT * FROM QuoteStatus ORDER BY QuoteStatusID"},
    {"sprQuoteStatusActive",     "", 0, "SELECT * FROM QuoteStatus WHERE qsActive = 1 ORDER BY QuoteStatusID"},
    {"sprQuoteType",             "", 0, "SELECT * FROM QuoteType ORDER BY QuoteTypeID"},
    {"sprQuoteTypeActive",       "", 0, "SELECT * FROM QuoteType WHERE qtActive = 1 ORDER BY QuoteTypeID"},
    {"sprQuoteConfidence",       "", 0, "SELECT * FROM QuoteConfidence ORDER BY QuoteConfidID"},
    {"sprQuoteConfidenceActive", "", 0, "SELECT * FROM QuoteConfidence WHERE qcActive = 1 ORDER BY QuoteConfidID"},
    {"sprReasons",               "", 0, "SELECT * FROM Reason ORDER BY ReasonID"},
    {"sprReasonsActive",         "", 0, "SELECT * FROM Reason WHERE reActive = 1 ORDER BY ReasonID"},
    {"sprQuoteDefaults",         "Comp", 10, "SELECT * FROM Defaults WHERE Company = :Comp"},
    {"sprQuoteOneID",            "QID", 0, "SELECT * FROM Quote WHERE QuoteID = :QID"},
    {"sprMiscChargeAll",         "QID", 0, "SELECT * FROM DMiscCharge WHERE QuoteID = :QID ORDER BY Line"},
    {"sprBillToOne",             "BTID", 0, "SELECT * FROM BillTo WHERE BillToID = :BTID"},
    {"sprShipToOne",             "STID", 0, "SELECT * FROM ShipTo WHERE ShipToID = :STID"},
    {"sprCustomerOneID",         "CID", 0, "SELECT * FROM Customer WHERE CustomerID = :CID"},
    {"sprDetailAll",             "QID", 0, "SELECT * FROM Details WHERE QuoteID = :QID ORDER BY QuoteID, Line"},
    {"sprDetailsCommInsAll",     "QID", 0,
     "SELECT Details.*, CommIns.CoInType, CommIns.CommIns FROM Details LEFT OUTER JOIN CommIns"
     " ON Details.QuoteID = CommIns.QuoteID AND Details.Line = CommIns.Line"
     " WHERE Details.QuoteID = :QID ORDER BY Details.QuoteID, Details.Line"},
});
// clang-format on

}  // namespace

std::span<const Procedure> procedures()
{
    return kProcedures;
}

const Procedure* find_procedure(std::string_view name)
{
    const auto* const found =
        std::ranges::find_if(kProcedures, [&](const Procedure& procedure) { return same_name(procedure.name, name); });
    return found == kProcedures.end() ? nullptr : found;
}

}  // namespace velora::stores
