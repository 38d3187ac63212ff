#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "gateway/accounting_lookups.h"
#include "gateway/addresses.h"
#include "gateway/database_lookups.h"
#include "pricing/amount_display.h"
#include "pricing/base_price.h"
#include "pricing/contract_price.h"
#include "pricing/taxes.h"
#include "pricing/units.h"
#include "reports/checklist.h"
#include "reports/confirmation.h"
#include "reports/customer_list.h"
#include "reports/detail_lines.h"
#include "reports/picking_slip.h"
#include "reports/quote_company.h"
#include "session/query.h"
#include "support/recording.h"

// Every query and every call on a view, letter for letter: sites have stored procedures, views and an accounting system
// of their own behind them. Set VELORA_RENEW_GOLDEN=1 to write the files anew, and read the difference.

namespace velora {
namespace {

using test::Calls;
using test::QuoteCompany;

/// What a list of steps asked of the two stores, under the name of each step.
class Script {
public:
    explicit Script(WhichEngine engine) : company_(engine)
    {
        company_.add({.number = 1, .factor = "12", .more = "deLocation = '1', deCategory = 'A1', deHasItemCom = 1"})
            .add({.number = 2, .item_kind = 10, .price_list = "'OWN'"})
            .add({.number = 3, .detail_kind = 10})
            .add({.number = 4, .price_list = "NULL", .more = "deLocation = '', deTaxClass1 = ''"})
            .charge(1, "5")
            .product(
                "UPDATE Quote SET quLocation = '1', quTermsCode = 'N30', quSalesperson1 = 'JS', quShipToLoc = 'WH';"
                "INSERT INTO Quote (QuoteID, CustFrom, CustomerID, quDateEnter, quCurCode) VALUES (2, 1, 5, "
                "'2026-03-01', ' '); INSERT INTO Details (QuoteID, Line, deDType) VALUES (2, 1, 10);"
                "INSERT INTO Customer (CustomerID, CustomerNumber, cuAccountSet, cuCurCode, Exported) VALUES "
                "(5, 'O''N', 'TRADE', '', 0)");
        company_.mark("Customer", {"CustomerID", "CustomerNumber", "cuAccountSet", "cuCurCode", "Exported"});
        company_.accounting(
            "INSERT INTO IC0290 (ITEMNO, LOCATION, AQTYONHAND, QTYSALORDR) VALUES ('ITEM', 'A', 1, 0), ('ITEM', '2', "
            "9, 1);"
            "INSERT INTO AR0013 VALUES ('TRADE', 'CAD'); INSERT INTO IC0380 (HYHEN) VALUES (1); INSERT INTO IC0750 "
            "VALUES ('ITEM', 'EA', 1), ('ITEM', 'BOX', 12);"
            "INSERT INTO IC0330 VALUES ('ITEM', 'FED', '1'); INSERT INTO OE0440 (CURRENCY, MISCCHARGE) VALUES ('CAD', "
            "'FRT'); INSERT INTO IC0274 (CUSTNO, ITEMNO, PRICELIST, STARTDATE, PRICETYPE, COSTMETHOD) VALUES "
            "('1200', 'ITEM', 'STD', '', 4, 1);"
            "INSERT INTO MW0200 (CTYPE, CCODE, MANF1, MANF2) VALUES (1, '', 'X', 'PIPE'), (2, 'GOLD', '1', '2')");
        company_.mark("IC0274", {"CUSTNO", "ITEMNO", "PRICELIST", "STARTDATE", "PRICETYPE", "COSTMETHOD"});
        company_.mark("IC0290", {"ITEMNO", "LOCATION"});
        company_.mark("IC0480", {"CURRENCY", "ITEMNO", "PRICELIST", "PRICETYPE", "PRICEBASE", "PRICEFMT", "BASEUNIT"});
        auto& state = company_.state();
        state.gConn = test::recording(state.gConn, calls_);
        state.gSess = test::recording(state.gSess, calls_);
        state.gQuote.AccpacID = "1200";
    }

    template <class Step>
    void step(const std::string& name, Step run)
    {
        calls_.clear();
        run(company_.state());
        text_ += "== " + name + "\n";
        for (const auto& call : calls_) text_ += call + "\n";
    }

