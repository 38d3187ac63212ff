#include <sstream>

#include "reports/quote_company.h"

// Every figure of a dozen odd lines in currencies of two, three and no decimals. The expected texts were worked out by
// a program of its own from the rules alone.

namespace velora {
namespace {

using test::QuoteCompany;
using test::shown;

/// Item and customer as the figures below take them: a price list in units of 5, rates of 9.975, 4.5 and 7.
class FiguresCompany : public QuoteCompany {
public:
    FiguresCompany(WhichEngine engine_in_use, const std::string& currency) : QuoteCompany(engine_in_use)
    {
        const std::string own = ", deIType = 10, APItem = ' '";
        add({.number = 1,
             .quantity = "2.5",
             .price = "33.335",
             .discount = "3.335",
             .cost = "12.3456",
             .factor = "12",
             .included = {"'1'", "'0'"},
             .more = more("1.25", "0.375")});
        add({.number = 2,
             .quantity = "3",
             .price = "7.775",
             .discount = "0.005",
             .cost = "9",
             .factor = "12",
             .classes = {"'2'", "'1'"},
             .more = more("4", "1.5") + own});
        add({.number = 3, .quantity = "99", .detail_kind = 10});
        add({.number = 5,
             .quantity = "7",
             .price = "0",
             .discount = "1",
             .cost = "0.25",
             .factor = "1",
             .classes = {"'1'", "''"},
             .included = {"'0'", "'1'"},
             .more = more("0", "0")});
        add({.number = 6,
             .quantity = "12.5",
             .price = "87.65432",
             .discount = "45.6785",
             .cost = "50.5",
             .factor = "5",
             .included = {"'1'", "'1'"},
             .more = more("34.5", "0.12345")});
        add({.number = 7,
             .quantity = "1",
             .price = "0.496",
             .discount = "0",
             .cost = "0.1",
             .factor = "1",
             .classes = {"'1'", "'2'"},
             .more = more("0.5", "0.0625") + own});
        add({.number = 8,
             .quantity = "4",
             .price = "21.125",
             .discount = "0.125",
             .cost = "8",
             .factor = "3",
             .price_list = "NULL",
             .classes = {"'2'", "'1'"},
             .included = {"'1'", "'1'"},
             .more = more("0", "0.5")});
        add({.number = 9,
             .quantity = "2",
             .price = "5.555",
             .discount = "0",
             .cost = "3.3333",
             .factor = "2",
             .more = more("0", "0.25") + own + ", ItemID = 0"});
        charge(1, "12.345").product("UPDATE DMiscCharge SET TaxIncl1 = '1'");
        product("UPDATE Quote SET quCustomerType = 2, quCurCode = '" + currency +
                "'; INSERT INTO IPricing VALUES (1, 9, '" + currency +
                "', 'STD', 6.54321);"
                "INSERT INTO Items (ItemID, itStockUnit) VALUES (9, ' PC ')");
        accounting("UPDATE IC0480 SET CURRENCY = '" + currency +
                   "', BASEPRICE = 41.23456, PRCNTLVL2 = 7.5, BASEUNIT = ' KG ', BASECONV = 5;"
                   "UPDATE TX0004 SET ITEMRATE1 = 9.975, ITEMRATE2 = 4.5 WHERE AUTHORITY = 'FED';"
                   "INSERT INTO IC0750 VALUES ('ITEM', 'EA', 1); INSERT INTO IC0380 (HYHEN) VALUES (0)");
    }

private:
    static std::string more(const std::string& transferred, const std::string& weight)
    {
        return "deQtyTransfer = " + transferred + ", deWeight = " + weight;
    }
};

std::vector<std::string> split(const std::string& text, char mark)
{
    std::vector<std::string> parts;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, mark);) {
        if (!part.empty()) parts.push_back(part);
    }
    return parts;
}

struct Figures {
    const char* currency;
    const char* lines;
    const char* totals;
};

const std::vector<const char*> kLineFields{"Detail Line",
                                           "Detail Quantity",
                                           "Detail Available",
                                           "Detail Back Order",
                                           "Detail Unit Price",
                                           "Detail Original Base Price",
                                           "Detail Quote Base Price",
                                           "Detail Amount",
                                           "Detail Discount",
                                           "Detail Discounted Amt",
                                           "Detail Discount Percent",
                                           "Detail Item Cost",
                                           "Detail Profit",
                                           "Detail Margin"};
