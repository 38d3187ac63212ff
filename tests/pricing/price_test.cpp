#include "platform/recordset.h"
#include "pricing/base_price.h"
#include "pricing/contract_price.h"
#include "pricing/price_row.h"
#include "pricing/units.h"
#include "session/company.h"
#include "support/test_company.h"

namespace velora {
namespace {

using test::TestCompany;

/// A company with one detail line in hand, whose price list and location a price may read and write.
class PricedCompany : public TestCompany {
public:
    explicit PricedCompany(WhichEngine engine_in_use = eDBSQLServer) : TestCompany(engine_in_use)
    {
        line = std::make_shared<Recordset>(std::vector<std::string>{"dePriceList", "deLocation"},
                                           std::vector<std::vector<Value>>{{"STD", "1"}});
    }
    SessionState& ready()
    {
        auto& state = TestCompany::state();
        Get_Defaults(state);
        state.gQuoteDetails = line;
        state.gQuote.AccpacID = "1200";
        state.gQuote.quDateEnter = *DateTime::from_iso("2026-03-01");
        state.gQuote.quPriceList = "STD";
        return state;
    }
    float price(int16_t level = 0, float quantity = 1, float factor = 1, std::string list = "STD",
                std::string currency = "CAD")
    {
        return Return_BasePrice(ready(), "ITEM", list, currency, level, quantity, factor);
    }
    std::string line_list() { return to_text(line->value("dePriceList")); }

