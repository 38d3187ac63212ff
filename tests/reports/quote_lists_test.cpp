#include <algorithm>

#include "reports/list_company.h"

// The lists of quotes that share one row: win loss, lost reasons, overview.

namespace velora {
namespace {

using test::expect_row;
using test::Expected;
using test::FakeReport;
using test::ListCompany;
using test::shown;

using Sources = std::vector<std::pair<const char*, const char*>>;
using Texts = std::vector<std::string>;

// clang-format off
const Sources kQuoteSources{
    {"Quote Number", "Quote.QuoteNumber"}, {"PO Number", "Quote.quPONumber"}, {"Quote Date", "Quote.quDateEnter"},
    {"Shipping Date", "Quote.quDateShip"}, {"Expiry Date", "Quote.quDateExpire"}, {"Sage Accpac Company", "Quote.quCompany"},
    {"Entered By", "Quote.quUserEnter"}, {"Date Last Modified", "Quote.quDateModify"}, {"Last Modified By", "Quote.quUserModify"},
    {"Location", "Quote.quLocation"}, {"Description", "Quote.quDesc"}, {"Reference Number", "Quote.quReference"},
    {"Detail Lines", "Quote.quLines"}, {"Quote Notes", "Quote.quNotes"}, {"Ship-To Location", "Quote.quShipToLoc"},
    {"Ship Via", "Quote.quShipVia"}, {"Ship Via Description", "Quote.quShipViaDesc"}, {"FOB Point", "Quote.quFOBPoint"},
    {"Customer Price List", "Quote.quPriceList"}, {"Customer Tax Group", "Quote.quTaxGroup"}, {"Customer Terms Code", "Quote.quTermsCode"},
    {"Customer Currency Code", "Quote.quCurCode"},
    {"Customer Tax Class1", "Quote.quTaxClass1"}, {"Customer Tax Class2", "Quote.quTaxClass2"}, {"Customer Tax Class3", "Quote.quTaxClass3"},
    {"Customer Tax Class4", "Quote.quTaxClass4"}, {"Customer Tax Class5", "Quote.quTaxClass5"},
    {"Customer Registration No1", "Quote.quRegNumber1"}, {"Customer Registration No2", "Quote.quRegNumber2"},
    {"Customer Registration No3", "Quote.quRegNumber3"}, {"Customer Registration No4", "Quote.quRegNumber4"},
    {"Customer Registration No5", "Quote.quRegNumber5"},
    {"Customer Salesperson1", "Quote.quSalesperson1"}, {"Customer Salesperson2", "Quote.quSalesperson2"},
    {"Customer Salesperson3", "Quote.quSalesperson3"}, {"Customer Salesperson4", "Quote.quSalesperson4"},
    {"Customer Salesperson5", "Quote.quSalesperson5"},
    {"Customer Sales Split1", "Quote.quPercentSS1"}, {"Customer Sales Split2", "Quote.quPercentSS2"}, {"Customer Sales Split3", "Quote.quPercentSS3"},
    {"Customer Sales Split4", "Quote.quPercentSS4"}, {"Customer Sales Split5", "Quote.quPercentSS5"},
};
const Sources kStatusSources{
    {"Status Code", "QuoteStatus.qsCode"}, {"Status Name", "QuoteStatus.qsName"}, {"Status Desc", "QuoteStatus.qsDescription"},
};
const Sources kReasonSources{
    {"Reason Code", "Reason.reCode"}, {"Reason Desc", "Reason.reDescription"}, {"Reason Date Lost", "LostDetail.ldDateLost"},
    {"Reason User Lost", "LostDetail.ldUserLost"}, {"Reason Confirmed By", "LostDetail.ldConfirm"}, {"Reason Confirm Phone", "LostDetail.ldPhone"},
    {"Reason Reference No", "LostDetail.ldRefNumber"}, {"Reason Notes", "LostDetail.ldNotes"},
};
const Sources kRateSources{
    {"Home Currency", "Quote.quHomeCurr"}, {"Source Currency", "Quote.quSourceCurr"}, {"Rate Type", "Quote.quRateType"},
    {"Rate Date", "Quote.quRateDate"}, {"Exchange Rate", "Quote.quRateEx"},
};
const Sources kAccountingCustomer{
    {"Customer Number", "Quote.AccPacID"}, {"Customer Short Name", "AR0024.TEXTSNAM"}, {"Customer Full Name", "AR0024.NAMECUST"},
    {"Customer Address 1", "AR0024.TEXTSTRE1"}, {"Customer Address 2", "AR0024.TEXTSTRE2"}, {"Customer Address 3", "AR0024.TEXTSTRE3"},
    {"Customer Address 4", "AR0024.TEXTSTRE4"}, {"Customer City", "AR0024.NAMECITY"}, {"Customer Prov/State", "AR0024.CODESTTE"},
    {"Customer Country", "AR0024.CODECTRY"}, {"Customer PC/Zip Code", "AR0024.CODEPSTL"}, {"Customer Phone", "AR0024.TEXTPHON1"},
    {"Customer Fax", "AR0024.TEXTPHON2"}, {"Contact", "AR0024.NAMECTAC"}, {"Contact Email", "AR0024.EMAIL1"},
    {"Customer Group Code", "AR0024.IDGRP"},
};
const Sources kOwnCustomer{
    {"Customer Number", "Customer.CustomerNumber"}, {"Customer Short Name", "Customer.cuShortName"}, {"Customer Full Name", "Customer.cuFullName"},
    {"Customer Address 1", "Customer.cuAddress1"}, {"Customer Address 2", "Customer.cuAddress2"}, {"Customer Address 3", "Customer.cuAddress3"},
    {"Customer Address 4", "Customer.cuAddress4"}, {"Customer City", "Customer.cuCity"}, {"Customer Prov/State", "Customer.cuProvState"},
    {"Customer Country", "Customer.cuCountry"}, {"Customer PC/Zip Code", "Customer.cuPCZip"}, {"Customer Phone", "Customer.cuPhone"},
    {"Customer Fax", "Customer.cuFax"}, {"Contact", "Customer.cuContact"}, {"Contact Email", "Customer.cuEmail1"},
    {"Customer Group Code", "Customer.cuGroupCode"},
};
// clang-format on

class QuoteListCompany : public ListCompany {
public:
    explicit QuoteListCompany(WhichEngine engine_in_use) : ListCompany(engine_in_use)
    {
        product(
            "INSERT INTO QuoteStatus (QuoteStatusID, qsCode, qsName, qsActive) VALUES (1, 'O', 'Open', 1), "
            "(2, 'W', 'Won', 1), (3, 'L', 'Lost', 1), (4, 'H', 'Hold', 1)");
        product(
            "INSERT INTO Reason (ReasonID, reCode, reDescription, reActive) VALUES (7, 'PRICE', 'Too dear', 1), "
            "(8, 'LATE', 'Too late', 0)");
    }