const std::vector<const char*> kTotalFields{
    "Quote SubTotal", "Quote Discount", "Quote Discount Percent", "Quote Net Total", "Quote Tax Total", "Quote Total",
    "Quote Cost",     "Quote Profit",   "Quote Margin",           "Quote Weight",    "Tax Amount1",     "Tax Amount2"};

// "-" stands for a field that is not written. A line without a price list keeps the factor of the line before: 1 of an
// own item among the rows, 5 of the last accounting item among the totals.
const Figures kFigures[] = {
    {"CAD", R"(
1|2.5|1.25|1.25|80.00|38.14|33.34|200.01|-3.34|196.68|1.67%|12.35|20.99|62.97 %
2|3|4|0|93.30|6.54|7.78|279.90|-0.01|279.90|0.00%|9.00|-1.23|-15.76 %
5|7|0|7|0.00|38.14|0.00|0.00|-1.00|-1.00|-|0.25|-0.25|0
6|12.5|34.5|0|87.65|38.14|87.65|1,095.68|-45.68|1,050.00|4.17%|50.50|37.15|42.39 %
7|1|0.5|0.5|0.50|6.54|0.50|0.50|0.00|0.50|0.00%|0.10|0.40|79.84 %
8|4|0|4|63.38|-|21.13|253.50|-0.13|253.38|0.05%|8.00|13.13|62.13 %
9|2|0|2|11.11|0.00|5.56|22.22|0.00|22.22|0.00%|3.33|2.22|39.99 %
10|-|-|-|-|-|-|12.35|-|-|-|-|-|-)",
     "1,639.14|-50.16|3.06%|1,588.98|33.61|1,622.59|729.63|892.96|55.49 "
     "%|80.0280990600586|6.71000051498413|26.9000015258789"},
    {"BHD", R"(
1|2.5|1.25|1.25|80.004|38.142|33.335|200.010|-3.335|196.675|1.67%|12.346|20.989|62.97 %
2|3|4|0|93.300|6.543|7.775|279.900|-0.005|279.895|0.00%|9.000|-1.225|-15.76 %
5|7|0|7|0.000|38.142|0.000|0.000|-1.000|-1.000|-|0.250|-0.250|0
6|12.5|34.5|0|87.654|38.142|87.654|1,095.679|-45.679|1,050.001|4.17%|50.500|37.154|42.39 %
7|1|0.5|0.5|0.496|6.543|0.496|0.496|0.000|0.496|0.00%|0.100|0.396|79.84 %
8|4|0|4|63.375|-|21.125|253.500|-0.125|253.375|0.05%|8.000|13.125|62.13 %
9|2|0|2|11.110|0.000|5.555|22.220|0.000|22.220|0.00%|3.333|2.222|39.99 %
10|-|-|-|-|-|-|12.345|-|-|-|-|-|-)",
     "1,639.135|-50.144|3.06%|1,588.991|33.615|1,622.606|729.631|892.975|55.49 "
     "%|80.0280990600586|6.70900011062622|26.9059982299805"},
    {"JPY", R"(
1|2.5|1.25|1.25|80|38|33|200|3-|196|1.67%|12|20|62.97 %
2|3|4|0|93|6|7|279|0-|279|0.00%|9|1-|-15.76 %
5|7|0|7|0|38|0|0|1-|1-|-|0|0-|0
6|12.5|34.5|0|87|38|87|1,095|45-|1,050|4.17%|50|37|42.39 %
7|1|0.5|0.5|0|6|0|0|0|0|0.00%|0|0|79.84 %
8|4|0|4|63|-|21|253|0-|253|0.05%|8|13|62.13 %
9|2|0|2|11|0|5|22|0|22|0.00%|3|2|39.99 %
10|-|-|-|-|-|-|12|-|-|-|-|-|-)",
     "1,640|50-|3.05%|1,590|35|1,625|730|895|55.51 %|80.0280990600586|7|28"},
};

