#include "reports/print_totals.h"

#include <algorithm>

#include "gateway/quote_record.h"
#include "pricing/charges.h"
#include "pricing/taxes.h"
#include "reports/detail_lines.h"
#include "reports/quote_company.h"

namespace velora {
namespace {

using test::Line;
using test::QuoteCompany;

/// Totals of quote 1, with the tax amounts left in the slots, of which as many count as are used or are asked for.
TaxSlots totals_of(QuoteCompany& company, int16_t asked = 5)
{
    company.load();
    auto& state = company.state();
    TaxSlots slots;
    int16_t count = 0;
    Fetch_QuoteInfo(state, state.gQuote, 1);
    Get_DetailPrRecordset(state, 1);
    Get_MiscChargeInfo(state, state.gMiscCharges, 1, state.gQuote.quCurCode);
    Get_TaxAuthorities(state, state.gQuote.quTaxGroup, slots, count);
    Calculate_PrintTotals(state, 1, std::min(count, asked), slots);
    return slots;
}

TEST(PrintTotals, AddUpTheWayTheDocumentShowsThem)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        QuoteCompany company(engine);
        company.add({.number = 1, .quantity = "3", .price = "10.5", .discount = "1.5", .cost = "4"})
            .add({.number = 2, .quantity = "99", .detail_kind = 10})
            .charge(1, "20");
        const auto slots = totals_of(company);
        const auto& state = company.state();
        EXPECT_EQ(state.gPrSubTotal, 51.5);
        EXPECT_EQ(state.gPrDiscount, 1.5);
        EXPECT_EQ(state.gPrNetTotal, 50);
        EXPECT_EQ(slots[0].Amount, 2.5F);
        EXPECT_EQ(slots[1].Amount, 3.5F);
        EXPECT_EQ(state.gPrTaxTotal, 6);
        EXPECT_EQ(state.gPrTotal, 56);
        EXPECT_EQ(state.gPrCost, 12);
        EXPECT_EQ(state.gPrProfit, 44) << "with the tax in it";
        EXPECT_EQ(state.gPrMargin, "76.70 %") << "on the subtotal";
        EXPECT_EQ(state.gPrWeight, 7.5);
        EXPECT_TRUE(company.boxes().empty());
    }
}

TEST(PrintTotals, OfCommentsAndAChargeAreThoseOfTheCharge)
{
    QuoteCompany company;
    company.add({.number = 1, .quantity = "99", .detail_kind = 10}).charge(1, "20");
    const auto slots = totals_of(company);
    const auto& state = company.state();
    EXPECT_EQ(state.gPrSubTotal, 20);
    EXPECT_EQ(state.gPrDiscount, 0);
    EXPECT_EQ(slots[0].Amount, 1.0F);
    EXPECT_EQ(slots[1].Amount, 1.4F);
    EXPECT_EQ(state.gPrTotal, 22.4);
    EXPECT_EQ(state.gPrCost, 0);
    EXPECT_EQ(state.gPrMargin, "100.00 %");
    EXPECT_TRUE(company.boxes().empty());
}

TEST(PrintTotals, LeaveOutTheTaxesBeyondTheirNumber)
{
    QuoteCompany company;
    company.add({.quantity = "5", .included = {"'0'", "'1'"}});
    const auto slots = totals_of(company, 1);
    EXPECT_EQ(slots[0].Amount, 2.5F);
    EXPECT_EQ(slots[1].Amount, 0) << "nor is one taken out of the price";
    EXPECT_EQ(company.state().gPrTaxTotal, 2.5);
    EXPECT_EQ(company.state().gPrTotal, 52.5);
}

