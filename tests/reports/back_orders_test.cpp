#include "reports/back_orders.h"

#include "reports/list_company.h"

namespace velora {
namespace {

using test::expect_row;
using test::Expected;
using test::ListCompany;
using test::shown;

using Texts = std::vector<std::string>;

/// Quote 1 of a customer of the accounting system, transferred and not complete, in US dollars.
class BackOrders : public testing::Test, public ListCompany {
public:
    explicit BackOrders(WhichEngine engine_in_use = eDBSQLServer) : ListCompany(engine_in_use)
    {
        product(
            "INSERT INTO QuoteStatus (QuoteStatusID, qsCode, qsName, qsDescription) VALUES (4, ' T', 'Sent ', 'Sent "
            "on')");
        quote(1,
              "quCurCode = ' USD ', quCustomerType = 2, quPriceList = ' TRADE', quTaxGroup = 'TWO ', quTermsCode = "
              "'N30', quPONumber = ' PO/7 ', quDateShip = '2026-03-09T08:00:00', quDateExpire = '2026-04-01', "
              "quCompany = 'TESTCO', quUserEnter = 'ANN', quDateModify = '2026-03-02', quUserModify = 'BOB ', "
              "quLocation = ' 1', quDesc = 'Doors', quReference = 'R-1', quNotes = 'None', quShipToLoc = 'WH', "
              "quShipVia = 'RAIL', quShipViaDesc = 'By rail', quFOBPoint = 'Dock', quACCPACNum = ' ORD-9 '");
        accounting(
            "INSERT INTO AR0024 (IDCUST, NAMECUST, TEXTSNAM, TEXTSTRE1, TEXTPHON1) VALUES ('1200', 'Bay Works ', "
            "'Bay', '1 Quay', '9025551234');"
            "INSERT INTO IC0480 (CURRENCY, ITEMNO, PRICELIST, PRICETYPE, PRICEBASE, PRICEFMT, BASEPRICE, BASEUNIT, "
            "BASECONV, PRCNTLVL2) VALUES ('USD', 'ITEM', 'STD', 1, 1, 1, 11, ' BOX', 12, 10);"
            "INSERT INTO IC0310 (ITEMNO, FMTITEMNO) VALUES ('ITEM', 'IT-EM'); INSERT INTO IC0370 VALUES ('2', 'Yard');"
            "INSERT INTO IC0390 VALUES ('STD', 'Standard'); INSERT INTO IC0210 VALUES ('HW', 'Hardware')");
        product(
            "INSERT INTO Items (ItemID, ItemNumber, itStockUnit) VALUES (9, 'OWN-9', ' PCS ');"
            "INSERT INTO IPricing (ItemID, ipCurrency, ipPriceList, ipBasePrice) VALUES (9, 'USD', 'STD', 7.125)");
    }
    void TestBody() override {}

