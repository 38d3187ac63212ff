#include "platform/recordset.h"
#include "pricing/amount_display.h"
#include "pricing/charges.h"
#include "pricing/taxes.h"
#include "support/test_company.h"

namespace velora {
namespace {

using test::TestCompany;

TEST(TaxAuthorities, CountTheHighestSlotInUse)
{
    TestCompany company;
    company.accounting(
        "INSERT INTO TX0003 (GROUPID, AUTHORITY1, TAXABLE1, AUTHORITY2, AUTHORITY3, TAXABLE3) "
        "VALUES ('GAP', ' FED ', 0, ' ', 'PROV', 1)");
    TaxSlots slots;
    slots[1].Authority = "OLD";
    slots[1].CascadeTax = true;
    int16_t count = 9;
    Get_TaxAuthorities(company.state(), "GAP", slots, count);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(slots[0].Authority, "FED");
    EXPECT_EQ(slots[1].Authority, "");
    EXPECT_FALSE(slots[1].CascadeTax);
    EXPECT_FALSE(slots[0].CascadeTax);
    EXPECT_TRUE(slots[2].CascadeTax);
    Get_TaxAuthorities(company.state(), "NONE", slots, count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(slots[0].Authority, "FED") << "an unknown group leaves the slots";
    EXPECT_TRUE(company.boxes().empty());
}

TEST(TaxRate, IsThatOfTheItemsClass)
{
    TestCompany company;
    company.accounting(
        "INSERT INTO TX0004 (AUTHORITY, TTYPE, BUYERCLASS, ITEMRATE1, ITEMRATE10) VALUES "
        "('FED', 2, '1', 99, 99), ('FED', 1, '1', 5, 7.25), ('FED', 2, '3', 8, 8)");
    struct Case {
        const char* why;
        const char* authority;
        const char* buyer;
        const char* item;
        float expected;
    };
    for (const auto& c :
         {Case{"class 1 of the sales side", "FED", "1", "1", 5}, Case{"class 10", "FED", "1", "10", 7.25F},
          Case{"no class 11", "FED", "1", "11", 0}, Case{"a fraction fits no class", "FED", "1", "1.5", 0},
          Case{"a blank class", "FED", "1", "", 0}, Case{"no such buyer class", "FED", "2", "1", 0},
          Case{"a buyer class of the other side", "FED", "3", "1", 0}, Case{"no authority", " ", "1", "1", 0}}) {
        EXPECT_EQ(Return_TaxRate(company.state(), c.authority, c.buyer, c.item), c.expected) << c.why;
    }
}

TEST(ItemTaxes, FillTheLineFromTheItemAndDefaultTheRest)
{
    struct Case {
        const char* why;
        const char* rows;
        std::vector<std::string> classes;
        std::vector<std::string> included;
    };
    for (const auto& c : {Case{"no class at all", "", {"1", "1", "", "", ""}, {"", "", "", "", ""}},
                          Case{"a class for the second slot",
                               "INSERT INTO IC0330 VALUES ('ITEM', 'PROV', '3')",
                               {"1", "3", "", "", ""},
                               {"", "0", "", "", ""}}}) {
        TestCompany company;
        company.accounting(c.rows);
        auto& state = company.state();
        state.gTaxAuthorities[0].Authority = "FED";
        state.gTaxAuthorities[1].Authority = "PROV";
        state.gTaxAuthorityCount = 2;
        std::vector<std::string> names{"APItem"};
        for (const char* name : {"deTaxClass", "deTaxIncl"}) {
            for (int n = 1; n <= 5; ++n) names.push_back(name + std::to_string(n));
        }
        std::vector<Value> row(names.size(), Value("9"));
        row[0] = " ITEM ";
        state.gQuoteDetails = std::make_shared<Recordset>(names, std::vector<std::vector<Value>>{row});
        Get_APItemTaxes(state);
        for (size_t n = 0; n < 5; ++n) {
            EXPECT_EQ(to_text(state.gQuoteDetails->value(1 + n)), c.classes[n]) << c.why << ", slot " << n + 1;
            EXPECT_EQ(to_text(state.gQuoteDetails->value(6 + n)), c.included[n]) << c.why << ", slot " << n + 1;
        }
    }
}

TEST(MiscCharges, KeepTheirOwnDescriptionAndTakeTheirAccount)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        TestCompany company(engine);
        company
            .product(
                "INSERT INTO DMiscCharge (ChargeID, QuoteID, Line, ChargeCode, ChDesc, Amount, TaxClass1) VALUES "
                "(2, 7, 2, 'FRT', ' ', 12.5, '1'), (1, 7, 1, ' FRT ', 'By road', 20, '1'), (3, 7, 3, 'X', 'y', 1, "
                "'1'); UPDATE DMiscCharge SET TaxClass2='', TaxClass3='', TaxClass4='', TaxClass5='', TaxIncl1='', "
                "TaxIncl2='', TaxIncl3='', TaxIncl4='', TaxIncl5=''")
            .accounting(
                "INSERT INTO OE0440 (CURRENCY, MISCCHARGE, DESC, MISCACCT, MISCACDESC) VALUES "
                "('USD', 'FRT', 'Freight', '4700', 'Freight income')");
        auto& state = company.state();
        std::optional<std::vector<MiscChargeRecord>> charges;
        EXPECT_FALSE(Get_MiscChargeInfo(state, charges, 8, "USD"));
        EXPECT_FALSE(charges);
        ASSERT_TRUE(Get_MiscChargeInfo(state, charges, 7, " USD "));
        ASSERT_EQ(charges->size(), 3U);
        EXPECT_EQ((*charges)[0].ChDesc, "By road") << "in the order of the lines";
        EXPECT_EQ((*charges)[1].ChDesc, "Freight");
        EXPECT_EQ((*charges)[0].MiscAccount, "4700");
        EXPECT_EQ((*charges)[2].MiscAccount, "") << "an unknown code counts all the same";
        state.gMultiCurr = false;
        Get_MiscChargeInfo(state, charges, 7, "USD");
        EXPECT_EQ((*charges)[0].MiscAccount, "") << "one currency: looked up in the home currency";
        EXPECT_TRUE(company.boxes().empty());
    }
}

TEST(MiscCharges, AskTheAccountingSystemOnlyWhereThereAreAny)
{
    TestCompany company;
    company.product(
        "INSERT INTO DMiscCharge (ChargeID, QuoteID, Line, ChargeCode, ChDesc, Amount) VALUES (1, 7, 1, 'X', 'y', "
        "1e39)");
    auto& state = company.state();
    std::optional<std::vector<MiscChargeRecord>> charges;
    EXPECT_FALSE(Get_MiscChargeInfo(state, charges, 8, "USD"));
    EXPECT_TRUE(state.log.filters().empty());
    EXPECT_FALSE(Get_MiscChargeInfo(state, charges, 7, "USD"));
    EXPECT_TRUE(charges) << "the array stays as far as it got";
    EXPECT_THAT(company.box_text(0), testing::StartsWith("6: Overflow")) << "an amount beyond a single";
}

TEST(DisplayAmount, FollowsTheCurrency)
{
    struct Case {
        const char* why;
        double value;
        const char* currency;
        bool symbol;
        const char* expected;
    };
    TestCompany company;
    company.accounting(
        "INSERT INTO CurrencyInfo VALUES ('AAA', ' A ', ' ', ',', 1, 3, 9), ('BBB', 'B', ',', '.', 4, 9, 3)");
    for (const auto& c :
         {Case{"symbol behind a blank, no sign at all, blank marks", -1234.56, "AAA", true, "1234,6 A"},
          Case{"no symbol at all", -1.23456, "BBB", true, "(1.2346)"},
          Case{"groups of three", 1234567.5, "CAD", false, "1,234,567.50"},
          Case{"no fraction", 1000000, "CAD", false, "1,000,000.00"},
          Case{"below a thousand", 999, "CAD", false, "999.00"}, Case{"a thousand", 1000, "CAD", false, "1,000.00"},
          Case{"nothing", 0, "CAD", false, "0.00"},
          Case{"a fraction that rounds up loses the carry", 2.999, "CAD", false, "2.00"},
          Case{"parentheses inside the symbol", -5, "USD", true, "US$ (5.00)"},
          Case{"minus ahead", -5.25, "CAD", true, "$-5.25"}, Case{"minus behind", -5, "JPY", true, "Y5-"},
          Case{"no decimals, no mark", 12.75, "JPY", false, "12"},
          Case{"three decimals", 0.1235, "BHD", true, "0.124BD"},
          Case{"a single shows what it holds", 123456.78F, "CAD", false, "123,456.78"},
          Case{"a sign before nothing", -0.001, "CAD", false, "-0.00"}}) {
        std::string currency = c.currency;
        EXPECT_EQ(Display_AccpacCurrency(company.state(), c.value, currency, c.symbol), c.expected) << c.why;
    }
    std::string blank = " ";
    EXPECT_EQ(Display_AccpacCurrency(company.state(), 1, blank, false), "1.00");
    EXPECT_EQ(blank, "CAD") << "written back to the caller";
    EXPECT_TRUE(company.boxes().empty());
    std::string currency = "CAD";
    EXPECT_EQ(Display_AccpacCurrency(company.state(), 3e9, currency, false), "");
    EXPECT_THAT(company.box_text(0), testing::StartsWith("6: Overflow"));
}

TEST(FormatDecimals, UsesTheMarksOfTheRegionAndAtMostFivePlaces)
{
    TestCompany company;
    EXPECT_EQ(Format_Decimals(company.state(), 1234.5, 7), "1,234.50000");
    EXPECT_EQ(rounded(0.1234567, 7), 0.12346);
    company.region.marks_ = {".", ","};
    EXPECT_EQ(Format_Decimals(company.state(), 1234.5, 2), "1.234,50");
    std::string currency = "CAD";
    EXPECT_EQ(Display_AccpacCurrency(company.state(), 1234.5, currency, false), "1,234.50")
        << "the currency's own marks";
}

TEST(ItemNumbers, AreShownFormattedAndStoredWithoutSeparators)
{
    TestCompany company;
    company.accounting(
        "INSERT INTO IC0310 (ITEMNO, FMTITEMNO) VALUES ('A12', ' A-1.2 ');"
        "INSERT INTO IC0380 (WEIGHTUNIT, HYHEN, PERIOD, FWDSLASH, BCKSLASH, ASTERISK, LFTPARENS, "
        "RGTPARENS, POUNDSGN) VALUES ('kg', 1, 0, 1, 1, 1, 1, 1, 1)");
    EXPECT_EQ(Return_FormatItem(company.state(), " A12 "), "A-1.2");
    EXPECT_EQ(Return_FormatItem(company.state(), "B"), "");
    EXPECT_EQ(Remove_Separators(company.state(), "A-1.2"), "A1.2");
    EXPECT_EQ(Remove_Separators(company.state(), "(A)/*#\\-1"), "A1");
}

}  // namespace
}  // namespace velora
