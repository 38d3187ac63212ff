#include "reports/checklist.h"

#include "reports/order_company.h"

namespace velora {
namespace {

using test::AddressSource;
using test::expect_listed;
using test::listed;
using test::OrderCompany;
using test::shown;

class ListedOrder : public OrderCompany {
public:
    ListedOrder(WhichEngine engine_in_use, const std::string& each, const std::string& ranges = "",
                AddressSource source = AddressSource::Saved)
        : OrderCompany(engine_in_use, source)
    {
        set_up(each, ranges);
    }

    /// The order without lines, in a company that lists it as it is told here.
    ListedOrder& set_up(const std::string& each, const std::string& ranges)
    {
        user.boxes.clear();
        product("DELETE FROM Details; DELETE FROM DLocRange; UPDATE Defaults SET mdPrintName = 'Office', mdEachLoc = " +
                each);
        if (!ranges.empty()) product("INSERT INTO DLocRange (DLRID, RType, RName, RStart, REnd) VALUES " + ranges);
        return *this;
    }

    /// Items at three locations, two of them at one, and a remark.
    ListedOrder& usual_lines()
    {
        lines({
            "Line = 1, deDType = 20, deLocation = ' B ', dePickingSeq = '10', deShipDate = '2026-03-15'",
            "Line = 2, deDType = 10, deLocation = 'X', dePickingSeq = '5', deShipDate = '2026-01-01'",
            "Line = 3, deDType = 20, deLocation = 'C', dePickingSeq = '9', deShipDate = '2026-03-20'",
            "Line = 4, deDType = 20, deLocation = 'C', dePickingSeq = '20', deShipDate = '2026-03-15'",
            "Line = 5, deDType = 20, deLocation = 'A', dePickingSeq = '9', deShipDate = NULL",
        });
        return *this;
    }

    RunEnd print(bool export_it = false)
    {
        engine.report->rows.clear();
        return Print_Checklist(loaded(), 1, "checklist.rpt", false, export_it);
    }

    /// Range and description of each row, in the order of their text.
    std::string parts()
    {
        std::vector<std::string> rows;
        for (const auto& row : engine.report->rows) {
            const std::string description = shown(row, "Detail Range Desc");
            rows.push_back(shown(row, "Detail Range") + " (" + description.substr(description.rfind(' ') + 1) + ")");
        }
        std::ranges::sort(rows);
        std::string text;
        for (const auto& row : rows) text += (text.empty() ? "" : ", ") + row;
        return text;
    }
};

constexpr const char* kRanges =
    "(1, 0, ' West ', 'C', 'D'), (2, 0, 'All', ' ', 'C'), (3, 1, 'Low', '0', '15'), (4, 1, 'High', '2', '99')";

TEST(Checklist, ShowsEveryFieldInBothDialects)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        for (const auto& [each, golden] : {std::pair{"0", "checklist.txt"}, {"1", "checklist_ranges.txt"}}) {
            ListedOrder order(engine, each, "(1, 0, ' West ', 'A', 'Z')");
            order.line("Line = 1, deDType = 20, deLocation = 'WH ', deShipDate = '2026-03-15'");
            ASSERT_EQ(order.print(true), RunEnd::Delivered) << order.box_text(0);
            EXPECT_TRUE(order.boxes().empty()) << order.box_text(0);
            expect_listed(listed(checklist_fields(), order.engine.report->rows), golden);
            EXPECT_EQ(order.engine.report->printer, "drv|Office|P1");
            EXPECT_THAT(order.state().gExportFile, testing::EndsWith("/2 QuoteNumber - Order Checklist.pdf"));
        }
    }
}

