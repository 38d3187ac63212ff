#include "reports/item_list.h"

#include "reports/list_company.h"

namespace velora {
namespace {

using test::expect_row;
using test::ListCompany;
using test::shown;

class Items : public testing::TestWithParam<WhichEngine>, public ListCompany {
public:
    Items() : ListCompany(GetParam()) {}

    void item(int id, const std::string& number, const std::string& more = "Exported = 0")
    {
        const std::string key = std::to_string(id);
        product(
            "INSERT INTO Items (ItemID, ItemNumber, itDesc, itCategory, itPriceList, itStockUnit, "
            "itLastMaintained, itStructureCode, itAccountSet, itAdditional, itAdditional1, itAdditional2, "
            "itAdditional3, Exported) VALUES (" +
            key + ", '" + number +
            "', ' Hinge, brass ', 'HW', 'STD', ' EA', "
            "'2026-02-03T10:20:30', 'S1', 'AS9', 'one ', ' two', 'three', 'four', 0);"
            "UPDATE Items SET " +
            more + " WHERE ItemID = " + key);
    }
    void price(int item, const std::string& currency, const std::string& amount, const std::string& list = "'STD'")
    {
        product("INSERT INTO IPricing (ItemID, ipCurrency, ipPriceList, ipBasePrice) VALUES (" + std::to_string(item) +
                ", " + currency + ", " + list + ", " + amount + ")");
    }
};

INSTANTIATE_TEST_SUITE_P(BothDialects, Items, testing::Values(eDBSQLServer, eDBPervasive));

TEST_P(Items, EveryFieldIsAsItIsStored)
{
    item(1, " H-1 ");
    price(1, "'CAD'", "1234.565");
    const auto& printed = rows("items");
    ASSERT_EQ(printed.size(), 1U);
    EXPECT_EQ(shown(printed[0], "Company Name"), "Test Company");
    expect_row("items", printed[0],
               {{"Item Number", " H-1 "},
                {"Description", " Hinge, brass "},
                {"Structure Code", "S1"},
                {"Category", "HW"},
                {"Account Set", "AS9"},
                {"Price List", "STD"},
                {"Last Maintained", "2026-02-03T10:20:30"},
                {"Stocking Unit", " EA"},
                {"Additional 1", "one "},
                {"Additional 2", " two"},
                {"Additional 3", "three"},
                {"Additional 4", "four"},
                {"Base Price", "1,234.57"},
                {"Currency", "CAD"}});
    EXPECT_TRUE(state().gExportFile.ends_with("20260313 - Item List.pdf")) << state().gExportFile;
}

TEST_P(Items, OnlyPricesOnTheItemsOwnListCountAndInOneCurrencyWhereThereAreSeveral)
{
    item(1, "Z-LAST");
    price(1, "'CAD'", "1");
    item(2, "NO-PRICE");
    item(3, "OTHER-LIST");
    price(3, "'CAD'", "3", "'TRADE'");
    item(4, "ABROAD");
    price(4, "'USD'", "4");
    item(5, "A-FIRST");
    price(5, "'CAD'", "5");
    price(5, "'USD'", "6");
    item(6, "GONE", "Exported = 1");
    price(6, "'CAD'", "7");
    item(7, "NULL-LIST", "itPriceList = NULL");
    price(7, "'CAD'", "8");
    EXPECT_EQ(shown(rows("items"), "Item Number"), (std::vector<std::string>{"A-FIRST", "Z-LAST"}));
}

TEST_P(Items, ACompanyOfOneCurrencyListsAllOfThemWhateverTheHostSays)
{
    accounting("UPDATE CompanyInfo SET Multicurrency = 0");
    item(1, "H-1");
    price(1, "'CAD'", "5");
    price(1, "'JPY'", "600");
    state().gMultiCurr = true;  // the session's own flag counts
    EXPECT_EQ(shown(rows("items"), "Base Price"), (std::vector<std::string>{"5.00", "600"}));
}

TEST_P(Items, NullsBlanksAndUnknownCurrenciesLeaveWhatTheyTouch)
{
    accounting("UPDATE CompanyInfo SET Multicurrency = 0");
    item(1, "BLANK");
    price(1, "'  '", "2.5");
    item(2, "NULL");
    price(2, "NULL", "2.5");
    item(3, "NO-AMOUNT", "itDesc = NULL, itLastMaintained = NULL");
    price(3, "'CAD'", "NULL");
    item(4, "UNKNOWN");
    price(4, "'XXX'", "2.5");
    const auto& printed = rows("items");
    ASSERT_EQ(shown(printed, "Item Number"), (std::vector<std::string>{"BLANK", "NO-AMOUNT", "NULL", "UNKNOWN"}));
    EXPECT_EQ(shown(printed, "Base Price"), (std::vector<std::string>{"2.50", "<null>", "<null>", ""}));
    EXPECT_EQ(shown(printed, "Currency"), (std::vector<std::string>{"  ", "CAD", "<null>", "XXX"}));
    EXPECT_EQ(shown(printed, "Description")[1], "<null>");
    EXPECT_EQ(shown(printed, "Last Maintained")[1], "<null>");
    EXPECT_EQ(boxes().size(), 1U) << "of the unknown currency";
}

TEST_P(Items, AHomeCurrencyWithAQuoteIsAsked)
{
    accounting("UPDATE CompanyInfo SET HomeCurrency = 'O''X'");
    item(1, "H-1");
    price(1, "'CAD'", "5");
    EXPECT_EQ(print("items"), RunEnd::NoData);
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(boxes()[0].title, "No Data Found");
    EXPECT_EQ(boxes()[0].text, "There are no Items in the database to place on the report.");
}

}  // namespace
}  // namespace velora
