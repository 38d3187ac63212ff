#include "gateway/addresses.h"
#include "gateway/quote_record.h"
#include "support/test_company.h"

namespace velora {
namespace {

using test::TestCompany;

class RecordsInBothDialects : public testing::TestWithParam<WhichEngine> {};
INSTANTIATE_TEST_SUITE_P(Gateway, RecordsInBothDialects, testing::Values(eDBSQLServer, eDBPervasive));

std::string bill_to(const AddressRows& rows, const char* column)
{
    return to_text(rows->value(column));
}

TEST_P(RecordsInBothDialects, AQuoteIsReadWholeAndUntrimmed)
{
    TestCompany company(GetParam());
    company.product(
        "INSERT INTO Quote (QuoteID, QuoteNumber, CustFrom, AccPacID, quDateEnter, quCurCode, quTaxClass3, "
        "quPercentSS2, quRateEx, quPrPickSlip, quCrApprPwd, quCrApproval) "
        "VALUES (7, ' Q-7 ', 0, '1200', '2026-02-01', 'USD', '4', 12.5, 1.1, -1, '!terces', ' jo ')");
    QuoteRecord quote;
    ASSERT_TRUE(Fetch_QuoteInfo(company.state(), quote, 7));
    EXPECT_EQ(quote.QuoteNumber, " Q-7 ");
    EXPECT_EQ(quote.AccpacID, "1200");
    EXPECT_EQ(quote.quDateEnter.iso(), "2026-02-01");
    EXPECT_EQ(quote.quTaxClass[2], "4");
    EXPECT_EQ(quote.quPercentSS[1], 12.5F);
    EXPECT_EQ(quote.quRateEx, 1.1F);
    EXPECT_TRUE(quote.quPrPickSlip);
    EXPECT_EQ(quote.quCrApprPwd, "secret");
    EXPECT_EQ(quote.quCrApproval, "jo");
    EXPECT_FALSE(Fetch_QuoteInfo(company.state(), quote, 8)) << "no such quote";
    EXPECT_TRUE(company.boxes().empty()) << "and no message for it";
}

TEST(QuoteRecordLoading, ANullInAColumnEndsTheLoadButForTheTransferDate)
{
    TestCompany company;
    company.product(
        "INSERT INTO Quote (QuoteID, QuoteNumber) VALUES (1, 'A'), (2, 'B'); UPDATE Quote SET quDateTransfer = NULL;"
        "UPDATE Quote SET quReference = NULL WHERE QuoteID = 2");
    QuoteRecord quote;
    EXPECT_TRUE(Fetch_QuoteInfo(company.state(), quote, 1));
    EXPECT_FALSE(Fetch_QuoteInfo(company.state(), quote, 2));
    EXPECT_EQ(quote.QuoteNumber, "B") << "the members read so far stay";
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_THAT(company.box_text(0), testing::StartsWith("94: Invalid use of Null"));
    EXPECT_THAT(company.box_text(0), testing::HasSubstr("modGeneral.Fetch_QuoteInfo"));
}

TEST(QuoteRecordLoading, CompletesABlankCurrency)
{
    struct Case {
        const char* why;
        int multicurrency;
        int cust_from;
        const char* expected;
    };
    for (const auto& c :
         {Case{"one currency: that of the company", 0, 0, "CAD"}, Case{"an accounting customer's", 1, 0, "USD"},
          Case{"an own customer's, though an accounting number is there", 1, 1, "JPY"}}) {
        TestCompany company;
        company
            .product("INSERT INTO Quote (QuoteID, CustFrom, AccPacID, CustomerID, quCurCode) VALUES (1, " +
                     std::to_string(c.cust_from) +
                     ", '1200', 5, '  ');"
                     "INSERT INTO Customer (CustomerID, cuCurCode) VALUES (5, 'JPY')")
            .accounting(
                "INSERT INTO AR0024 (IDCUST, CODECURN) VALUES ('1200', 'USD');"
                "UPDATE CompanyInfo SET Multicurrency = " +
                std::to_string(c.multicurrency));
        QuoteRecord quote;
        ASSERT_TRUE(Fetch_QuoteInfo(company.state(), quote, 1)) << c.why;
        EXPECT_EQ(quote.quCurCode, c.expected) << c.why;
    }
}

constexpr const char* kOwnCustomer =
    "INSERT INTO Customer (CustomerID, cuFullName, cuAddress1, cuAddress2, cuAddress3, cuCity, cuProvState, cuCountry, "
    "cuPCZip, cuPhone, cuFax, cuContact) VALUES (5, ' Own ', '1 Way', 'Unit 2', 'Third', 'Truro', 'NS', 'CA', 'B1', "
    "'1', "
    "'2', 'Al');";
constexpr const char* kSavedRows =
    "INSERT INTO BillTo (BillToID, btName) VALUES (3, 'Saved bill'); INSERT INTO ShipTo (ShipToID, stName) VALUES (4, "
    "'Saved ship');";
constexpr const char* kAccountingCustomer =
    "INSERT INTO AR0024 (IDCUST, NAMECUST, TEXTSTRE3, NAMECITY) VALUES ('1200', ' Bay Works ', 'Third', 'Digby');"
    "INSERT INTO AR0023 (IDCUST, IDCUSTSHPT, NAMELOCN, SPCLINST) VALUES ('1200', 'WH', 'Warehouse', 'Ring twice')";

TEST_P(RecordsInBothDialects, AddressesComeFromTheSavedRowElseFromTheCustomer)
{
    TestCompany company(GetParam());
    company.product(std::string(kOwnCustomer) + kSavedRows).accounting(kAccountingCustomer);
    struct Case {
        const char* why;
        AddressKeys keys;
        const char* bill_to;
        const char* ship_to;
    };
    for (const auto& c :
         {Case{"a saved row wins for an accounting customer", {0, "1200", 5, 3, 4, "WH"}, "Saved bill", "Saved ship"},
          Case{"and for an own one", {1, "1200", 5, 3, 4, "WH"}, "Saved bill", "Saved ship"},
          Case{"an own customer", {1, "1200", 5, 0, 0, ""}, "Own", "Own"},
          Case{"an accounting customer", {0, " 1200 ", 5, 0, 0, " "}, "Bay Works", "Bay Works"},
          Case{"its ship-to location", {0, "1200", 5, 0, 0, "WH"}, "Bay Works", "Warehouse"}}) {
        const auto found = fetch_addresses(company.state(), c.keys);
        EXPECT_EQ(bill_to(found.bill_to, "btName"), c.bill_to) << c.why;
        EXPECT_EQ(bill_to(found.ship_to, "stName"), c.ship_to) << c.why;
    }
    EXPECT_TRUE(company.boxes().empty());
}

TEST(Addresses, LeaveUnsetWhatTheirSourceLacks)
{
    TestCompany company;
    company.product(kOwnCustomer).accounting(kAccountingCustomer);
    auto& state = company.state();

    const auto own = fetch_addresses(state, {1, "", 5, 0, 0, ""});
    EXPECT_EQ(bill_to(own.bill_to, "btAddress2"), "Unit 2");
    EXPECT_TRUE(own.bill_to->value("btAddress3").is_null()) << "lines 3 and 4 of an own customer are not taken";

    const auto deleted_location = fetch_addresses(state, {0, "1200", 0, 0, 0, "GONE"});
    EXPECT_TRUE(deleted_location.ship_to->value("stName").is_null()) << "no fallback to the customer";

    const auto location = fetch_addresses(state, {0, "1200", 0, 0, 0, "WH"});
    EXPECT_EQ(bill_to(location.ship_to, "stCode"), "WH");
    EXPECT_EQ(bill_to(location.ship_to, "stInstructions"), "Ring twice");

    const auto missing_row = fetch_addresses(state, {0, "1200", 0, 99, 99, ""});
    EXPECT_TRUE(missing_row.bill_to->is_empty());

    const auto nobody = fetch_addresses(state, {0, " ", 0, 0, 0, ""});
    EXPECT_FALSE(nobody.bill_to) << "a blank customer leaves the reference empty";

    AddressRows given = location.ship_to;
    Fetch_ACCPACShipTo(state, "1200", given, "");
    EXPECT_EQ(given->RecordCount(), 1U) << "a row that is there is written over, none is added";
    EXPECT_EQ(bill_to(given, "stName"), "Bay Works");
}

TEST(Addresses, ANullInTheCustomersRowKeepsTheFieldsBeforeIt)
{
    TestCompany company;
    company.product(
        "INSERT INTO Customer (CustomerID, cuFullName, cuAddress1) VALUES (5, 'Own', '1 Way');"
        "UPDATE Customer SET cuAddress2 = NULL");
    const auto found = fetch_addresses(company.state(), {1, "", 5, 0, 99, ""});
    EXPECT_EQ(bill_to(found.bill_to, "btAddress1"), "1 Way");
    EXPECT_TRUE(found.bill_to->value("btCity").is_null());
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_THAT(company.box_text(0), testing::HasSubstr("modGeneral.Fetch_VLBDefaultAddress"));
}

TEST(Addresses, SayOfATableThatCannotBeOpenedWhoOpenedItAndWhoCalled)
{
    struct Case {
        AddressKeys keys;
        const char* opened_by;
        const char* called_by;
        const char* table;
    };
    const AddressKeys kOwn{1, "", 5, 0, 7, ""};
    const AddressKeys kOwnShip{1, "", 5, 7, 0, ""};
    const AddressKeys kAccounting{0, "1200", 5, 0, 7, ""};
    const AddressKeys kAccountingShip{0, "1200", 5, 7, 0, ""};
    for (const auto& c : {Case{kOwn, "Fetch_VLBillTo", "Fetch_VLBDefaultAddress", "BillTo"},
                          {kOwnShip, "Fetch_VLShipTo", "Fetch_VLSDefaultAddress", "ShipTo"},
                          {kAccounting, "Fetch_VLBillTo", "Fetch_ACCPACBillTo", "BillTo"},
                          {kAccountingShip, "Fetch_VLShipTo", "Fetch_ACCPACShipTo", "ShipTo"}}) {
        TestCompany company;
        company.product(std::string("DROP TABLE ") + c.table).accounting(kAccountingCustomer);
        const auto found = fetch_addresses(company.state(), c.keys);
        ASSERT_EQ(company.boxes().size(), 2U) << c.called_by;
        EXPECT_EQ(company.boxes()[0].title, "ADO Database Error");
        EXPECT_THAT(company.box_text(0), testing::HasSubstr(std::string("modGeneral.") + c.opened_by + "."));
        EXPECT_EQ(company.boxes()[1].title, "Reporting Error") << "the errors of the connection have been shown";
        EXPECT_THAT(company.box_text(1), testing::StartsWith("3704: "));
        EXPECT_THAT(company.box_text(1), testing::HasSubstr(std::string("modGeneral.") + c.called_by + "."));
        const auto& rows = c.keys.BillToID == 0 ? found.bill_to : found.ship_to;
        EXPECT_THROW((void)rows->column("btName"), Fault) << "a recordset that was never opened has no columns";
    }
}

}  // namespace
}  // namespace velora