TEST(DocumentFigures, AreThoseOfTheRulesInEveryField)
{
    for (const auto& figures : kFigures) {
        for (const auto engine : {eDBSQLServer, eDBPervasive}) {
            FiguresCompany company(engine, figures.currency);
            const auto& rows = company.print();
            size_t at = 0;
            for (const auto& line : split(figures.lines, '\n')) {
                if (at == 2) ++at;  // the comment
                ASSERT_LT(at, rows.size());
                const auto texts = split(line, '|');
                for (size_t n = 0; n < kLineFields.size(); ++n) {
                    EXPECT_EQ(shown(rows[at], kLineFields[n]), texts[n] == "-" ? "<null>" : texts[n])
                        << figures.currency << ", line " << texts[0] << ": " << kLineFields[n];
                }
                ++at;
            }
            EXPECT_EQ(at, rows.size());
            const auto totals = split(figures.totals, '|');
            for (size_t n = 0; n < kTotalFields.size(); ++n) {
                EXPECT_EQ(shown(rows.back(), kTotalFields[n]), totals[n])
                    << figures.currency << ": " << kTotalFields[n];
            }
            EXPECT_TRUE(company.boxes().empty()) << company.box_text(0);
        }
    }
}

TEST(DocumentFigures, StandBesideTheTextsOfTheirLine)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        FiguresCompany company(engine, "CAD");
        company.accounting(
            "INSERT INTO IC0390 VALUES ('STD', 'Standard'); INSERT INTO IC0370 VALUES ('1', 'Main');"
            "INSERT INTO IC0210 VALUES ('A1', 'Pumps');"
            "INSERT INTO OE0440 (CURRENCY, MISCCHARGE, DESC, MISCACCT, MISCACDESC) VALUES ('CAD', 'FRT', 'x', '4700', "
            "'Freight income')");
        company.product(
            "UPDATE Details SET deLocation = ' 1 ', deCategory = ' A1 ', deLeadTime = ' 2 weeks ', deHasItemCom = 1, "
            "deShipDate = '2026-04-05' WHERE Line = 1; INSERT INTO CommIns VALUES (1, 1, 2, ' Wrap it ')");
        const auto& rows = company.print();
        using Expected = std::vector<std::pair<const char*, const char*>>;
        const auto expect = [&](size_t row, const Expected& expected) {
            for (const auto& [field, text] : expected)
                EXPECT_EQ(shown(rows.at(row), field), text) << row << ": " << field;
        };
        expect(0, {{"Detail Type", "Item"},
                   {"Detail Item Type", "Sage Accpac"},
                   {"Detail Item Number", "IT-EM"},
                   {"Detail Desc", "A thing"},
                   {"Detail Quote UofM", "EA"},
                   {"Detail Pricing UofM", "KG"},
                   {"Detail Shipping Date", "2026-04-05"},
                   {"Detail Price List", "STD"},
                   {"Detail Price List Desc", "Standard"},
                   {"Detail Location", "1"},
                   {"Detail Location Desc", "Main"},
                   {"Detail Category", "A1"},
                   {"Detail Category Desc", "Pumps"},
                   {"Detail GL Account", "<null>"},
                   {"Detail GL Acct Description", "<null>"},
                   {"Detail Weight", "0.375"},
                   {"Detail Lead Time", "2 weeks"},
                   {"Detail Item Comm/Ins", "Wrap it"}});
        expect(1, {{"Detail Item Type", "Velora"}, {"Detail Item Number", ""}, {"Detail Pricing UofM", "PC"}});
        expect(2, {{"Detail Type", "Comment"}, {"Detail Desc", "A remark"}, {"Detail Line", "3"}});
        for (const auto& [field, value] : rows.at(2)) {
            const bool is_detail = field.starts_with("Detail ") && field != "Detail Lines";
            if (is_detail && field != "Detail Type" && field != "Detail Desc" && field != "Detail Line") {
                EXPECT_TRUE(value.is_null()) << "a comment has no " << field;
            }
        }
        expect(6,
               {{"Detail Price List", "<null>"}, {"Detail Price List Desc", "<null>"}, {"Detail Pricing UofM", "PC"}});
        expect(7, {{"Detail Pricing UofM", "EA"}});
        expect(8, {{"Detail Type", "Charge"},
                   {"Detail Item Type", "<null>"},
                   {"Detail Item Number", "FRT"},
                   {"Detail Desc", "Freight"},
                   {"Detail GL Account", "4700"},
                   {"Detail GL Acct Description", "Freight income"},
                   {"Detail Weight", "<null>"},
                   {"Detail Price List", "<null>"}});
        EXPECT_TRUE(company.boxes().empty()) << company.box_text(0);
    }
}

}  // namespace
}  // namespace velora