    std::shared_ptr<Recordset> line;
};

/// One price row; what a case does not name keeps a harmless value.
std::string price_row(const std::string& set = "")
{
    return "INSERT INTO IC0480 (CURRENCY, ITEMNO, PRICELIST, PRICETYPE, PRICEBASE, PRICEFMT, BASEPRICE, DBASEPRICE, "
           "MARKUPCOST, PRCNTLVL1, PRCNTLVL2, PRCNTLVL3, PRCNTLVL4, PRCNTLVL5, AMOUNTLVL1, AMOUNTLVL2, AMOUNTLVL3, "
           "AMOUNTLVL4, AMOUNTLVL5, PRICEQTY1, PRICEQTY2, PRICEQTY3, PRICEQTY4, PRICEQTY5, BASEUNIT, DBASEUNIT, "
           "BASECONV, DBASECONV, SALEPRICE, DSALEPRICE) VALUES ('CAD', 'ITEM', 'STD', 1, 1, 1, 200, 300, 100, "
           "5, 7.5, 10, 15, 20, 1, 2, 3, 4, 5, 0, 0, 0, 0, 0, 'EA', 'BOX', 1, 12, 0, 0);" +
           (set.empty() ? "" : "UPDATE IC0480 SET " + set + ";");
}

TEST(BasePrice, HasABranchForEachKindOfPriceList)
{
    const std::string breaks = ", PRICEQTY1 = 10, PRICEQTY2 = 20, PRICEQTY3 = 30";
    struct Case {
        const char* why;
        std::string row;
        int16_t level;
        float quantity;
        float expected;
    };
    for (const auto& c : {
             Case{"discount, by customer, percent, base level", "PRICETYPE=1, PRICEBASE=1, PRICEFMT=1", 0, 1, 200},
             Case{"discount, by customer, percent, level C", "PRICETYPE=1, PRICEBASE=1, PRICEFMT=1", 3, 1, 180},
             Case{"discount, by customer, amount", "PRICETYPE=1, PRICEBASE=1, PRICEFMT=2", 5, 1, 195},
             Case{"discount, by quantity, percent", "PRICETYPE=1, PRICEBASE=2, PRICEFMT=1" + breaks, 3, 20, 185},
             Case{"discount, by quantity, amount", "PRICETYPE=1, PRICEBASE=2, PRICEFMT=2" + breaks, 3, 35, 197},
             Case{"below every break", "PRICETYPE=1, PRICEBASE=2, PRICEFMT=2" + breaks, 3, 9, 200},
             Case{"markup, by customer, base level: the base price", "PRICETYPE=2, PRICEBASE=1, PRICEFMT=1", 0, 1, 200},
             Case{"markup, by customer, percent", "PRICETYPE=2, PRICEBASE=1, PRICEFMT=1", 4, 1, 115},
             Case{"markup, by customer, amount", "PRICETYPE=2, PRICEBASE=1, PRICEFMT=2", 4, 1, 104},
             Case{"markup, by quantity, percent", "PRICETYPE=2, PRICEBASE=2, PRICEFMT=1" + breaks, 0, 10, 105},
             Case{"markup, by quantity, amount", "PRICETYPE=2, PRICEBASE=2, PRICEFMT=2" + breaks, 0, 30, 103},
             Case{"a level that is none", "PRICETYPE=1, PRICEBASE=1, PRICEFMT=1", 6, 1, 0},
         }) {
        PricedCompany company;
        company.accounting(price_row(c.row));
        EXPECT_EQ(company.price(c.level, c.quantity), c.expected) << c.why;
        EXPECT_TRUE(company.boxes().empty()) << c.why;
    }
}

TEST(BasePrice, QuantityBreaksAreTestedInOrderAndTheLastThatFitsWins)
{
    struct Case {
        const char* why;
        const char* breaks;
        float quantity, factor, expected;
    };
    for (const auto& c : {Case{"a break of zero never applies", "PRICEQTY1=0, PRICEQTY2=100", 100, 1, 185},
                          Case{"a smaller break further down still wins", "PRICEQTY3=50, PRICEQTY4=20", 60, 1, 170},
                          Case{"the quantity is compared in stocking units", "PRICEQTY1=144", 12, 12, 190}}) {
        PricedCompany company;
        company.accounting(price_row(std::string("PRICEBASE=2, ") + c.breaks));
        EXPECT_EQ(company.price(0, c.quantity, c.factor), c.expected) << c.why;
    }
}

TEST(BasePrice, ASaleOfTodayWinsWhenItIsLower)
{
    struct Case {
        const char* why;
        const char* sale;
        float expected;
    };
    for (const auto& c : {Case{"running", "SALESTART='2026-03-13', SALEEND='2026-03-13', SALEPRICE=150", 150},
                          Case{"over", "SALESTART='2026-03-01', SALEEND='2026-03-12', SALEPRICE=150", 200},
                          Case{"to come", "SALESTART='2026-03-14', SALEEND='2026-04-12', SALEPRICE=150", 200},
                          Case{"no lower", "SALESTART='2026-03-01', SALEEND='2026-04-12', SALEPRICE=200", 200},
                          Case{"without an end", "SALESTART='2026-03-01', SALEEND=NULL, SALEPRICE=150", 200}}) {
        PricedCompany company;
        company.accounting(price_row(c.sale));
        EXPECT_EQ(company.price(), c.expected) << c.why;
    }
}

TEST(BasePrice, ReadsTheFieldsOfTheInventoryVersion)
{
    for (const auto& [version, price, unit, factor] :
         {std::tuple{"60A", 300.0F, "BOX", 12.0}, std::tuple{"54A", 300.0F, "BOX", 12.0},
          std::tuple{"61A", 200.0F, "EA", 1.0}, std::tuple{"", 200.0F, "EA", 1.0},
          std::tuple{"60a", 200.0F, "EA", 1.0}}) {
        PricedCompany company;
        company.accounting(price_row());
        company.ready().gVerIC = version;
        EXPECT_EQ(company.price(), price) << version;
        EXPECT_EQ(Return_BaseUnit(company.ready(), "ITEM", "STD", "CAD"), unit) << version;
        EXPECT_EQ(Return_BaseConvFactor(company.ready(), "ITEM", "STD", "CAD", false), factor) << version;
    }
}

TEST(BasePrice, FallsBackOnTheDefaultPriceListOnceAndWritesItToTheLine)
{
    PricedCompany company;
    company.accounting(price_row("BASEPRICE=77, BASECONV=6")).product("UPDATE Defaults SET mdUsePLDef = 1");
    company.line->put("dePriceList", "EXPORT");
    EXPECT_EQ(company.price(0, 1, 1, "EXPORT"), 77);
    EXPECT_EQ(company.line_list(), "STD");

    company.line->put("dePriceList", "EXPORT");
    EXPECT_EQ(Return_BaseConvFactor(company.ready(), "ITEM", "EXPORT", "CAD", true), 6);
    EXPECT_EQ(company.line_list(), "EXPORT") << "the caller asked to keep the line";
    EXPECT_EQ(Return_BaseConvFactor(company.ready(), "ITEM", "EXPORT", "CAD", false), 6);
    EXPECT_EQ(company.line_list(), "STD");
    company.line->put("dePriceList", "EXPORT");
    EXPECT_EQ(Return_BaseUnit(company.ready(), "ITEM", "EXPORT", "CAD"), "EA");
    EXPECT_EQ(company.line_list(), "STD");

    company.line->put("dePriceList", "KEEP");
    std::string list = "STD";
    std::string currency = "CAD";
    EXPECT_EQ(Return_BasePrice(company.ready(), "OTHER", list, currency, 0, 1, 1), 0)
        << "the default list lacks it too";
    EXPECT_EQ(company.line_list(), "KEEP");
}

TEST(BasePrice, FallsBackOnABlankDefaultListByWayOfTheQuotesOwn)
{
    struct Case {
        const char* why;
        const char* quote_list;
        float expected;
        size_t lookups;
    };
    for (const auto& c :
         {Case{"the quote's list has the price", "STD", 200, 2}, Case{"the quote's list lacks it too", "RETAIL", 0, 2},
          Case{"the quote's list has been looked up already", "EXPORT", 0, 1}}) {
        PricedCompany company;
        company.accounting(price_row()).product("UPDATE Defaults SET mdUsePLDef = 1, mdDefaultPL = ' '");
        auto& state = company.ready();
        state.gQuote.quPriceList = c.quote_list;
        std::string list = "EXPORT";
        std::string currency = "CAD";
        EXPECT_EQ(Return_BasePrice(state, "ITEM", list, currency, 0, 1, 1), c.expected) << c.why;
        EXPECT_EQ(company.line_list(), " ") << "the default is written behind the call";
        EXPECT_EQ(Return_BaseUnit(state, "ITEM", "EXPORT", "CAD"), "") << "a unit has no such way";
        EXPECT_TRUE(company.boxes().empty()) << c.why;
        size_t lookups = 0;
        for (const auto& filter : state.log.filters()) {
            lookups += filter.text.starts_with("IC0480") && filter.text.find("= EXPORT") == std::string::npos ? 1 : 0;
        }
        EXPECT_EQ(lookups, c.lookups - 1) << c.why;
    }
}

TEST(BasePrice, IsNoneBeyondASingle)
{
    PricedCompany company;
    company.accounting(price_row("BASEPRICE=1e39"));
    EXPECT_EQ(company.price(), 0);
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_THAT(company.box_text(0), testing::StartsWith("6: Overflow"));
    company.accounting("UPDATE IC0480 SET BASEPRICE = 200, PRICEBASE = 2, PRICEQTY1 = 9");
    EXPECT_EQ(company.price(0, 3e38F, 2), 0) << "nor is a quantity";
    EXPECT_EQ(company.boxes().size(), 2U);
}

TEST(BasePrice, FillsABlankPriceListAndCurrency)
{
    PricedCompany company;
    company.accounting(price_row());
    auto& state = company.ready();
    company.line->put("dePriceList", "");
    std::string list = " ";
    std::string currency;
    EXPECT_EQ(Return_BasePrice(state, "ITEM", list, currency, 0, 1, 1), 200);
    EXPECT_EQ(list, "STD");
    EXPECT_EQ(currency, "CAD");
    EXPECT_EQ(company.line_list(), "STD");
    EXPECT_EQ(Return_BasePrice(state, "  ", list, currency, 0, 1, 1), 0) << "a blank item has no price";
}

TEST(BasePrice, IsRoundedToTheCurrency)
{
    PricedCompany company;
    company.accounting(price_row("CURRENCY='JPY', BASEPRICE=1234.5"));
    EXPECT_EQ(company.price(0, 1, 1, "STD", "JPY"), 1235);
    EXPECT_TRUE(company.boxes().empty());
    EXPECT_EQ(company.price(0, 1, 1, "STD", "XXX"), 0);
    EXPECT_EQ(company.boxes().size(), 1U) << "a currency that the accounting system does not know";
}

TEST(BasePrice, OfAnOwnItemIsTheStoredPriceAsItStands)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        PricedCompany company(engine);
        company.product(
            "INSERT INTO IPricing VALUES (1, 9, 'CAD', 'STD', 12.34567), (2, 9, 'USD', 'O''X', 5);"
            "INSERT INTO Items (ItemID, itStockUnit) VALUES (9, ' EA ')");
        auto& state = company.ready();
        EXPECT_EQ(Return_VLBasePrice(state, 9, " CAD ", "STD"), 12.34567F);
        EXPECT_EQ(Return_VLBasePrice(state, 9, "USD", "O'X"), 5);
        EXPECT_EQ(Return_VLBasePrice(state, 9, "CAD", "x') OR ('1'='1"), 0);
        EXPECT_EQ(Return_VLBasePrice(state, 9, "CAD", " "), 0);
        EXPECT_EQ(Return_VLBaseUnit(state, 9), "EA");
        EXPECT_EQ(Return_VLBaseUnit(state, 8), "");
        EXPECT_TRUE(company.boxes().empty());
    }
}

