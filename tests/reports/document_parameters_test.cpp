#include "reports/document_parameters.h"

#include "reports/checklist.h"
#include "reports/confirmation.h"
#include "reports/order_company.h"
#include "reports/picking_slip.h"

namespace velora {
namespace {

using test::Line;
using test::OrderCompany;
using test::QuoteCompany;
using ::testing::IsEmpty;

/// Prints quote 1 and gives what the report was told beside its table.
std::map<std::string, Value> parameters_of(QuoteCompany& company)
{
    company.print();
    return company.engine.report->parameters;
}

TEST(DocumentParameters, TellHowAmountsOfTheCurrencyAreWritten)
{
    struct Case {
        const char *why, *thousands, *decimal;
        int decimals, negative;
        const char *pattern, *marks;
    };
    for (const Case& c : {
             Case{"dollars", "','", "'.'", 2, 2, "#,##0.00", "en@marks=.|,"},
             Case{"yen", "','", "'.'", 0, 2, "#,##0", "en@marks=.|,"},
             Case{"three places, in brackets", "'.'", "','", 3, 3, "#,##0.000;(#,##0.000)", "en@marks=,|."},
             Case{"the sign behind, no mark of thousands", "' '", "','", 2, 1, "#,##0.00;#,##0.00-", "en@marks=,|"},
             Case{"more places than amounts have", "','", "'.'", 9, 0, "#,##0.00000", "en@marks=.|,"},
         }) {
        QuoteCompany company;
        company.add({});
        company.accounting("UPDATE CurrencyInfo SET ThousandSeparator = " + std::string(c.thousands) +
                           ", DecimalSeparator = " + c.decimal + ", Decimals = " + std::to_string(c.decimals) +
                           ", NegativeDisplay = " + std::to_string(c.negative) + " WHERE Code = 'CAD'");
        const auto told = parameters_of(company);
        ASSERT_TRUE(told.contains("Amount Pattern")) << c.why;
        EXPECT_EQ(told.at("Amount Pattern"), Value(c.pattern)) << c.why;
        EXPECT_EQ(told.at("Amount Marks"), Value(c.marks)) << c.why;
        EXPECT_EQ(told.at("Document Number"), Value("Q/1")) << c.why;
    }
}

TEST(DocumentParameters, NameTheTaxesThatAreInAPrice)
{
    QuoteCompany company;
    Line plain;
    Line included;
    included.number = 2;
    included.included[1] = "' 1 '";
    company.add(plain);
    EXPECT_FALSE(parameters_of(company).contains("Included Taxes"));
    company.add(included);
    EXPECT_EQ(parameters_of(company).at("Included Taxes"), Value("PROV"));
    included.number = 3;
    included.included[0] = "'1'";
    company.add(included);
    EXPECT_EQ(parameters_of(company).at("Included Taxes"), Value("FED, PROV"));
}

TEST(DocumentParameters, AnUnknownCurrencyLeavesThemOutWithANoteAndNoBox)
{
    QuoteCompany company;
    auto& state = company.state();
    state.gCrReport = company.engine.report;
    const size_t errors = state.gSess->Errors().size();
    set_document_parameters(state, "7", "XXQ", {});
    EXPECT_FALSE(company.engine.report->parameters.contains("Amount Pattern"));
    EXPECT_EQ(company.engine.report->parameters.at("Document Number"), Value("7"));
    EXPECT_EQ(state.gSess->Errors().size(), errors) << "no later box tells of it";
    EXPECT_THAT(company.boxes(), IsEmpty());
    EXPECT_THAT(state.log.notes(), ::testing::ElementsAre(::testing::HasSubstr("the currency \"XXQ\" could not")));
    state.gCrReport.reset();
    set_document_parameters(state, "7", "CAD", {});
}

TEST(DocumentParameters, AreToldByEveryDocumentOfAnOrder)
{
    OrderCompany order(eDBSQLServer);
    order.product(
        "UPDATE Quote SET quSourceCurr = 'CAD'; UPDATE Defaults SET mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0");
    order.line(
        "Line = 1, deDType = 20, APItem = 'ITEM', deIType = 30, deQuantity = 2, deQuotedPrice = 5, deConvFactor = 1, "
        "dePriceList = 'STD', deUofM = 'EA', deTaxIncl1 = '1'");
    auto& state = order.loaded();
    const auto told = [&] { return order.engine.report->parameters; };
    Print_Checklist(state, 1, "checklist.rpt", false, true);
    EXPECT_EQ(told()["Document Number"], Value("2 QuoteNumber"));
    Print_PickingSlip(state, 1, "slip.rpt", false, true, false);
    EXPECT_EQ(told()["Document Number"], Value("2 QuoteNumber"));
    EXPECT_FALSE(told().contains("Amount Pattern")) << "a slip shows no amounts";
    Print_Confirmation(state, 1, "confirmation.rpt", false, true);
    EXPECT_EQ(told()["Document Number"], Value("2 QuoteNumber"));
    EXPECT_EQ(told()["Amount Pattern"], Value("#,##0.00"));
    EXPECT_THAT(order.boxes(), IsEmpty()) << order.box_text(0);
}

}  // namespace
}  // namespace velora