    /// The same of an order document, but for the calls that every document makes.
    template <class Step>
    void order_step(const std::string& defaults, Step run)
    {
        company_.product("UPDATE Defaults SET " + defaults);
        Get_Defaults(company_.state());
        calls_.clear();
        run(company_.state());
        text_ += "== " + defaults + "\n";
        for (const auto& call : calls_) {
            if (call.find("deDType") != std::string::npos || call.starts_with("execute")) text_ += call + "\n";
        }
    }

    [[nodiscard]] QuoteCompany& company() { return company_; }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    Calls calls_;
    QuoteCompany company_;
    std::string text_;
};

void run_lists(Script& script)
{
    for (const bool all : {false, true}) {
        script.step(all ? "lists, all" : "lists, active", [&](SessionState& s) {
            Get_QuoteStatus(s, all);
            Get_QuoteType(s, all);
            Get_QuoteConfid(s, all);
            Get_Reasons(s, all);
        });
    }
    script.step("defaults", [](SessionState& s) { Get_Defaults(s); });
}

void run_database_lookups(Script& script)
{
    script.step("own customers", [](SessionState& s) {
        Return_VLCustomerName(s, 5);
        Return_VLCustomer(s, 5);
        Check_VLCustNumber(s, " O'N ");
        Return_VLCustCurCode(s, 5);
    });
    script.step("numbers and ranges", [](SessionState& s) {
        Use_VLNumber(s);
        std::shared_ptr<Recordset> ranges;
        Get_LocationRange(s, ranges, 1);
    });
    script.step("own items", [](SessionState& s) {
        Return_VLBaseUnit(s, 9);
        Return_VLBasePrice(s, 9, " CAD ", " O'X ");
    });
    script.step("a date of the server", [](SessionState& s) { SQLServer_DateFormat(s, "2026-03-13", true); });
    script.step("a statement of either dialect", [](SessionState& s) {
        execute(s, "UPDATE [Quote] SET [quLines] = 1;", "UPDATE Quote SET quLines = 1");
    });
    for (const auto& [name, keys] : {std::pair{"addresses, saved", AddressKeys{0, "1200", 5, 3, 4, "WH"}},
                                     {"addresses of an accounting customer", AddressKeys{0, " 1200 ", 5, 0, 0, " "}},
                                     {"addresses of its location", AddressKeys{0, "1200", 5, 0, 0, " WH "}},
                                     {"addresses of an own customer", AddressKeys{1, "1200", 5, 0, 0, "WH"}}}) {
        script.step(name, [&](SessionState& s) { fetch_addresses(s, keys); });
    }
}

void run_accounting_lookups(Script& script)
{
    script.step("codes", [](SessionState& s) {
        for (const auto lookup : {Return_AccPacName, Return_LocationName, Return_TaxGroupDesc, Return_TermsCodeDesc,
                                  Return_PriceListDesc, Return_CategoryDesc, Return_CustCurCode, Return_ItemCommCode,
                                  Return_SalesPersonName, Return_DefaultLocation, Check_CustCurrencyCode}) {
            lookup(s, " ITEM ");
        }
        Check_APCustNumber(s, " 1200 ");
    });
    script.step("amounts and item numbers", [](SessionState& s) {
        Return_FormatItem(s, " ITEM ");
        Remove_Separators(s, "IT-EM");
        Return_ItemWeightUnit(s);
        Return_QuantityAvailable(s, " ITEM ", " 2 ", 1);
    });
    script.step("units", [](SessionState& s) {
        Check_ItemUofM(s, " ITEM ", " EA ", true);
        Return_APFactor(s, "IT-EM", "BOX");
        Return_BaseUnit(s, " ITEM", "STD ", "");
        Return_BaseConvFactor(s, "ITEM", "STD", "CAD", true);
    });
    script.step("taxes", [](SessionState& s) {
        Get_TaxAuthorities(s, " TWO ", s.gTaxAuthorities, s.gTaxAuthorityCount);
        Return_TaxRate(s, " FED ", " 1 ", "1");
    });
}

void run_prices(Script& script)
{
    Get_DetailPrRecordset(script.company().state(), 1);
    const auto price = [](SessionState& s) {
        std::string list = "STD";
        std::string currency = "CAD";
        Return_BasePrice(s, "ITEM", list, currency, 0, 1, 1);
    };
    script.step("a price under a contract", price);
    script.company().accounting("DELETE FROM IC0274");
    script.step("a price of a list", price);
    script.step("costs of contracts", [](SessionState& s) {
        Return_MarkupCostPrice(s, "ITEM", "STD", "CAD", 1, 1, 4);
        Return_ContractCostPrice(s, " ITEM ", " 2 ", 1, 1, 4, 2, "CAD");
    });
    script.step("a price of the matrix", [](SessionState& s) { Return_CIGPrice(s, "GOLD", "PIPE"); });
}

void run_reports(Script& script)
{
    auto& company = script.company();
    company.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
    script.step("a line is completed", [](SessionState& s) {
        s.gQuoteDetails->AbsolutePosition(4);
        Fetch_PrItemDetails(s, "CAD", false);
    });
    script.step("a quote of an accounting customer",
                [](SessionState& s) { Print_Quote(s, 1, "quote.rpt", 0, false, true); });
    script.step("a quote of an own customer", [](SessionState& s) { Print_Quote(s, 2, "quote.rpt", 0, false, true); });
    script.step("the customer list", [](SessionState& s) { Print_CustomerList(s, "list.rpt", false, true); });
}

void run_orders(Script& script)
{
    script.company().product(
        "UPDATE Details SET deLocation = 'O''N', dePickingSeq = '10', deShipDate = '2026-03-15' WHERE Line = 1; UPDATE "
        "Details SET deLocation = 'B', dePickingSeq = '9', deShipDate = '2026-03-20' WHERE Line <> 1;"
        "INSERT INTO DLocRange (DLRID, RType, RName, RStart, REnd, RPrinter) VALUES (1, 0, 'A', ' ', ' O''N ', ''), "
        "(2, 0, 'B', 'B', 'B', ''), (3, 0, 'C', 'A', 'C', ''), (4, 1, 'D', '', '7', ''), (5, 1, 'E', '9', '9', ''), "
        "(6, 1, 'F', '8', '99', '');"
        "UPDATE Quote SET quSourceCurr = 'CAD'");
    const auto slip = [](bool whole) {
        return [whole](SessionState& s) { Print_PickingSlip(s, 1, "slip.rpt", true, false, whole); };
    };
    script.order_step("mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0", slip(false));
    script.order_step("mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0", slip(true));
    script.order_step("mdUseDLRange = 0, mdPSSplit = 1, mdEachLoc = 0", slip(false));
    for (const char* each : {"0", "1", "2", "3"}) {
        script.order_step(std::string("mdUseDLRange = 1, mdEachLoc = ") + each, slip(each[0] == '2'));
        script.order_step(std::string("mdEachLoc = ") + each,
                          [](SessionState& s) { Print_Checklist(s, 1, "checklist.rpt", true, false); });
    }
    script.order_step("mdOCPrintName = ' '",
                      [](SessionState& s) { Print_Confirmation(s, 1, "confirmation.rpt", true, false); });
}

TEST(Calls, AreThoseThatSitesHaveBuiltOn)
{
    for (const auto& [engine, file] :
         {std::pair{eDBSQLServer, "calls_sqlserver.txt"}, {eDBPervasive, "calls_pervasive.txt"}}) {
        Script script(engine);
        run_lists(script);
        run_database_lookups(script);
        run_accounting_lookups(script);
        run_prices(script);
        run_reports(script);
        run_orders(script);
        EXPECT_TRUE(script.company().boxes().empty()) << script.company().box_text(0);

        const auto golden = std::filesystem::path(VELORA_SOURCE_DIR) / "tests" / "golden" / "reports" / file;
        if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) {
            std::filesystem::create_directories(golden.parent_path());
            std::ofstream(golden) << script.text();
            continue;
        }
        std::stringstream expected;
        expected << std::ifstream(golden).rdbuf();
        EXPECT_EQ(script.text(), expected.str()) << file;
    }
    if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) GTEST_SKIP() << "written anew";
}

}  // namespace
}  // namespace velora