std::string contract(const std::string& set)
{
    return "INSERT INTO IC0274 (CUSTNO, ITEMNO, PRICELIST, STARTDATE, EXPIRE, PRICETYPE, CALCPRICE, FIXPRICE, "
           "COSTMETHOD, PLUSPER, PLUSAMT) VALUES ('1200', 'ITEM', 'STD', '2026-01-01', '2026-12-31', 6, 150, 140, 2, "
           "10, 5); UPDATE IC0274 SET " +
           set + ";";
}

TEST(ContractPrice, ComesBeforeThePriceList)
{
    const std::string costs =
        "INSERT INTO IC0290 (ITEMNO, LOCATION, STDCOST, RECENTCOST, AVGCOST, LASTCOST, COST1, COST2) VALUES "
        "('ITEM', '1', 50, 60, 70, 80, 90, 95);";
    struct Case {
        const char* why;
        const char* set;
        float expected;
    };
    for (const auto& c :
         {Case{"fixed", "PRICETYPE=6", 140},
          Case{"calculated", "PRICETYPE=2", 150},
          Case{"the first kind that is calculated", "PRICETYPE=1", 150},
          Case{"the last kind that is calculated", "PRICETYPE=3", 150},
          Case{"standard cost plus percent", "PRICETYPE=4", 55},
          Case{"standard cost plus amount", "PRICETYPE=5", 55},
          Case{"second cost plus percent", "PRICETYPE=4, COSTMETHOD=7", 104.5F},
          Case{"markup cost plus percent", "PRICETYPE=4, COSTMETHOD=1", 110},
          Case{"a cost method that is none: the price list decides", "PRICETYPE=4, COSTMETHOD=8", 200},
          Case{"a kind that is none", "PRICETYPE=9", 200},
          Case{"a price of zero counts as none", "FIXPRICE=0", 200},
          Case{"and so does one that comes to it", "PRICETYPE=5, PLUSAMT=-50", 200},
          Case{"recent cost", "PRICETYPE=5, COSTMETHOD=3", 65},
          Case{"average cost", "PRICETYPE=5, COSTMETHOD=4", 75},
          Case{"last cost", "PRICETYPE=5, COSTMETHOD=5", 85},
          Case{"first cost", "PRICETYPE=5, COSTMETHOD=6", 95},
          Case{"markup cost plus amount", "PRICETYPE=5, COSTMETHOD=1", 105},
          Case{"it starts after the quote's date", "STARTDATE='2026-03-02'", 200},
          Case{"it starts on the quote's date", "STARTDATE='2026-03-01'", 140},
          Case{"it ends on the quote's date", "EXPIRE='2026-03-01'", 140},
          Case{"it ended before", "EXPIRE='2026-02-28'", 200},
          Case{"without a start it counts, whatever its end", "STARTDATE='', EXPIRE='2020-01-01'", 140}}) {
        PricedCompany company;
        company.accounting(price_row() + costs + contract(c.set));
        EXPECT_EQ(company.price(), c.expected) << c.why;
        EXPECT_TRUE(company.boxes().empty()) << c.why;
    }
}

