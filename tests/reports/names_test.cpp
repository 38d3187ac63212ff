#include "delivery/export.h"
#include "gateway/accounting_lookups.h"
#include "gateway/addresses.h"
#include "gateway/database_lookups.h"
#include "gateway/quote_record.h"
#include "pricing/amount_display.h"
#include "pricing/base_price.h"
#include "pricing/charges.h"
#include "pricing/contract_price.h"
#include "pricing/taxes.h"
#include "pricing/units.h"
#include "reports/custom_report.h"
#include "reports/customer_list.h"
#include "reports/detail_lines.h"
#include "reports/print_totals.h"
#include "reports/quote_company.h"
#include "session/query.h"
#include "session/settings.h"
#include "session/value_helpers.h"

// The name under which each procedure reports: users read it to the people who help them.

namespace velora {
namespace {

using test::QuoteCompany;

constexpr const char* kWords = "the driver's words";

/// A connection that refuses everything.
class RefusingConnection final : public Connection {
public:
    std::unique_ptr<Recordset> Open(const Command&) override { throw Fault(4711, kWords); }
    std::unique_ptr<Rows> Stream(const Command&) override { throw Fault(4711, kWords); }
    std::unique_ptr<Rows> Execute(std::string_view) override { throw Fault(4711, kWords); }
    std::vector<DatabaseError>& Errors() override { return errors_; }
    std::unique_ptr<Connection> open_reader(const QueryLimits&) override { throw Fault(4711, kWords); }

private:
    std::vector<DatabaseError> errors_;
};

/// A session that knows its company and refuses everything else.
class RefusingSession final : public AccountingSession {
public:
    std::unique_ptr<View> OpenView(std::string_view, std::string_view) override { throw Fault(4711, kWords); }
    const CompanyInfo& Company() override { return company_; }
    const CurrencyInfo& GetCurrency(std::string_view) override { throw Fault(4711, kWords); }
    const std::vector<ActiveApplication>& ActiveApplications() override { throw Fault(4711, kWords); }
    std::vector<AccountingError>& Errors() override { return errors_; }

private:
    CompanyInfo company_;
    std::vector<AccountingError> errors_;
};

struct Case {
    const char* name;  ///< modules and procedures in the order of their boxes, joined by a blank
    std::function<void(SessionState&)> call;
};

const std::vector<Case> kCases{
    {"modGeneral.Get_QuoteStatus", [](auto& s) { Get_QuoteStatus(s, true); }},
    {"modGeneral.Get_QuoteType", [](auto& s) { Get_QuoteType(s, true); }},
    {"modGeneral.Get_QuoteConfid", [](auto& s) { Get_QuoteConfid(s, true); }},
    {"modGeneral.Get_Reasons", [](auto& s) { Get_Reasons(s, true); }},
    {"modGeneral.Get_Defaults", [](auto& s) { Get_Defaults(s); }},
    {"modGeneral.Load_Options", [](auto& s) { Load_Options(s, unopened_recordset(), 0, {}); }},
    {"modGeneral.Return_ListValue", [](auto& s) { Return_ListValue(s, unopened_recordset(), 1, 0); }},
    {"modGeneral.AP_ModuleVersion", [](auto& s) { AP_ModuleVersion(s, "IC"); }},
    {"modGeneral.Encrypt", [](auto& s) { Encrypt(s, "x"); }},
    {"modGeneral.Decrypt", [](auto& s) { Decrypt(s, "x"); }},
    {"modGeneral.Display_Date",
     [](auto& s) {
         Value date = "2026-03-01";
         Display_Date(s, date);
     }},
    {"modGeneral.Return_TBXDate",
     [](auto& s) {
         std::string text = "x";
         Return_TBXDate(s, text);
     }},
    {"modGeneral.SQLServer_DateFormat", [](auto& s) { SQLServer_DateFormat(s, "2026-03-01", false); }},
    {"modGeneral.Return_VLCustomerName", [](auto& s) { Return_VLCustomerName(s, 1); }},
    {"modGeneral.Check_VLCustNumber", [](auto& s) { Check_VLCustNumber(s, "1"); }},
    {"modGeneral.Return_VLCustCurCode", [](auto& s) { Return_VLCustCurCode(s, 1); }},
    {"modPrint.Return_VLCustomer", [](auto& s) { Return_VLCustomer(s, 1); }},
    {"modPrint.Use_VLNumber", [](auto& s) { Use_VLNumber(s); }},
    {"modGeneral.Get_LocationRange",
     [](auto& s) {
         std::shared_ptr<Recordset> ranges;
         Get_LocationRange(s, ranges, 1);
     }},
    {"modGeneral.Fetch_QuoteInfo", [](auto& s) { Fetch_QuoteInfo(s, s.gQuote, 1); }},
    {"modGeneral.Fetch_VLBillTo modGeneral.Fetch_VLShipTo",
     [](auto& s) {
         fetch_addresses(s, {0, "1", 5, 3, 4, ""});
     }},
    {"modGeneral.Fetch_VLBillTo modGeneral.Fetch_VLBDefaultAddress modGeneral.Fetch_VLShipTo "
     "modGeneral.Fetch_VLSDefaultAddress",
     [](auto& s) {
         fetch_addresses(s, {1, "1", 5, 0, 0, ""});
     }},
    {"modGeneral.Fetch_VLBillTo modGeneral.Fetch_ACCPACBillTo modGeneral.Fetch_VLShipTo modGeneral.Fetch_ACCPACShipTo",
     [](auto& s) {
         fetch_addresses(s, {0, "1", 5, 0, 0, ""});
     }},
    {"modGeneral.Return_AccPacName", [](auto& s) { Return_AccPacName(s, "1"); }},
    {"modGeneral.Return_LocationName", [](auto& s) { Return_LocationName(s, "1"); }},
    {"modGeneral.Return_TaxGroupDesc", [](auto& s) { Return_TaxGroupDesc(s, "1"); }},
    {"modGeneral.Return_TermsCodeDesc", [](auto& s) { Return_TermsCodeDesc(s, "1"); }},
    {"modGeneral.Return_PriceListDesc", [](auto& s) { Return_PriceListDesc(s, "1"); }},
    {"modGeneral.Return_CategoryDesc", [](auto& s) { Return_CategoryDesc(s, "1"); }},
    {"modGeneral.Return_CustCurCode", [](auto& s) { Return_CustCurCode(s, "1"); }},
    {"modGeneral.Return_ItemCommCode", [](auto& s) { Return_ItemCommCode(s, "1"); }},
    {"frmMain.Return_SalesPersonName", [](auto& s) { Return_SalesPersonName(s, "1"); }},
    {"modGeneral.Check_APCustNumber", [](auto& s) { Check_APCustNumber(s, "1"); }},
    {"modGeneral.Return_DefaultLocation", [](auto& s) { Return_DefaultLocation(s, "1"); }},
    {"modGeneral.Check_CustCurrencyCode", [](auto& s) { Check_CustCurrencyCode(s, "1"); }},
    {"modGeneral.Display_AccpacCurrency",
     [](auto& s) {
         std::string currency = "CAD";
         Display_AccpacCurrency(s, 1, currency, false);
     }},
    {"modGeneral.Return_FormatItem", [](auto& s) { Return_FormatItem(s, "1"); }},
    {"modGeneral.Remove_Separators", [](auto& s) { Remove_Separators(s, "1"); }},
    {"modGeneral.Return_ItemCommCode modGeneral.Return_ContractPrice modGeneral.Return_BasePrice",
     [](auto& s) {
         std::string list = "STD";
         std::string currency = "CAD";
         s.gQuote.AccpacID = "1200";
         Return_BasePrice(s, "ITEM", list, currency, 0, 1, 1);
     }},
    {"modGeneral.Return_VLBasePrice", [](auto& s) { Return_VLBasePrice(s, 1, "CAD", "STD"); }},
    {"modGeneral.Return_MarkupCostPrice", [](auto& s) { Return_MarkupCostPrice(s, "I", "STD", "CAD", 1, 1, 4); }},
    {"modGeneral.Return_ContractCostPrice", [](auto& s) { Return_ContractCostPrice(s, "I", "1", 1, 1, 4, 2, "CAD"); }},
    {"modGeneral.Return_CIGPrice", [](auto& s) { Return_CIGPrice(s, "GOLD", "PIPE"); }},
    {"modGeneral.Return_BaseUnit", [](auto& s) { Return_BaseUnit(s, "I", "STD", "CAD"); }},
    {"modGeneral.Return_BaseConvFactor", [](auto& s) { Return_BaseConvFactor(s, "I", "STD", "CAD", false); }},
    {"modGeneral.Return_VLBaseUnit", [](auto& s) { Return_VLBaseUnit(s, 1); }},
    {"modGeneral.Check_ItemUofM", [](auto& s) { Check_ItemUofM(s, "I", "EA", true); }},
    {"modGeneral.Return_APFactor", [](auto& s) { Return_APFactor(s, "I", "EA"); }},
    {"modGeneral.Return_ItemWeightUnit", [](auto& s) { Return_ItemWeightUnit(s); }},
    {"modGeneral.Get_TaxAuthorities",
     [](auto& s) { Get_TaxAuthorities(s, "TWO", s.gTaxAuthorities, s.gTaxAuthorityCount); }},
    {"modGeneral.Get_APItemTaxes", [](auto& s) { Get_APItemTaxes(s); }},
    {"modGeneral.Return_TaxRate", [](auto& s) { Return_TaxRate(s, "FED", "1", "1"); }},
    {"modGeneral.Get_MiscChargeInfo", [](auto& s) { Get_MiscChargeInfo(s, s.gMiscCharges, 1, "CAD"); }},
    {"modPrint.Get_DetailPrRecordset", [](auto& s) { Get_DetailPrRecordset(s, 1); }},
    {"modPrint.Fetch_PrItemDetails", [](auto& s) { Fetch_PrItemDetails(s, "CAD", false); }},
    {"modPrint.Return_QuantityAvailable", [](auto& s) { Return_QuantityAvailable(s, "I", "1", 1); }},
    {"modPrint.Calculate_PrintTotals",
     [](auto& s) {
         TaxSlots slots;
         Calculate_PrintTotals(s, 1, 0, slots);
     }},
    {"modPrint.Print_CustomerList", [](auto& s) { Print_CustomerList(s, "list.rpt", false, true); }},
    {"modPrint.Export_Report",
     [](auto& s) {
         s.ports.settings = nullptr;
         Export_Report(s, "x");
     }},
};

TEST(Names, AreThoseThatUsersKnow)
{
    for (const auto& c : kCases) {
        QuoteCompany company;
        company.add({}).load();
        auto& state = company.state();
        Get_DetailPrRecordset(state, 1);
        state.gConn = std::make_shared<RefusingConnection>();
        state.gSess = std::make_shared<RefusingSession>();
        if (std::string_view(c.name).ends_with("crypt")) state.ports.cipher = nullptr;
        if (std::string_view(c.name).ends_with("Date")) {
            state.ports.region = nullptr;
            state.ports.clock = nullptr;
        }
        c.call(state);
        std::string names;
        for (const auto& box : company.boxes()) {
            constexpr std::string_view kHead = "In Procedure: VL Report.";
            const auto start = box.text.find(kHead) + kHead.size();
            names += (names.empty() ? "" : " ") + box.text.substr(start, box.text.find(".\r", start) - start);
        }
        EXPECT_EQ(names, c.name);
    }
}

}  // namespace
}  // namespace velora