TEST(PrintTotals, RoundAtFixedPoints)
{
    struct Case {
        const char* why;
        const char* currency;
        Line line;
        double net, tax, total;
    };
    for (const auto& c : {
             Case{"a tie goes up before the discount",
                  "CAD",
                  {.price = "10.125", .discount = "0.005"},
                  10.12,
                  1.22,
                  11.34},
             Case{"no decimals: two at first, none in the end",
                  "JPY",
                  {.quantity = "3", .price = "33.335"},
                  100,
                  12,
                  112},
             Case{"included taxes each on their own rate",
                  "CAD",
                  {.price = "112", .included = {"'1'", "'1'"}},
                  112,
                  -0.66,
                  111.34},
             Case{"one included, one on top", "CAD", {.price = "105", .included = {"'1'", "'0'"}}, 105, 7, 112},
             Case{"a class without a rate adds nothing",
                  "CAD",
                  {.price = "100", .classes = {"'2'", "'1'"}},
                  100,
                  7,
                  107},
             Case{"an own item counts pieces, not pricing units",
                  "CAD",
                  {.quantity = "2", .factor = "12", .item_kind = 10},
                  240,
                  28.8,
                  268.8},
             Case{"an own item without a key has no amount", "CAD", {.item_kind = 10, .more = "ItemID = 0"}, 0, 0, 0},
         }) {
        QuoteCompany company;
        company.product(std::string("UPDATE Quote SET quCurCode = '") + c.currency + "'").add(c.line);
        if (std::string(c.currency) == "JPY") company.accounting("UPDATE IC0480 SET CURRENCY = 'JPY'");
        totals_of(company);
        EXPECT_EQ(company.state().gPrNetTotal, c.net) << c.why;
        EXPECT_EQ(company.state().gPrTaxTotal, c.tax) << c.why;
        EXPECT_EQ(company.state().gPrTotal, c.total) << c.why;
        EXPECT_TRUE(company.boxes().empty()) << c.why << ": " << company.box_text(0);
    }
}

TEST(PrintTotals, ANullDropsTheStatementThatReadIt)
{
    struct Case {
        const char* why;
        const char* set;
        double net, discount, cost, weight;
    };
    for (const auto& c :
         {Case{"discount: the whole line amount falls away", "deDiscount = NULL", 0, 0, 4, 2.5},
          Case{"cost", "deCost = NULL", 9, 1, 0, 2.5}, Case{"weight", "deWeight = NULL", 9, 1, 4, 0},
          Case{"quantity", "deQuantity = NULL", 0, 1, 0, 0},
          Case{"inclusion flags count as not set", "deTaxIncl1 = NULL, deTaxIncl2 = NULL", 9, 1, 4, 2.5}}) {
        QuoteCompany company;
        company.add({.discount = "1", .more = c.set});
        totals_of(company);
        EXPECT_EQ(company.state().gPrNetTotal, c.net) << c.why;
        EXPECT_EQ(company.state().gPrDiscount, c.discount) << c.why;
        EXPECT_EQ(company.state().gPrCost, c.cost) << c.why;
        EXPECT_EQ(company.state().gPrWeight, c.weight) << c.why;
        EXPECT_TRUE(company.boxes().empty()) << c.why << ": " << company.box_text(0);
    }
}

TEST(PrintTotals, EndWhereARateLeavesNothingToTakeItFrom)
{
    for (const auto& [price, number] : {std::pair{"10", "11: Division by zero"}, {"0", "6: Overflow"}}) {
        QuoteCompany company;
        company.accounting("UPDATE TX0004 SET ITEMRATE1 = -100 WHERE AUTHORITY = 'FED'");
        company.add({.price = price, .included = {"'1'", "'0'"}});
        company.state().gPrTotal = 7;
        totals_of(company);
        ASSERT_EQ(company.boxes().size(), 1U);
        EXPECT_THAT(company.box_text(0), testing::StartsWith(number));
        EXPECT_THAT(company.box_text(0), testing::HasSubstr("modPrint.Calculate_PrintTotals"));
        EXPECT_EQ(company.state().gPrTotal, 7);
    }
}

TEST(PrintTotals, KeepTheMarginOfTheQuoteBeforeWhereThereIsNoSubtotal)
{
    QuoteCompany company;
    company.add({.price = "0"});
    company.state().gPrMargin = "12.00 %";
    totals_of(company);
    EXPECT_EQ(company.state().gPrMargin, "12.00 %");
}

TEST(PrintTotals, TellOfACurrencyThatIsNotKnownAndKeepWhatTheyHeld)
{
    QuoteCompany company;
    company.product("UPDATE Quote SET quCurCode = 'XXX'").add({});
    company.state().gPrTotal = 7;
    totals_of(company);
    EXPECT_EQ(company.state().gPrTotal, 7);
    ASSERT_EQ(company.boxes().size(), 1U);
    EXPECT_THAT(company.box_text(0), testing::HasSubstr("modPrint.Calculate_PrintTotals"));
}

}  // namespace
}  // namespace velora