    void quote(int id, const std::string& more = "quLines = 0")
    {
        const std::string key = std::to_string(id);
        product(
            "INSERT INTO Quote (QuoteID, QuoteNumber, CustFrom, AccPacID, QuoteStatusID, quDateEnter, "
            "quDateTransfer, quComplete) VALUES (" +
            key + ", ' Q" + key +
            " ', 0, '1200', 4, '2026-03-01', "
            "'2026-03-05', 0); UPDATE Quote SET " +
            more + " WHERE QuoteID = " + key);
    }
    /// Ten ordered, four delivered, at 12.50 for cost of 4.
    void line(int number, const std::string& more = "deDType = 20", int of_quote = 1)
    {
        const std::string key = std::to_string(of_quote) + ", " + std::to_string(number);
        product(
            "INSERT INTO Details (QuoteID, Line, APItem, ItemID, deIType, deDType, deDesc, deQuantity, "
            "deQtyTransfer, deUofM, deConvFactor, deQuotedPrice, dePriceList, deDiscount, deCost, deLocation, "
            "deCategory, deWeight) VALUES (" +
            key +
            ", 'ITEM', 9, 30, 20, ' Hinge ', 10, 4, ' EA ', 3, 12.5, "
            "' STD ', 1.25, 4, ' 2 ', ' HW ', 0.75); UPDATE Details SET " +
            more + " WHERE QuoteID = " + std::to_string(of_quote) + " AND Line = " + std::to_string(number));
    }
    Texts field(const std::string& name, const Selection& what = {}) { return shown(rows("back-orders", what), name); }
};

// clang-format off
const Expected kAccountingLine{
    {"Quote Number", "Q1"}, {"Sage Accpac OE Number", "ORD-9"}, {"PO Number", "PO/7"}, {"Quote Date", "2026-03-01"},
    {"Shipping Date", "2026-03-09T08:00:00"}, {"Expiry Date", "2026-04-01"}, {"Sage Accpac Company", "TESTCO"},
    {"Entered By", "ANN"}, {"Date Last Modified", "2026-03-02"}, {"Last Modified By", "BOB"}, {"Location", "1"},
    {"Description", "Doors"}, {"Reference Number", "R-1"}, {"Quote Notes", "None"}, {"Ship-To Location", "WH"},
    {"Ship Via", "RAIL"}, {"Ship Via Description", "By rail"}, {"FOB Point", "Dock"},
    {"Customer Number", "1200"}, {"Customer Short Name", "Bay"}, {"Customer Full Name", "Bay Works"},
    {"Customer Address 1", "1 Quay"}, {"Customer Address 2", ""}, {"Customer Address 3", ""}, {"Customer Address 4", ""},
    {"Customer City", ""}, {"Customer Prov/State", ""}, {"Customer Country", ""}, {"Customer PC/Zip Code", ""},
    {"Customer Phone", "(902) 555-1234"}, {"Customer Fax", ""}, {"Contact", ""}, {"Contact Email", ""},
    {"Customer Group Code", ""}, {"Customer Discount Type", "B"}, {"Customer Price List", "TRADE"},
    {"Customer Tax Group", "TWO"}, {"Customer Terms Code", "N30"}, {"Customer Currency Code", "USD"},
    {"Detail Type", "Item"}, {"Detail Item Type", "Sage Accpac"}, {"Detail Item Number", "IT-EM"}, {"Detail Desc", "Hinge"},
    {"Detail Quantity", "10"}, {"Detail Available", "4"}, {"Detail Back Order", "6"}, {"Detail Quote UofM", "EA"},
    {"Detail Unit Price", "3.13"},            // 12.5 * (3 / 12) = 3.125
    {"Detail Pricing UofM", "BOX"},
    {"Detail Original Base Price", "9.90"},   // 11 less the 10 percent of level B
    {"Detail Quote Base Price", "12.50"},
    {"Detail Amount", "31.25"},               // of all ten
    {"Detail Discount", "(1.25)"}, {"Detail Discounted Amt", "30.00"}, {"Detail Item Cost", "4.00"}, {"Detail Profit", "8.50"},
    {"Detail Margin", "68.00 %"}, {"Detail Shipping Date", "2026-03-11"}, {"Detail Price List", "STD"},
    {"Detail Price List Desc", "Standard"}, {"Detail Location", "2"}, {"Detail Location Desc", "Yard"},
    {"Detail Category", "HW"}, {"Detail Category Desc", "Hardware"}, {"Detail GL Account", "<null>"},
    {"Detail GL Acct Description", "<null>"}, {"Detail Weight", "0.75"}, {"Status ID", "4"}, {"Status Code", "T"},
    {"Status Name", "Sent"}, {"Status Desc", "Sent on"}, {"Date All", "0"}, {"Date From", "2026-03-01"}, {"Date To", "2026-03-02"},
};
// clang-format on

TEST_F(BackOrders, EveryFieldOfAnAccountingItem)
{
    line(1, "deShipDate = '2026-03-11'");
    Selection march;
    march.all_dates = false;
    march.from = *DateTime::from_iso("2026-03-01");
    march.to = *DateTime::from_iso("2026-03-02");
    const auto& printed = rows("back-orders", march);
    ASSERT_EQ(printed.size(), 1U);
    expect_row("back-orders", printed[0], kAccountingLine);
    EXPECT_EQ(printed[0].at("Shipping Date").type(), Value::Type::Date);
    EXPECT_TRUE(state().gExportFile.ends_with("20260313 - Back Order Items.pdf"));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(BackOrders, AnOwnItemGoesByItsIdAndIsPricedByItsOwnList)
{
    line(1, "deIType = 10, APItem = ' '");
    line(2, "deIType = NULL, APItem = '~'");
    line(3, "deIType = 10, APItem = '~~', ItemID = 77");
    const auto& printed = rows("back-orders");
    ASSERT_EQ(shown(printed, "Detail Item Type"), (Texts{"Velora", "Velora", "Velora"}));
    EXPECT_EQ(shown(printed, "Detail Item Number"), (Texts{"9", "9", "77"}));
    EXPECT_EQ(shown(printed, "Detail Pricing UofM"), (Texts{"PCS", "PCS", "EA"}))
        << "the line before's, the line's own";
    EXPECT_EQ(shown(printed, "Detail Original Base Price"), (Texts{"7.13", "<null>", "0.00"}));
    EXPECT_EQ(shown(printed, "Detail Unit Price"), (Texts{"37.50", "<null>", "37.50"})) << "without the base factor";
    EXPECT_EQ(shown(printed, "Detail Amount")[0], "375.00") << "the factor of no price row is 1";
}

TEST_F(BackOrders, OnlyItemLinesOfOpenTransferredOrdersCountThatAreNotFullyDelivered)
{
    line(1, "deQtyTransfer = 10");
    line(2, "deQtyTransfer = 11");
    line(3, "deDType = 10");
    line(4, "deQtyTransfer = NULL");
    line(5, "deQtyTransfer = 9.75, APItem = 'B'");
    quote(2, "quDateTransfer = NULL");
    line(6, "deDType = 20", 2);
    quote(3, "quComplete = 1");
    line(7, "deDType = 20", 3);
    quote(4, "QuoteStatusID = 9");
    line(8, "deDType = 20", 4);
    product("INSERT INTO QuoteStatus (QuoteStatusID, qsCode, qsName) VALUES (6, 'P', 'Partly')");
    quote(5, "QuoteStatusID = 6");
    line(9, "APItem = 'A'", 5);
    const auto& printed = rows("back-orders");
    EXPECT_EQ(shown(printed, "Quote Number"), (Texts{"Q5", "Q1"})) << "in the order of the items";
    EXPECT_EQ(shown(printed, "Detail Back Order"), (Texts{"6", "0.25"}));
    EXPECT_EQ(shown(printed, "Status ID"), (Texts{"6", "4"})) << "each line has its own quote's";
    EXPECT_EQ(shown(printed, "Status Name"), (Texts{"Partly", "Sent"}));
}

TEST_F(BackOrders, AllAmountsAreInTheCurrencyOfTheFirstRow)
{
    quote(2, "quCurCode = 'JPY'");
    line(1, "APItem = 'Z'");
    line(2, "APItem = 'A'", 2);
    EXPECT_EQ(field("Customer Currency Code"), (Texts{"JPY", "JPY"}));
    EXPECT_EQ(field("Detail Quote Base Price"), (Texts{"12", "12"}));
    for (const auto& [sql, why] : {std::pair{"quCurCode = '  '", "blank"}, {"quCurCode = NULL", "null"}}) {
        product(std::string("UPDATE Quote SET ") + sql + " WHERE QuoteID = 2");
        EXPECT_EQ(field("Customer Currency Code"), (Texts{"CAD", "CAD"})) << why;
    }
    product("UPDATE Quote SET quCurCode = 'JPY'");
    state().gMultiCurr = false;
    EXPECT_EQ(field("Customer Currency Code"), (Texts{"CAD", "CAD"})) << "a company of one currency";
}

TEST_F(BackOrders, NullsDropTheirFieldAndAMissingPriceHasNoMargin)
{
    line(1, "deQuotedPrice = NULL, APItem = 'A'");
    line(2, "deQuotedPrice = 0, APItem = 'B'");
    line(3, "deDiscount = NULL, deCost = NULL, APItem = 'C', dePriceList = NULL, deLocation = NULL");
    quote(2, "quCustomerType = NULL");
    line(4, "APItem = 'ITEM'", 2);
    const auto& printed = rows("back-orders");
    ASSERT_EQ(shown(printed, "Detail Margin"), (Texts{"0", "0", "<null>", "68.00 %"}));
    EXPECT_EQ(shown(printed, "Detail Amount"), (Texts{"<null>", "0.00", "375.00", "31.25"}))
        << "the factor of the line before, 1";
    EXPECT_EQ(shown(printed, "Detail Discount")[2], "<null>");
    EXPECT_EQ(shown(printed, "Detail Location Desc")[2], "<null>");
    EXPECT_EQ(shown(printed, "Detail Original Base Price")[3], "<null>") << "a price needs a discount level";
    EXPECT_EQ(shown(printed, "Customer Discount Type")[3], "<null>");
}

TEST_F(BackOrders, PricesKnowNoQuoteAndAnEarlierReportsQuoteStays)
{
    accounting(
        "INSERT INTO IC0274 (CUSTNO, ITEMNO, PRICELIST, PRICETYPE, FIXPRICE) VALUES ('1200', 'ITEM', 'STD', 4, 1)");
    line(1);
    state().gQuote.AccpacID = "1200";
    state().gQuote.quCIGCustomer = "GOLD";
    EXPECT_EQ(field("Detail Original Base Price"), (Texts{"9.90"})) << "no contract, no matrix";
    EXPECT_EQ(state().gQuote.AccpacID, "1200");
}

TEST_F(BackOrders, TheCompanysDefaultListServesAndTheLineKeepsItsOwn)
{
    product("UPDATE Defaults SET mdUsePLDef = 1, mdDefaultPL = 'STD'");
    line(1, "dePriceList = 'OTHER'");
    const auto& printed = rows("back-orders");
    EXPECT_EQ(shown(printed.at(0), "Detail Pricing UofM"), "BOX");
    EXPECT_EQ(shown(printed.at(0), "Detail Price List"), "OTHER");
    EXPECT_TRUE(boxes().empty());
}

TEST(PlainBackOrders, AreRefusedByEveryDatabaseWhateverIsAsked)
{
    BackOrders company(eDBPervasive);
    company.line(1);
    for (const auto place : {CustomerFrom::Anybody, CustomerFrom::Accounting, CustomerFrom::Own}) {
        Selection what;
        what.customer_from = place;
        company.user.boxes.clear();
        EXPECT_EQ(company.print("back-orders", what), RunEnd::Failed);
        ASSERT_EQ(company.boxes().size(), 1U);
        EXPECT_NE(company.box_text(0).find("modPrint.Print_BackOrder"), std::string::npos) << company.box_text(0);
    }
}

}  // namespace
}  // namespace velora
