#include "adapters/store_schema/tables.h"

namespace velora::stores {

namespace {

using enum ColumnType;

// clang-format off
SchemaTable quote_table()
{
    return {"Quote", {
        {"QuoteID", Integer}, {"QuoteNumber"}, {"CustFrom", Integer}, {"CustomerID", Integer}, {"AccPacID"},
        {"CustName"}, {"CustContact"}, {"BillToID", Integer}, {"ShipToID", Integer}, {"QuoteStatusID", Integer},
        {"QuoteTypeID", Integer}, {"QuoteConfidID", Integer}, {"quACCPACNum"}, {"quPONumber"}, {"quDateEnter", Date},
        {"quDateShip", Date}, {"quDateExpire", Date}, {"quDateTransfer", Date}, {"quUserEnter"}, {"quCompany"},
        {"quDateModify", Date}, {"quUserModify"}, {"quLocation"}, {"quDesc"}, {"quReference"}, {"quLines", Integer},
        {"quNotes", LongText}, {"quShipToLoc"}, {"quShipVia"}, {"quShipViaDesc"}, {"quFOBPoint"},
        {"quCustomerType", Integer}, {"quPriceList"}, {"quTaxGroup"}, {"quTermsCode"}, {"quCurCode"}, {"quEmail"},
        {"quTaxClass", Text, 5},
        {"quRegNumber", Text, 5}, {"quSalesperson", Text, 5}, {"quPercentSS", Real, 5}, {"quRevision", Integer},
        {"quOriginal", Integer}, {"quHomeCurr"}, {"quSourceCurr"}, {"quRateType"}, {"quRateDate", Date},
        {"quRateEx", Real}, {"quOnHold", Integer}, {"quOverCredit", Integer}, {"quCrApprLimit", Real},
        {"quCrApproval"}, {"quCrApprPwd"}, {"quPrPickSlip", Integer}, {"quPrConfirm", Integer},
        {"quComplete", Integer}, {"quBOfor", Integer}},
        {{"QuoteID"}, {"QuoteNumber"}, {"CustomerID"}, {"AccPacID"}, {"quBOfor"}}};
}

std::vector<SchemaTable> tables()
{
    return {
        quote_table(),
        {"Details", {
            {"QuoteID", Integer}, {"Line", Integer}, {"ItemID", Integer}, {"APItem"}, {"deIType", Integer},
            {"deDType", Integer}, {"deDesc", LongText}, {"deQuantity", Real}, {"deQtyTransfer", Real}, {"deUofM"},
            {"deConvFactor", Real}, {"deQuotedPrice", Real}, {"dePriceList"}, {"deDiscount", Real},
            {"deDiscPer", Real}, {"deCost", Money}, {"deLocation"}, {"deCategory"}, {"deCustItem"},
            {"deShipDate", Date}, {"deLeadTime"}, {"deWeight", Real}, {"dePickingSeq"}, {"deHasItemCom", Integer},
            {"deComment", LongText}, {"deTaxClass", Text, 5}, {"deTaxIncl", Text, 5}},
            {{"QuoteID", "Line"}, {"ItemID"}, {"APItem"}}},
        {"CommIns", {{"QuoteID", Integer}, {"Line", Integer}, {"CoInType", Integer}, {"CommIns", LongText}},
            {{"QuoteID", "Line"}}},
        {"DMiscCharge", {
            {"ChargeID", Integer}, {"QuoteID", Integer}, {"Line", Integer}, {"ChargeCode"}, {"ChDesc"},
            {"Amount", Real}, {"TaxClass", Text, 5}, {"TaxIncl", Text, 5}},
            {{"ChargeID"}, {"QuoteID", "Line"}}},
        {"Customer", {
            {"CustomerID", Integer}, {"CustomerNumber"}, {"cuFullName"}, {"cuShortName"}, {"cuAddress", Text, 4},
            {"cuCity"}, {"cuProvState"}, {"cuCountry"}, {"cuPCZip"}, {"cuPhone"}, {"cuFax"}, {"cuContact"},
            {"cuEmail", Text, 2}, {"cuGroupCode"}, {"cuPriceList"}, {"cuTermsCode"}, {"cuTaxGroup"},
            {"cuCustType", Integer}, {"cuRateType"}, {"cuCurCode"}, {"cuAccountSet"}, {"cuTaxClass", Text, 5},
            {"cuRegNumber", Text, 5}, {"Exported", Integer}},
            {{"CustomerID"}, {"CustomerNumber"}}},
        {"Items", {
            {"ItemID", Integer}, {"ItemNumber"}, {"itDesc"}, {"itCategory"}, {"itPriceList"}, {"itStockUnit"},
            {"itLastMaintained", Date}, {"itStructureCode"}, {"itAccountSet"}, {"itAdditional"},
            {"itAdditional", Text, 3}, {"Exported", Integer}},
            {{"ItemID"}, {"ItemNumber"}}},
        {"IPricing", {
            {"PriceID", Integer}, {"ItemID", Integer}, {"ipCurrency"}, {"ipPriceList"}, {"ipBasePrice", Real}},
            {{"PriceID"}, {"ItemID"}}},
        {"BillTo", {
            {"BillToID", Integer}, {"btName"}, {"btAddress", Text, 4}, {"btCity"}, {"btProvState"}, {"btCountry"},
            {"btPCZip"}, {"btPhone"}, {"btFax"}, {"btContact"}},
            {{"BillToID"}}},
        {"ShipTo", {
            {"ShipToID", Integer}, {"stCode"}, {"stName"}, {"stAddress", Text, 4}, {"stCity"}, {"stProvState"},
            {"stCountry"}, {"stPCZip"}, {"stPhone"}, {"stFax"}, {"stContact"}, {"stInstructions", LongText}},
            {{"ShipToID"}}},
        {"QuoteStatus", {
            {"QuoteStatusID", Integer}, {"qsCode"}, {"qsName"}, {"qsDescription"}, {"qsActive", Integer}},
            {{"QuoteStatusID"}}},
        {"QuoteType", {{"QuoteTypeID", Integer}, {"qtCode"}, {"qtName"}, {"qtActive", Integer}}, {{"QuoteTypeID"}}},
        {"QuoteConfidence", {{"QuoteConfidID", Integer}, {"qcCode"}, {"qcName"}, {"qcActive", Integer}},
            {{"QuoteConfidID"}}},
        {"Reason", {{"ReasonID", Integer}, {"reCode"}, {"reDescription"}, {"reActive", Integer}}, {{"ReasonID"}}},
        {"LostDetail", {
            {"QuoteID", Integer}, {"ReasonID", Integer}, {"ldDateLost", Date}, {"ldUserLost"}, {"ldConfirm"},
            {"ldPhone"}, {"ldRefNumber"}, {"ldNotes", LongText}},
            {{"QuoteID"}, {"ReasonID"}}},
        {"DLocRange", {
            {"DLRID", Integer}, {"RType", Integer}, {"RName"}, {"RStart"}, {"REnd"}, {"RPrinter"}},
            {{"DLRID"}}},
        {"Defaults", {
            {"Company"}, {"DefaultID", Integer}, {"Configure", Integer}, {"anUseQuoteNum", Integer},
            {"mdUseDLRange", Integer}, {"mdPickingSlip", Integer}, {"mdConfirmation", Integer},
            {"mdPSReprint", Integer}, {"mdOCReprint", Integer}, {"mdPrintName"}, {"mdPSPrintName"},
            {"mdOCPrintName"}, {"mdPSSplit", Integer}, {"mdEachLoc", Integer}, {"mdLocDetail", Integer},
            {"mdShowCustItem", Integer}, {"mdUsePLDef", Integer}, {"mdDefaultPL"}, {"qdStatusLost", Integer},
            {"qdStatusOpen", Integer}},
            {{"Company"}, {"DefaultID"}}},
    };
}
// clang-format on

/// A quote is read as a whole, so that what an insert leaves out must not be null; the transfer date is, until there
/// is a transfer, and the key has to be given.
void fill_quotes(SchemaTable& quote)
{
    for (auto& column : quote.columns) {
        if (column.name == "QuoteID" || column.name == "quDateTransfer") continue;
        const bool is_text = column.type == Text || column.type == LongText;
        const bool is_date = column.type == Date;
        column.default_value = is_text ? "''" : is_date ? "'1899-12-30'" : "0";
    }
}

}  // namespace

std::vector<SchemaTable> product_tables()
{
    auto schema = tables();
    fill_quotes(schema.front());
    return schema;
}

}  // namespace velora::stores
