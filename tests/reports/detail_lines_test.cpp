#include "reports/detail_lines.h"

#include "reports/quote_company.h"

namespace velora {
namespace {

using test::QuoteCompany;

/// A quote of one line of an item that the accounting system knows, in full or in part.
class LineCompany : public QuoteCompany {
public:
    explicit LineCompany(const std::string& set, const std::string& item = "ITEM")
    {
        add({.factor = "7", .item = "'" + item + "'", .more = set});
        accounting(
            "UPDATE IC0310 SET DESC = ' Pump ', CATEGORY = ' A1 ', STOCKUNIT = 'BOX';"
            "INSERT INTO IC0750 VALUES ('ITEM', 'EA', 1), ('ITEM', 'BOX', 6), ('ITEM', '', 3);"
            "INSERT INTO IC0290 (ITEMNO, LOCATION, AQTYONHAND, QTYSALORDR) VALUES ('ITEM', 'N1', 0, 0), "
            "('ITEM', '20', 90, 12.5);"
            "INSERT INTO IC0380 (HYHEN) VALUES (0)");
        load();
        auto& loaded = state();
        loaded.gTaxAuthorities[0].Authority = "FED";
        loaded.gTaxAuthorityCount = 1;
        loaded.gQuote.quLocation = " 9 ";
        Get_DetailPrRecordset(loaded, 1);
    }
    std::string cell(const char* column)
    {
        const Value& value = state().gQuoteDetails->value(column);
        return value.is_null() ? "<null>" : to_text(value);
    }
};

TEST(DetailLines, AreCompletedFromTheItemWhereTheyAreBlank)
{
    using Cells = std::vector<std::pair<const char*, const char*>>;
    struct Case {
        const char* why;
        const char* set;
        Cells expected;
    };
    for (const auto& c : std::vector<Case>{
             {"a full line stays",
              "deDesc = 'x', deCategory = 'y', deLocation = 'z'",
              {{"deDesc", "x"},
               {"dePriceList", "STD"},
               {"deCategory", "y"},
               {"deUofM", " EA "},
               {"deConvFactor", "7"},
               {"deLocation", "z"},
               {"deQuotedPrice", "10"},
               {"deTaxClass1", "1"},
               {"deTaxIncl1", "0"}}},
             {"a blank one takes what the item has",
              "deDesc = ' ', dePriceList = '', deCategory = ' ', deLocation = ' ', deTaxClass1 = ' '",
              {{"deDesc", "Pump"},
               {"dePriceList", "STD"},
               {"deCategory", "A1"},
               {"deLocation", "20"},
               {"deQuotedPrice", "10"},
               {"deTaxClass1", "1"},
               {"deTaxIncl1", ""},
               {"deTaxClass2", ""}}},
             {"a null price list is a price, and stays a null",
              "dePriceList = NULL",
              {{"deQuotedPrice", "11"}, {"dePriceList", "<null>"}}},
             {"nulls are no blanks",
              "deDesc = NULL, deCategory = NULL, deLocation = NULL, deTaxClass1 = NULL",
              {{"deDesc", "<null>"}, {"deCategory", "<null>"}, {"deLocation", "<null>"}, {"deTaxClass1", "<null>"}}},
             {"a unit that the item lacks", "deUofM = 'TON'", {{"deUofM", "BOX"}, {"deConvFactor", "6"}}},
             {"a null unit drops the question", "deUofM = NULL", {{"deUofM", "<null>"}, {"deConvFactor", "7"}}},
             {"a blank unit takes that of the price list", "deUofM = ' '", {{"deUofM", "EA"}, {"deConvFactor", "1"}}},
             {"without a price list the factor is taken all the same",
              "deUofM = ' ', dePriceList = NULL",
              {{"deUofM", " "}, {"deConvFactor", "3"}}},
         }) {
        LineCompany company(c.set);
        Fetch_PrItemDetails(company.state(), "CAD", false);
        for (const auto& [column, text] : c.expected) EXPECT_EQ(company.cell(column), text) << c.why << ": " << column;
        EXPECT_TRUE(company.boxes().empty()) << c.why << ": " << company.box_text(0);
    }
}

TEST(DetailLines, OfAnItemThatIsGoneChangeNothingButTheirTaxes)
{
    LineCompany company("deDesc = '', deCategory = '', deTaxClass1 = ''", "GONE");
    Fetch_PrItemDetails(company.state(), "CAD", false);
    EXPECT_EQ(company.cell("deDesc"), "");
    EXPECT_EQ(company.cell("deTaxClass1"), "1");

    LineCompany blank("deDesc = '', deTaxClass1 = ''", "  ");
    Fetch_PrItemDetails(blank.state(), "CAD", false);
    EXPECT_EQ(blank.cell("deTaxClass1"), "") << "a blank item is not asked for at all";
    EXPECT_TRUE(blank.boxes().empty());
}

TEST(DetailLines, TakeTheLocationOfTheQuoteWhereTheItemHasNone)
{
    LineCompany company("deLocation = ''");
    company.accounting("DELETE FROM IC0290");
    Fetch_PrItemDetails(company.state(), "CAD", false);
    EXPECT_EQ(company.cell("deLocation"), "9");
}

TEST(DetailLines, AreUnsetForAQuoteWithoutThemAndNewAfterAFailure)
{
    LineCompany company("Line = 1");
    auto& state = company.state();
    company.charge(1, "5");
    Get_DetailPrRecordset(state, 2);
    EXPECT_FALSE(state.gQuoteDetails);
    Get_DetailPrRecordset(state, 1);
    ASSERT_TRUE(state.gQuoteDetails);
    company.product("DROP TABLE CommIns");
    Get_DetailPrRecordset(state, 1);
    EXPECT_EQ(company.boxes().size(), 1U);
    ASSERT_TRUE(state.gQuoteDetails) << "but never opened";
    EXPECT_THROW((void)state.gQuoteDetails->RecordCount(), Fault);
}

TEST(QuantityAvailable, IsWhatIsFreeInTheLinesUnit)
{
    LineCompany company("Line = 1");
    auto& state = company.state();
    EXPECT_EQ(Return_QuantityAvailable(state, " ITEM ", " 20 ", 3), Value("77.50")) << "in stocking units";
    EXPECT_EQ(Return_QuantityAvailable(state, " ", "20", 3), Value("0"));
    EXPECT_TRUE(Return_QuantityAvailable(state, "ITEM", "30", 3).is_null());
    company.product("UPDATE Defaults SET mdLocDetail = 1");
    Get_Defaults(state);
    EXPECT_EQ(Return_QuantityAvailable(state, "ITEM", "20", 3), Value("25.83"));
    EXPECT_TRUE(company.boxes().empty());
    EXPECT_TRUE(Return_QuantityAvailable(state, "ITEM", "20", 0).is_null());
    EXPECT_THAT(company.box_text(0), testing::StartsWith("11: Division by zero"));
}

}  // namespace
}  // namespace velora