    /// A quote of an accounting customer that is nowhere, entered on 1 March.
    void quote(int id, int status, const std::string& more = "quLines = 0")
    {
        const std::string key = std::to_string(id);
        product("INSERT INTO Quote (QuoteID, QuoteNumber, CustFrom, AccPacID, QuoteStatusID, quDateEnter) VALUES (" +
                key + ", 'Q" + key + "', 0, 'NOBODY', " + std::to_string(status) +
                ", '2026-03-01');"
                "UPDATE Quote SET " +
                more + " WHERE QuoteID = " + key);
    }
    void lost(int quote, int reason, const std::string& more = "ldUserLost = 'SALES'")
    {
        const std::string key = std::to_string(quote);
        product("INSERT INTO LostDetail (QuoteID, ReasonID) VALUES (" + key + ", " + std::to_string(reason) +
                "); UPDATE LostDetail SET " + more + " WHERE QuoteID = " + key +
                " AND ReasonID = " + std::to_string(reason));
    }

    /// Quote 1, won or of another status, of a customer of the accounting system or of the product's own, with a value
    /// of its own in each column of all tables.
    void marked_quote(bool own, int status = 2)
    {
        accounting("UPDATE CompanyInfo SET PhoneFormat = 0");
        quote(1, status, own ? "CustFrom = 7, CustomerID = 5" : "CustFrom = 0");
        product("UPDATE Quote SET quCustomerType = 3");
        mark("Quote", {"QuoteID", "CustFrom", "CustomerID", "QuoteStatusID", "quCustomerType"});
        mark("QuoteStatus", {"QuoteStatusID", "qsActive"});
        lost(1, 8);
        mark("Reason", {"ReasonID", "reActive"});
        mark("LostDetail", {"QuoteID", "ReasonID"});
        product("INSERT INTO Customer (CustomerID) VALUES (5)").mark("Customer", {"CustomerID"});
        accounting("INSERT INTO AR0024 (IDCUST) VALUES ('" + marker("Quote.AccPacID") + "')")
            .mark("AR0024", {"IDCUST"});
    }
    /// What a closed quote row of it shows.
    Expected closed_quote(const std::string& kind, bool own)
    {
        Expected expected{
            {"Customer Discount Type", "C"}, {"Date All", "1"}, {"Date From", "2026-02-14"}, {"Date To", "2026-02-10"}};
        take_sources(expected, kind, *this, kQuoteSources);
        take_sources(expected, kind, *this, own ? kOwnCustomer : kAccountingCustomer);
        return expected;
    }
};

class QuoteLists : public testing::TestWithParam<WhichEngine>, public QuoteListCompany {
public:
    QuoteLists() : QuoteListCompany(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(BothDialects, QuoteLists, testing::Values(eDBSQLServer, eDBPervasive));

Selection between(const char* from, const char* to)
{
    Selection what;
    what.all_dates = false;
    what.from = *DateTime::from_iso(from);
    what.to = *DateTime::from_iso(to);
    return what;
}

/// All dates, with days in the boxes that do not count and lie upside down.
Selection everything()
{
    Selection what = between("2026-02-14", "2026-02-10");
    what.all_dates = true;
    return what;
}

Selection of_accounting(const std::string& customer, Selection what = {})
{
    what.customer_from = CustomerFrom::Accounting;
    what.accounting_customer = customer;
    return what;
}

Selection of_own(int32_t customer, Selection what = {})
{
    what.customer_from = CustomerFrom::Own;
    what.customer_id = customer;
    return what;
}

TEST_P(QuoteLists, WinLossShowsEveryFieldFromItsColumn)
{
    for (const bool own : {false, true}) {
        QuoteListCompany company(GetParam());
        company.marked_quote(own);
        Expected expected = company.closed_quote("win-loss", own);
        take_sources(expected, "win-loss", company, kStatusSources);
        take_sources(expected, "win-loss", company, {{"Sage Accpac OE Number", "Quote.quACCPACNum"}});
        expected["Status ID"] = "2";
        const auto& printed = company.rows("win-loss", everything());
        ASSERT_EQ(printed.size(), 1U);
        expect_row("win-loss", printed[0], expected);
        EXPECT_EQ(shown(printed[0], "Company Name"), "Test Company");
        EXPECT_TRUE(company.state().gExportFile.ends_with("20260313 - Win Loss Ratio Graph.pdf"));
    }
}

TEST_P(QuoteLists, WinLossHasEveryQuoteThatIsNotOpenAsTheCompanyNumbersIt)
{
    product("UPDATE Defaults SET qdStatusOpen = 4");
    for (const int status : {1, 2, 3, 4, 9}) quote(status, status);
    EXPECT_EQ(shown(rows("win-loss"), "Quote Number"), (Texts{"Q1", "Q2", "Q3"})) << "4 is open, 9 is no status";
}

TEST_P(QuoteLists, GoToThePrinterOfTheSettings)
{
    printers.printers = {{"drv", "Office", "P1"}, {"drv", "Dock 2", "P2"}};
    settings.set("Morvane\\Velora", "TESTCO_Report", "Name", " Dock ");
    quote(1, 3);
    lost(1, 7);
    for (const char* kind : {"win-loss", "lost-reasons", "overview"}) {
        engine.report->printer.clear();
        EXPECT_EQ(print(kind), RunEnd::Delivered) << kind << box_text(0);
        EXPECT_EQ(engine.report->printer, "drv|Dock 2|P2") << kind;
    }
}

TEST_P(QuoteLists, CriteriaSelectByCustomerAndByDayOfEntry)
{
    quote(1, 2, "AccPacID = 'O''Brien; %', CustomerID = 5");
    quote(2, 2, "AccPacID = '1200', CustFrom = 1, CustomerID = 5, quDateEnter = '2026-03-09'");
    quote(3, 2, "AccPacID = 'O', quDateEnter = '2026-03-10T23:59:59'");
    quote(4, 2, "quDateEnter = '2026-03-11', CustomerID = 55");
    struct Case {
        const char* why;
        Selection what;
        Texts numbers;
    };
    const bool to_the_end_of_the_day = GetParam() == eDBSQLServer;
    for (const auto& c : {
             Case{"a blank number finds what has none", of_accounting("  "), {}},
             Case{"a quote and more in a number", of_accounting(" O'Brien; % "), {"Q1"}},
             Case{"a pattern is none", of_accounting("%"), {}},
             Case{"an end of the text", of_accounting("O' OR '1'='1"), {}},
             Case{"own customers whatever their quote says of their place", of_own(5), {"Q1", "Q2"}},
             Case{"one day", between("2026-03-09", "2026-03-09"), {"Q2"}},
             Case{"both ends", between("2026-03-01", "2026-03-11"), {"Q1", "Q2", "Q3", "Q4"}},
             Case{"upside down", between("2026-03-11", "2026-03-01"), {}},
             Case{"the last day to its end, where the dialect says so", between("2026-03-10", "2026-03-10"),
                  to_the_end_of_the_day ? Texts{"Q3"} : Texts{}},
             Case{"a customer within days", of_own(5, between("2026-03-02", "2026-03-31")), {"Q2"}},
         }) {
        EXPECT_EQ(shown(rows("win-loss", c.what), "Quote Number"), c.numbers) << c.why;
    }
    Selection nobody = everything();
    nobody.accounting_customer = "1200";
    nobody.customer_id = 5;
    EXPECT_EQ(rows("win-loss", nobody).size(), 4U) << "a customer counts where its place is chosen";
}

TEST_P(QuoteLists, TheOrderNumberIsTheQuoteNumberWhereTheCompanySaysSo)
{
    quote(1, 2, "quACCPACNum = ' ORD9 '");
    for (const auto& [flag, number] : {std::pair{"1", "Q1"}, {"0", "ORD9"}, {"2", "ORD9"}, {"NULL", "ORD9"}}) {
        product(std::string("UPDATE Defaults SET anUseQuoteNum = ") + flag);
        EXPECT_EQ(shown(rows("win-loss").at(0), "Sage Accpac OE Number"), number) << flag;
    }
    EXPECT_TRUE(boxes().empty());
}

TEST_P(QuoteLists, ACustomerThatIsNowhereOrUnnamedLeavesItsFieldsEmptyAndNotThoseOfTheRowBefore)
{
    accounting(
        "INSERT INTO AR0024 (IDCUST, NAMECUST, TEXTPHON1) VALUES ('1200', ' Bay Works ', '9025551234 '), ('5', 'Five "
        "Ltd', '')");
    product(
        "INSERT INTO Customer (CustomerID, CustomerNumber, cuFullName, cuFax) VALUES (5, 'C5', NULL, '9025559876x')");
    quote(1, 2, "AccPacID = ' 1200 '");
    quote(2, 2, "AccPacID = 'GONE'");
    quote(3, 2, "AccPacID = '1200'");
    quote(4, 2, "AccPacID = NULL");
    quote(5, 2, "CustFrom = 1, CustomerID = 5");
    quote(6, 2, "CustFrom = 1, CustomerID = 6");
    quote(7, 2, "CustFrom = 1, CustomerID = NULL");
    quote(8, 2, "CustFrom = NULL, AccPacID = '1200'");
    quote(9, 2, "CustFrom = -1, CustomerID = 5");
    quote(10, 2, "AccPacID = '5'");
    const auto& printed = rows("win-loss");
    const std::string none = "<null>";
    ASSERT_EQ(shown(printed, "Customer Number"),
              (Texts{"1200", none, "1200", none, "C5", none, none, none, "C5", "5"}));
    EXPECT_EQ(shown(printed, "Customer Full Name"),
              (Texts{"Bay Works", none, "Bay Works", none, none, none, none, none, none, "Five Ltd"}))
        << "the same number in both places is two customers";
    EXPECT_EQ(shown(printed, "Customer Phone")[0], "(902) 555-1234");
    EXPECT_EQ(shown(printed, "Customer Fax")[4], "(902) 555-9876x");
    EXPECT_EQ(shown(printed, "Customer Fax")[0], "") << "a field of the accounting system is never null";
    EXPECT_TRUE(boxes().empty());
}

TEST_P(QuoteLists, ANullLeavesItsFieldEmptyAndTheRowGoesOn)
{
    quote(1, 2,
          "quDateEnter = NULL, quDateModify = NULL, quDesc = NULL, quLines = NULL, quCustomerType = NULL, "
          "quPercentSS2 = NULL");
    quote(2, 2, "quCustomerType = 6, quPercentSS2 = 33.3");
    const auto& printed = rows("win-loss");
    ASSERT_EQ(printed.size(), 2U);
    for (const char* field : {"Quote Date", "Date Last Modified", "Description", "Detail Lines",
                              "Customer Discount Type", "Customer Sales Split2"}) {
        EXPECT_EQ(shown(printed[0], field), "<null>") << field;
    }
    EXPECT_EQ(shown(printed[1], "Customer Discount Type"), "<null>") << "no letter";
    EXPECT_EQ(printed[1].at("Customer Sales Split2"), Value(33.3F)) << "a single";
    EXPECT_EQ(shown(printed[0], "Status Name"), "Won") << "what stands behind them";
}

TEST_P(QuoteLists, DefaultsThatSayNothingOfTheOpenStatusEndInABox)
{
    for (const char* lacking : {"UPDATE Defaults SET qdStatusOpen = NULL", "DELETE FROM Defaults"}) {
        QuoteListCompany company(GetParam());
        company.quote(1, 2);
        company.product(lacking);
        EXPECT_EQ(company.print("win-loss"), RunEnd::Failed) << lacking;
        ASSERT_EQ(company.boxes().size(), 1U) << lacking;
        EXPECT_NE(company.box_text(0).find("modPrint.Print_WinLoss"), std::string::npos) << company.box_text(0);
    }
}

TEST_P(QuoteLists, WithoutAQuoteABoxSaysSo)
{
    EXPECT_EQ(print("win-loss"), RunEnd::NoData);
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(boxes()[0].title, "No Data Found");
    EXPECT_EQ(boxes()[0].text, "No data could be found for the report.");
    EXPECT_EQ(boxes()[0].icon, Icon::Information);
}

TEST_P(QuoteLists, LostReasonsShowEveryFieldFromItsColumn)
{
    marked_quote(false);
    Expected expected = closed_quote("lost-reasons", false);
    take_sources(expected, "lost-reasons", *this, kReasonSources);
    expected["Reason ID"] = "8";
    const auto& printed = rows("lost-reasons", everything());
    ASSERT_EQ(printed.size(), 1U);
    expect_row("lost-reasons", printed[0], expected);
    EXPECT_TRUE(state().gExportFile.ends_with("20260313 - Lost Reason Graph.pdf"));
}

TEST_P(QuoteLists, EachReasonOfAQuoteIsARowWhateverItsStatus)
{
    quote(1, 1);
    quote(2, 3, "AccPacID = '12''00', CustomerID = 5");
    quote(3, 3);
    quote(4, 9, "quDateEnter = '2026-03-20', CustomerID = 5");
    lost(1, 7, "ldPhone = '9025551234'");
    lost(2, 7, "ldPhone = NULL, ldDateLost = '2026-03-02'");
    lost(2, 8);
    lost(4, 8);
    lost(1, 66);
    const auto numbers = [&](const Selection& what) {
        auto found = shown(rows("lost-reasons", what), "Quote Number");
        std::ranges::sort(found);  // the statement has no order
        return found;
    };
    EXPECT_EQ(numbers(everything()), (Texts{"Q1", "Q2", "Q2", "Q4"})) << "66 is no reason, 3 has none, 9 is no status";
    EXPECT_EQ(numbers(of_accounting("12'00")), (Texts{"Q2", "Q2"}));
    EXPECT_EQ(numbers(of_own(5)), (Texts{"Q2", "Q2", "Q4"}));
    EXPECT_EQ(numbers(of_own(5, between("2026-03-15", "2026-03-20"))), (Texts{"Q4"}));
    EXPECT_EQ(numbers(of_accounting("12'00", between("2026-03-15", "2026-03-20"))), Texts{});
    EXPECT_EQ(numbers(between("2026-03-01", "2026-03-01")), (Texts{"Q1", "Q2", "Q2"}));
    const auto& first = rows("lost-reasons", of_accounting("NOBODY", between("2026-03-01", "2026-03-01")));
    EXPECT_EQ(shown(first.at(0), "Reason Confirm Phone"), "(902) 555-1234");
    EXPECT_EQ(shown(first.at(0), "Date All"), "0");
}

TEST_P(QuoteLists, LostReasonsOfAnOwnCustomerThatIsFoundEndInABoxOfTheirOwn)
{
    product("INSERT INTO Customer (CustomerID, CustomerNumber, cuCountry) VALUES (5, 'C5', 'Canada')");
    quote(1, 3, "CustFrom = 1, CustomerID = 6");
    lost(1, 7);
    EXPECT_EQ(rows("lost-reasons").size(), 1U) << "one that is gone does no harm";
    EXPECT_TRUE(boxes().empty());
    quote(2, 3, "CustFrom = 1, CustomerID = 5");
    lost(2, 7);
    EXPECT_EQ(print("lost-reasons"), RunEnd::Failed);
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_NE(box_text(0).find("3265"), std::string::npos) << box_text(0);
    EXPECT_NE(box_text(0).find("modPrint.Print_LostReason"), std::string::npos) << box_text(0);
    EXPECT_TRUE(engine.report->rows.empty()) << "nothing goes out";
    EXPECT_EQ(print("lost-reasons", of_accounting("1200")), RunEnd::NoData) << "those of others are not touched";
}

TEST_P(QuoteLists, OverviewShowsEveryFieldFromItsColumn)
{
    for (const bool own : {false, true}) {
        QuoteListCompany company(GetParam());
        company.marked_quote(own, 3);
        Expected expected = company.closed_quote("overview", own);
        take_sources(expected, "overview", company, kStatusSources);
        take_sources(expected, "overview", company, kRateSources);
        take_sources(expected, "overview", company, kReasonSources);
        take_sources(expected, "overview", company,
                     {{"Sage Accpac OE Number", "Quote.quACCPACNum"},
                      {"Customer Email", own ? "Customer.cuEmail2" : "AR0024.EMAIL2"}});
        expected["Status ID"] = "3";
        expected["Reason ID"] = "8";
        Selection lost = everything();
        lost.status_id = 3;
        expect_row("overview", company.rows("overview", lost).at(0), expected);
        EXPECT_TRUE(company.state().gExportFile.ends_with("20260313 - Quote Overview.pdf"));

        for (auto& [field, text] : expected) text = field.starts_with("Reason ") ? "<null>" : text;
        expect_row("overview", company.rows("overview", everything()).at(0), expected);
    }
}

TEST_P(QuoteLists, OverviewSelectsByStatusAndLostQuotesByReason)
{
    quote(11, 3);
    quote(2, 3);
    quote(5, 3, "AccPacID = '1200', CustomerID = 5");
    quote(4, 2, "AccPacID = '1200', quDateEnter = '2026-03-20'");
    quote(6, 1, "CustomerID = 5");
    quote(7, 9);
    lost(11, 7);
    lost(5, 8);
    lost(5, 7);
    lost(4, 7);
    struct Case {
        const char* why;
        int32_t status, reason;
        Selection what;
        Texts numbers;
    };
    for (const auto& c : {
             Case{"all of a known status, by id", 0, 0, everything(), {"Q2", "Q4", "Q5", "Q6", "Q11"}},
             Case{"a reason counts for lost quotes alone", 0, 7, everything(), {"Q2", "Q4", "Q5", "Q6", "Q11"}},
             Case{"and for no other status", 2, 8, everything(), {"Q4"}},
             Case{"lost without a reason is absent", 3, 0, everything(), {"Q5", "Q5", "Q11"}},
             Case{"one reason", 3, 7, everything(), {"Q5", "Q11"}},
             Case{"a reason below 1 is all", 3, -1, everything(), {"Q5", "Q5", "Q11"}},
             Case{"no such status", -2, 0, everything(), {}},
             Case{"an accounting customer", 0, 0, of_accounting("1200"), {"Q4", "Q5"}},
             Case{"an accounting customer of a status", 2, 0, of_accounting("1200"), {"Q4"}},
             Case{"of all statuses within days",
                  0,
                  0,
                  of_accounting("1200", between("2026-03-20", "2026-03-21")),
                  {"Q4"}},
             Case{"an own customer", 0, 0, of_own(5), {"Q5", "Q6"}},
             Case{"an own customer of a status", 1, 0, of_own(5), {"Q6"}},
             Case{"an own customer of a status within days",
                  1,
                  0,
                  of_own(5, between("2026-03-01", "2026-03-01")),
                  {"Q6"}},
             Case{"days alone", 0, 0, between("2026-03-02", "2026-03-20"), {"Q4"}},
             Case{"days of a status", 3, 8, between("2026-03-01", "2026-03-01"), {"Q5"}},
         }) {
        Selection what = c.what;
        what.status_id = c.status;
        what.reason_id = c.reason;
        EXPECT_EQ(shown(rows("overview", what), "Quote Number"), c.numbers) << c.why;
        if (!c.numbers.empty()) continue;
        EXPECT_EQ(boxes().back().title, "No Data Found") << c.why;
    }
}

TEST_P(QuoteLists, OverviewOfAnAccountingCustomersDaysOfOneStatusIsRefusedInThePlainDialect)
{
    quote(1, 2, "AccPacID = '1200'");
    Selection what = of_accounting("1200", between("2026-03-01", "2026-03-01"));
    what.status_id = 2;
    const bool refused = GetParam() == eDBPervasive;
    EXPECT_EQ(print("overview", what), refused ? RunEnd::Failed : RunEnd::Delivered);
    ASSERT_EQ(boxes().size(), refused ? 1U : 0U);
    if (!refused) return;
    EXPECT_NE(box_text(0).find("modPrint.Print_Overview"), std::string::npos) << box_text(0);
}

TEST_P(QuoteLists, OverviewShipsOnTheDayOfEntryWhereNoOtherIsSet)
{
    quote(1, 2, "quDateShip = NULL, quRateDate = NULL, quRateEx = 1.3");
    quote(2, 2, "quDateShip = '2026-04-05'");
    quote(3, 2, "quDateShip = NULL, quDateEnter = NULL");
    const auto& printed = rows("overview");
    ASSERT_EQ(shown(printed, "Shipping Date"), (Texts{"2026-03-01", "2026-04-05", "<null>"}));
    EXPECT_EQ(shown(printed[0], "Rate Date"), "<null>");
    EXPECT_EQ(printed[0].at("Exchange Rate"), Value(1.3F)) << "a single";
}

}  // namespace
}  // namespace velora