TEST(ContractPrice, TakesTheCostOfTheLinesLocationElseOfTheQuotes)
{
    for (const auto& [line, quote, expected] : {std::tuple{" 1 ", "2", 55.0F}, {" ", " 2 ", 75.0F}, {"9", "2", 0.0F}}) {
        PricedCompany company;
        company.accounting(
            "INSERT INTO IC0290 (ITEMNO, LOCATION, STDCOST) VALUES ('ITEM', '1', 50), ('ITEM', '2', 70);" +
            contract("PRICETYPE=5"));
        company.line->put("deLocation", line);
        company.ready().gQuote.quLocation = quote;
        EXPECT_EQ(Return_ContractPrice(company.state(), "ITEM", "STD", "CAD"), expected) << line;
    }
}

TEST(ContractPrice, TakesThePercentOfAMarkupCostInSinglePrecision)
{
    PricedCompany company;
    company.accounting(price_row("CURRENCY='BHD', MARKUPCOST=306.5") +
                       "INSERT INTO IC0290 (ITEMNO, LOCATION, STDCOST) VALUES ('ITEM', '1', 306.5);" +
                       contract("PRICETYPE=4, PLUSPER=33.1"));
    EXPECT_EQ(Return_ContractPrice(company.ready(), "ITEM", "STD", "BHD"), 407.952F) << "but not that of another cost";
    company.accounting("UPDATE IC0274 SET COSTMETHOD = 1");
    EXPECT_EQ(Return_ContractPrice(company.state(), "ITEM", "STD", "BHD"), 407.951F);
}

