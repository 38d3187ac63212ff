#include "reports/quote_expiration.h"

#include "reports/list_company.h"

namespace velora {
namespace {

using test::expect_row;
using test::Expected;
using test::ListCompany;
using test::shown;

using Texts = std::vector<std::string>;

/// The day of a run is 13 March 2026.
class Expiration : public testing::TestWithParam<WhichEngine>, public ListCompany {
public:
    Expiration() : ListCompany(GetParam())
    {
        product(
            "INSERT INTO QuoteStatus (QuoteStatusID, qsCode, qsName, qsActive) VALUES (1, ' O ', ' Open ', 0), "
            "(2, 'F', 'Follow up', 1)");
    }
    void quote(int id, const std::string& expires, const std::string& more = "quLines = 0")
    {
        const std::string key = std::to_string(id);
        product(
            "INSERT INTO Quote (QuoteID, QuoteNumber, CustFrom, AccPacID, QuoteStatusID, quDateEnter, "
            "quDateExpire) VALUES (" +
            key + ", 'Q" + key + "', 0, '1200', 1, '2026-02-01', '" + expires +
            "');"
            "UPDATE Quote SET " +
            more + " WHERE QuoteID = " + key);
    }
};

INSTANTIATE_TEST_SUITE_P(BothDialects, Expiration, testing::Values(eDBSQLServer, eDBPervasive));

TEST_P(Expiration, EveryFieldComesFromItsColumn)
{
    for (const bool own : {false, true}) {
        if (own) product("DELETE FROM Quote; DELETE FROM Customer");
        quote(1, "2026-03-14", own ? "CustFrom = 2, CustomerID = 5" : "CustFrom = 0");
        mark("Quote", {"QuoteID", "CustFrom", "CustomerID", "QuoteStatusID", "quDateExpire"});
        product("INSERT INTO Customer (CustomerID) VALUES (5)").mark("Customer", {"CustomerID"});
        accounting("UPDATE CompanyInfo SET PhoneFormat = 0; DELETE FROM AR0024; DELETE FROM IC0370");
        accounting("INSERT INTO AR0024 (IDCUST) VALUES ('" + marker("Quote.AccPacID") + "')")
            .mark("AR0024", {"IDCUST"});
        accounting("INSERT INTO IC0370 VALUES ('" + marker("Quote.quLocation") + "', ' Main ')");
        Expected expected{{"Quote Status", "Open"},
                          {"Expiry Date", "2026-03-14"},
                          {"Location Desc", "Main"},
                          {"Expiration Group", "2"},
                          {"Expiration Group Desc", "Quotes that will Expire within 1 day"}};
        take_sources(expected, "expiration", *this,
                     {{"Quote Number", "Quote.QuoteNumber"},
                      {"Customer Number", own ? "Customer.CustomerNumber" : "Quote.AccPacID"},
                      {"Customer Name", "Quote.CustName"},
                      {"Customer Contact", "Quote.CustContact"},
                      {"Customer Phone", own ? "Customer.cuPhone" : "AR0024.TEXTPHON1"},
                      {"Quote Date", "Quote.quDateEnter"},
                      {"Shipping Date", "Quote.quDateShip"},
                      {"Entered By", "Quote.quUserEnter"},
                      {"Date Last Modified", "Quote.quDateModify"},
                      {"Last Modified By", "Quote.quUserModify"},
                      {"Location", "Quote.quLocation"},
                      {"Description", "Quote.quDesc"},
                      {"Reference Number", "Quote.quReference"},
                      {"Detail Lines", "Quote.quLines"},
                      {"Quote Notes", "Quote.quNotes"}});
        const auto& printed = rows("expiration");
        ASSERT_EQ(printed.size(), 1U);
        expect_row("expiration", printed[0], expected);
        EXPECT_TRUE(state().gExportFile.ends_with("20260313 - Quote Expiration.pdf"));
    }
}

TEST_P(Expiration, TheDaysToExpiryMakeTheGroups)
{
    quote(1, "2026-03-20");
    quote(2, "2026-03-13");
    quote(3, "1999-12-31");
    quote(4, "2026-03-12T23:59:59");
    quote(5, "2026-03-14");
    quote(6, "2026-03-14T00:00:01");
    quote(7, "2026-03-16");
    quote(8, "2026-03-17");
    quote(9, "2026-03-21");
    quote(10, "2026-03-01", "QuoteStatusID = 2");
    quote(11, "2026-03-01", "QuoteStatusID = 3");
    product("UPDATE Defaults SET qdStatusOpen = 2");  // the status of this list is 1 whatever the company's is
    const auto& printed = rows("expiration");
    ASSERT_EQ(shown(printed, "Quote Number"), (Texts{"Q3", "Q4", "Q2", "Q5", "Q6", "Q7", "Q8", "Q1"}));
    EXPECT_EQ(shown(printed, "Expiration Group"), (Texts{"1", "1", "2", "2", "3", "3", "4", "4"}));
    EXPECT_EQ(shown(printed[0], "Expiration Group Desc"), "Quotes that have Expired");
    EXPECT_EQ(shown(printed[5], "Expiration Group Desc"), "Quotes that will Expire within 3 days");
    EXPECT_EQ(shown(printed[7], "Expiration Group Desc"), "Quotes that will Expire within 7 days");
}

TEST_P(Expiration, NumberAndPhoneAreThoseOfThePlaceOfTheCustomer)
{
    accounting("INSERT INTO AR0024 (IDCUST, TEXTPHON1) VALUES ('1200', '9025551234 ')");
    product(
        "INSERT INTO Customer (CustomerID, CustomerNumber, cuPhone) VALUES (5, ' C5 ', '9025559876'), (6, 'C6', NULL)");
    quote(1, "2026-03-01", "AccPacID = ' 1200 '");
    quote(2, "2026-03-02", "AccPacID = 'GONE'");
    quote(3, "2026-03-03", "AccPacID = NULL, CustomerID = 5");
    quote(4, "2026-03-04", "CustFrom = 1, CustomerID = 5");
    quote(5, "2026-03-05", "CustFrom = 1, CustomerID = 6");
    quote(6, "2026-03-06", "CustFrom = 1, CustomerID = 7");
    quote(7, "2026-03-07", "CustFrom = NULL, CustomerID = 5");
    const auto& printed = rows("expiration");
    EXPECT_EQ(shown(printed, "Customer Number"), (Texts{"1200", "GONE", "<null>", "C5", "C6", "<null>", "<null>"}));
    EXPECT_EQ(shown(printed, "Customer Phone"),
              (Texts{"(902) 555-1234", "<null>", "<null>", "(902) 555-9876", "<null>", "<null>", "<null>"}));
    EXPECT_TRUE(boxes().empty());
}

TEST_P(Expiration, BlanksAndNullsFallBackWhereTheyMay)
{
    quote(1, "2026-03-01", "quDateShip = NULL, quDateModify = NULL, quUserModify = NULL, quLocation = NULL");
    const auto& printed = rows("expiration");
    EXPECT_EQ(shown(printed.at(0), "Shipping Date"), "2026-02-01");
    for (const char* field : {"Date Last Modified", "Last Modified By", "Location", "Location Desc"}) {
        EXPECT_EQ(shown(printed.at(0), field), "<null>") << field;
    }
    for (const auto& [name, status] : {std::pair{"'  '", "O"}, {"NULL", "<null>"}, {"' Still open '", "Still open"}}) {
        product(std::string("UPDATE QuoteStatus SET qsName = ") + name + " WHERE QuoteStatusID = 1");
        EXPECT_EQ(shown(rows("expiration").at(0), "Quote Status"), status) << name;
    }
}

TEST_P(Expiration, ThePrinterIsTakenByItsWholeNameAndOnlyWhereItIsNotTheDefaultOne)
{
    printers.printers = {{"Front desk", "driver", "port"}};
    quote(1, "2026-03-01");
    struct Case {
        const char *is_default, *name, *printer;
    };
    for (const auto& [is_default, name, printer] :
         {Case{"False", " Front ", "|Front|"}, Case{"True", "Front", ""}, Case{"False", " ", ""}, Case{"", "", ""}}) {
        engine.report = std::make_shared<test::FakeReport>();
        const auto set = [&](const char* key, const char* value) {
            settings.set("Morvane\\Velora", "TESTCO_Report", key, value);
        };
        set("Default", is_default);
        if (*is_default == '\0') set("Default", "True");
        set("Name", name);
        EXPECT_EQ(print("expiration"), RunEnd::Delivered);
        EXPECT_EQ(engine.report->printer, printer) << is_default << name;
        EXPECT_EQ(engine.report->calls.size(), 1U) << "the export alone: orientation and paper stay";
    }
}

TEST_P(Expiration, NothingToExpireIsToldInTwoLines)
{
    quote(1, "2026-03-21");
    EXPECT_EQ(print("expiration"), RunEnd::NoData);
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(boxes()[0].text,
              "There are no Expired Quotes or Quotes about to Expire\r\nin the database to place on the report.");
}

}  // namespace
}  // namespace velora
