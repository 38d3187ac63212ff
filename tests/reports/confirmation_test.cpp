#include "reports/confirmation.h"

#include "reports/order_company.h"

namespace velora {
namespace {

using test::expect_listed;
using test::listed;
using test::OrderCompany;
using test::shown;

class ConfirmedOrder : public OrderCompany {
public:
    explicit ConfirmedOrder(WhichEngine engine_in_use = eDBSQLServer) : OrderCompany(engine_in_use)
    {
        product("UPDATE Quote SET quPrConfirm = 0; UPDATE Defaults SET mdOCPrintName = ' Dock '");
    }
    RunEnd print(bool preview = false, bool export_it = true)
    {
        return Print_Confirmation(loaded(), 1, "confirmation.rpt", preview, export_it);
    }
};

TEST(Confirmation, ShowsEveryFieldInBothDialects)
{
    const std::string item = "deDType = 20, deUofM = ' EA ', deLeadTime = ' a week ', deWeight = 0.5, ";
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        ConfirmedOrder order(engine);
        order
            .line(item +
                  "Line = 1, APItem = 'ITEM', deIType = 30, deQuantity = 2.5, deQtyTransfer = 1.25, deQuotedPrice = "
                  "33.335, deDiscount = 3.335, deConvFactor = 12, dePriceList = 'STD', deDesc = '" +
                  std::string(99, 'd') + "efg'")
            .line("Line = 2, deDType = 10, deComment = ' A remark '")
            .line(item +
                  "Line = 4, APItem = ' OWN ', ItemID = 9, deIType = 10, deQuantity = 3, deQtyTransfer = 4, "
                  "deQuotedPrice = 7.775, deDiscount = 0.005, deConvFactor = 12, dePriceList = 'STD', deDesc = ' Own '")
            .line(item +
                  "Line = 5, APItem = 'OWN', ItemID = 0, deIType = 10, deQuantity = 7, deQtyTransfer = 0, "
                  "deQuotedPrice = 0, deDiscount = 0, deConvFactor = 1, dePriceList = 'STD', deDesc = 'Free'")
            .product(
                "INSERT INTO DMiscCharge VALUES (1, 1, 1, ' FRT ', ' Freight ', 12.345, '1', '1', '', '', '', "
                "'0', '0', '', '', ''); INSERT INTO IPricing VALUES (1, 9, 'CAD', 'STD', 6.54321); INSERT INTO Items "
                "(ItemID, itStockUnit) VALUES (9, ' PC ')")
            .accounting(
                "INSERT INTO IC0480 (CURRENCY, ITEMNO, PRICELIST, PRICETYPE, PRICEBASE, PRICEFMT, BASEPRICE, "
                "PRCNTLVL3, BASEUNIT, BASECONV) VALUES ('CAD', 'ITEM', 'STD', 1, 1, 1, 41.23456, 7.5, ' KG ', 5)");
        ASSERT_EQ(order.print(), RunEnd::Delivered) << order.box_text(0);
        EXPECT_TRUE(order.boxes().empty()) << order.box_text(0);
        expect_listed(listed(confirmation_fields(), order.engine.report->rows), "confirmation.txt");
        EXPECT_EQ(order.engine.report->printer, "drv|Dock 1|P2");
        EXPECT_THAT(order.state().gExportFile, testing::EndsWith("/2 QuoteNumber - Order Confirmation.pdf"));
    }
}

TEST(Confirmation, MarksTheQuoteOnceItWentOutAndSaysSoTheNextTime)
{
    struct Case {
        const char* why;
        bool preview, exported;
        const char* more;
        RunEnd end;
        const char* marked;
        std::function<void(ConfirmedOrder&)> before = [](ConfirmedOrder&) {};
    };
    const std::string line =
        "Line = 1, deDType = 20, deIType = 10, APItem = 'X', deQuantity = 1, deConvFactor = 1, dePriceList = 'STD', ";
    const char* plain = "deQuotedPrice = 1, deDiscount = 0";
    for (const auto& c : std::vector<Case>{
             {"paper", false, false, plain, RunEnd::Delivered, "1"},
             {"a window", true, false, plain, RunEnd::Delivered, "1"},
             {"a file", false, true, plain, RunEnd::Delivered, "1"},
             {"nothing by nothing leaves the percent empty", false, true, "deQuotedPrice = 0, deDiscount = 0",
              RunEnd::Delivered, "1"},
             {"a discount on a free line ends the run", false, true, "deQuotedPrice = 0, deDiscount = 0.5",
              RunEnd::Failed, "0"},
             {"so does one on lines that sum up to nothing", false, true,
              "ItemID = 9, deQuotedPrice = 1, deDiscount = 0.5", RunEnd::Failed, "0",
              [](auto& order) {
                  order.line(
                      "Line = 2, deDType = 20, deIType = 10, APItem = 'X', deQuantity = 1, deConvFactor = 1, "
                      "dePriceList = 'STD', ItemID = 9, deQuotedPrice = -1, deDiscount = 0");
              }},
             {"a database that refuses the mark", false, true, plain, RunEnd::Delivered, "0",
              [](auto& order) {
                  order.product(
                      "CREATE TRIGGER shut BEFORE UPDATE OF quPrConfirm ON Quote BEGIN SELECT RAISE(ABORT, 'No.'); "
                      "END");
              }},
             {"a host that only looks", false, true, plain, RunEnd::Delivered, "0",
              [](auto& order) { order.state().ports.marks_as_printed = false; }},
             {"a file that cannot be written", false, true, plain, RunEnd::Failed, "0",
              [](auto& order) { order.engine.report->refuses = fault::of(fault::kPathAccess); }},
             {"no such printer", false, false, plain, RunEnd::Failed, "0",
              [](auto& order) { order.product("UPDATE Defaults SET mdOCPrintName = 'Attic'"); }},
             {"no line", false, true, "QuoteID = 2", RunEnd::Failed, "0"},
         }) {
        for (const auto engine : {eDBSQLServer, eDBPervasive}) {
            ConfirmedOrder order(engine);
            order.product("INSERT INTO Quote (QuoteID, quPrConfirm) VALUES (2, 0)");
            order.line(line + c.more);
            c.before(order);
            EXPECT_EQ(order.print(c.preview, c.exported), c.end) << c.why << order.box_text(0);
            EXPECT_EQ(order.stored("quPrConfirm"), c.marked) << c.why;
            if (c.end != RunEnd::Delivered) continue;
            EXPECT_EQ(shown(order.engine.report->rows.at(0), "Reprint"), "0") << c.why;
            EXPECT_EQ(
                to_text(
                    order.connection()->Execute("SELECT quPrConfirm FROM Quote WHERE QuoteID = 2")->value(size_t{0})),
                "0")
                << c.why << ": another quote";
            order.print();
            EXPECT_EQ(shown(order.engine.report->rows.at(0), "Reprint"), c.marked) << c.why;
        }
    }
}

TEST(Confirmation, OfAnUnknownQuoteIsToldInItsOwnWords)
{
    ConfirmedOrder order;
    EXPECT_EQ(Print_Confirmation(order.loaded(), 99, "confirmation.rpt", false, true), RunEnd::NotFound);
    ASSERT_EQ(order.boxes().size(), 1U);
    EXPECT_EQ(order.boxes()[0].title, "Quote Report Cancelled");
    EXPECT_EQ(order.boxes()[0].text,
              "The selected Quote Information Could not be found.\r\nThe report will be cancelled.");
    EXPECT_EQ(order.boxes()[0].icon, Icon::Exclamation);
}

}  // namespace
}  // namespace velora