TEST(ContractPrice, IsForAccountingCustomersOnly)
{
    PricedCompany company;
    company.accounting(contract("PRICETYPE=6"));
    auto& state = company.ready();
    EXPECT_EQ(Return_ContractPrice(state, "ITEM", "STD", "CAD"), 140);
    state.gQuote.CustFrom = 1;
    EXPECT_EQ(Return_ContractPrice(state, "ITEM", "STD", "CAD"), 0);
}

TEST(ContractPrice, OnAMarkupCostOfZeroIsTheBasePriceUnderItsPlainName)
{
    PricedCompany company;
    company.accounting(price_row("MARKUPCOST=0") + contract("PRICETYPE=4, COSTMETHOD=1"));
    company.ready().gVerIC = "60A";
    EXPECT_EQ(company.price(), 200) << "not the 300 of the dated field";
}

TEST(ManufacturerMatrix, ComesBeforeEverythingEvenWithAZero)
{
    PricedCompany company;
    company.accounting(price_row() + contract("PRICETYPE=6") +
                       "INSERT INTO IC0310 (ITEMNO, COMMODIM) VALUES ('ITEM', 'PIPE');"
                       "INSERT INTO MW0200 (CTYPE, CCODE, MANF1, MANF2) VALUES (1, '', 'WIRE', 'PIPE');"
                       "INSERT INTO MW0200 (CTYPE, CCODE, MANF1, MANF2) VALUES (2, 'GOLD', '9', '0')");
    company.ready().gQuote.quCIGCustomer = "GOLD";
    EXPECT_EQ(company.price(), 0);
    EXPECT_TRUE(company.boxes().empty());
}

TEST(Units, AreCheckedAndConvertedByTheItemsOwnTable)
{
    PricedCompany company;
    company.accounting(
        "INSERT INTO IC0380 (WEIGHTUNIT, HYHEN, PERIOD, FWDSLASH, BCKSLASH, ASTERISK, LFTPARENS, "
        "RGTPARENS, POUNDSGN) VALUES (' lbs ', 1, 0, 0, 0, 0, 0, 0, 0);"
        "INSERT INTO IC0750 VALUES ('AB100', 'EA', 1), ('AB100', 'DOZ', 12), ('AB-100', 'EA', 5)");
    auto& state = company.ready();
    EXPECT_EQ(Return_APFactor(state, "AB-100", "DOZ"), 12) << "looked up without its separators";
    EXPECT_EQ(Return_APFactor(state, "AB-100", "TON"), 0) << "0, not 1";
    EXPECT_TRUE(Check_ItemUofM(state, "AB-100", " EA ", false)) << "looked up as it stands";
    EXPECT_FALSE(Check_ItemUofM(state, "AB-100", "DOZ", true));
    EXPECT_TRUE(company.boxes().empty());
    EXPECT_FALSE(Check_ItemUofM(state, "AB-100", "DOZ", false));
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_EQ(company.boxes()[0].title, "Invalid Entry");
    EXPECT_EQ(Return_ItemWeightUnit(state), "lbs");
    EXPECT_EQ(Return_BaseConvFactor(state, "NONE", "STD", "CAD", false), 1) << "a caller can divide by it";
    company.accounting(price_row("BASECONV=0"));
    EXPECT_EQ(Return_BaseConvFactor(state, "ITEM", "STD", "CAD", false), 1) << "also where the row says 0";
}

}  // namespace
}  // namespace velora