TEST(Checklist, ListsThePartsOfAnOrder)
{
    struct Case {
        const char* why;
        const char* each;
        const char* ranges;
        RunEnd end;
        const char* parts;
        const char* more = "";
    };
    const auto cases = std::to_array<Case>({
        {"locations, each once", "0", "", RunEnd::Delivered, "A (A), B (B), C (C)"},
        {"no choice is the location", "NULL", "", RunEnd::Delivered, "A (A), B (B), C (C)"},
        {"ship dates", "3", "", RunEnd::Delivered, "3/15/2026 (20260315), 3/20/2026 (20260320), <null> (<null>)"},
        {"the first range that fits, values as they stand", "1", kRanges, RunEnd::Delivered,
         "All (All), All (All), West (West)"},
        {"locations outside of all ranges", "1", "(1, 0, 'One', 'A', 'B'), (2, 0, 'Two', 'B', 'B')", RunEnd::Delivered,
         "One (One)"},
        {"both bounds belong to a range", "1", "(1, 0, 'One', 'A', 'A'), (2, 0, 'Two', 'B', 'C')", RunEnd::Delivered,
         "One (One), Two (Two)"},
        {"picking sequences", "2", kRanges, RunEnd::Delivered, "High (High), High (High), Low (Low)"},
        {"a bound without a value holds nothing", "2", "(1, 1, 'Low', NULL, '99')", RunEnd::Delivered, ""},
        {"no ranges of locations", "1", "(1, 1, 'Low', '0', '99')", RunEnd::Delivered, ""},
        {"no ranges of sequences leave no query", "2", "(1, 0, 'West', 'A', 'Z')", RunEnd::Failed, ""},
        {"an unknown choice has no ranges", "7", kRanges, RunEnd::Failed, ""},
        {"remarks alone", "0", "", RunEnd::Delivered, "", "UPDATE Details SET deDType = 10"},
        {"an order without a customer's place has no address", "0", "", RunEnd::Failed, "",
         "UPDATE Quote SET CustFrom = NULL"},
    });
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        ListedOrder order(engine, "0");
        for (const auto& c : cases) {
            order.set_up(c.each, c.ranges).usual_lines().product(c.more);
            EXPECT_EQ(order.print(), c.end) << c.why << ": " << order.box_text(0);
            EXPECT_EQ(order.parts(), c.parts) << c.why;
            EXPECT_EQ(order.boxes().size(), c.end == RunEnd::Delivered ? 0U : 1U) << c.why;
        }
    }
}

TEST(Checklist, WithoutRowsHasNothingToNameAFileBy)
{
    ListedOrder order(eDBSQLServer, "0");
    EXPECT_EQ(order.print(true), RunEnd::Failed);
    EXPECT_THAT(order.box_text(0), testing::HasSubstr("3021"));
}

TEST(Checklist, TakesAddressesAndNumberFromWhereTheCustomerLives)
{
    struct Case {
        const char* why;
        AddressSource source;
        const char* more;
        const char *bill_to, *ship_to, *number;
    };
    for (const auto& c :
         {Case{"saved", AddressSource::Saved, "", "BillTo.btName", "ShipTo.stName", "Quote.AccPacID"},
          Case{"the accounting customer", AddressSource::AccountingCustomer, "", "AR0024.NAMECUST", "AR0024.NAMECUST",
               "Quote.AccPacID"},
          Case{"his location", AddressSource::AccountingLocation, "", "AR0024.NAMECUST", "AR0023.NAMELOCN",
               "Quote.AccPacID"},
          Case{"an own customer", AddressSource::OwnCustomer, "", "Customer.cuFullName", "Customer.cuFullName",
               "Customer.CustomerNumber"},
          Case{"saved, whatever the customer's keys hold", AddressSource::Saved,
               "UPDATE Quote SET AccPacID = NULL, quShipToLoc = NULL, CustomerID = NULL", "BillTo.btName",
               "ShipTo.stName", nullptr},
          Case{"a bill-to of his own alone", AddressSource::OwnCustomer, "UPDATE Quote SET BillToID = 3",
               "BillTo.btName", "Customer.cuFullName", "Customer.CustomerNumber"}}) {
        ListedOrder order(eDBPervasive, "0", "", c.source);
        order.usual_lines().product(c.more);
        ASSERT_EQ(order.print(), RunEnd::Delivered) << c.why << order.box_text(0);
        const auto& row = order.engine.report->rows.at(1);
        EXPECT_EQ(shown(row, "BillTo Name"), order.marker(c.bill_to)) << c.why;
        EXPECT_EQ(shown(row, "ShipTo Name"), order.marker(c.ship_to)) << c.why;
        EXPECT_EQ(shown(row, "Customer Number"), c.number == nullptr ? "<null>" : order.marker(c.number)) << c.why;
    }
}

}  // namespace
}  // namespace velora
