#include "reports/picking_slip.h"

#include "reports/order_company.h"

namespace velora {
namespace {

using test::expect_listed;
using test::FakeReport;
using test::listed;
using test::OrderCompany;
using test::shown;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;

/// Hands out a report of its own for each slip.
class SlipEngine final : public ReportEngine {
public:
    std::shared_ptr<OpenedReport> OpenReport(const std::string&) override
    {
        auto& report = reports.emplace_back(std::make_shared<FakeReport>());
        if (reports.size() == refused) report->refuses = Fault(fault::kPathAccess, "disk");
        return report;
    }

    std::vector<std::shared_ptr<FakeReport>> reports;
    size_t refused = 0;  ///< the slip that does not go out, from 1; 0 for none
};

enum class Route : uint8_t { Paper, Window, File };

class SlipCompany : public OrderCompany {
public:
    explicit SlipCompany(WhichEngine engine_in_use) : OrderCompany(engine_in_use) {}
    SlipCompany(WhichEngine engine_in_use, const std::string& defaults, const std::string& ranges = "")
        : OrderCompany(engine_in_use)
    {
        set_up(defaults, ranges);
    }

    /// The order as nobody printed it yet, without lines, in a company that splits as it is told here.
    SlipCompany& set_up(const std::string& defaults, const std::string& ranges = "")
    {
        user.boxes.clear();
        product(
            "DELETE FROM Details; DELETE FROM DLocRange; UPDATE Quote SET quPrPickSlip = 0, quACCPACNum = ' ', "
            "quSourceCurr = 'CAD'; UPDATE Defaults SET mdPSPrintName = 'Office', " +
            defaults);
        if (!ranges.empty()) {
            product("INSERT INTO DLocRange (DLRID, RType, RName, RStart, REnd, RPrinter) VALUES " + ranges);
        }
        return *this;
    }

    /// Five lines: items at two locations, one without a date; a remark; and one that is not to be picked.
    SlipCompany& usual_lines()
    {
        const std::string item = "deDType = 20, APItem = 'ITEM', deQuantity = 1, deQuotedPrice = 1, deConvFactor = 1, ";
        lines({
            item + "Line = 1, deDesc = '1', deLocation = 'WH', dePickingSeq = '10', deShipDate = '2026-03-15'",
            "Line = 2, deDType = 10, deLocation = 'XX', dePickingSeq = '5', deShipDate = '2026-01-01'",
            "Line = 3, deDType = 20, APItem = ' ZDEL1111 ', deLocation = 'ZZ', dePickingSeq = '99', deShipDate = "
            "'2026-03-15'",
            item + "Line = 4, deDesc = '4', deLocation = 'EA', dePickingSeq = '9', deShipDate = '2026-03-20'",
            item + "Line = 5, deDesc = '5', deLocation = 'WH', dePickingSeq = '20', deShipDate = NULL",
        });
        return *this;
    }

    RunEnd print(Route route, bool whole = false)
    {
        loaded().ports.engine = &slips;
        state().log.clear();
        slips.reports.clear();
        return Print_PickingSlip(state(), 1, "slip.rpt", route == Route::Window, route == Route::File, whole);
    }

    /// Each slip as its lines and its printer: "1 5 > Office; 4 > Office".
    std::string printed()
    {
        std::string text;
        for (const auto& report : slips.reports) {
            std::string one;
            for (const auto& row : report->rows) one += shown(row, "Detail Desc") + " ";
            const auto& printer = report->printer;
            if (!printer.empty()) one += "> " + printer.substr(4, printer.rfind('|') - 4);
            text += (text.empty() ? "" : "; ") + std::string(trimmed(one));
        }
        return text;
    }
    const FakeReport::Row& row(size_t slip, size_t at = 0) { return slips.reports.at(slip)->rows.at(at); }

    SlipEngine slips;
};

constexpr const char* kRanges =
    "(2, 0, ' West ', ' EA ', 'EA', ' Dock 1 '), (3, 0, 'All', ' ', 'ZZ', 'Dock 2'), "
    "(4, 1, 'Low', ' ', '15', 'Dock 2'), (1, 1, 'High', '15', '99', 'Dock 1')";
constexpr const char* kOneRange = "(1, 0, 'West', 'EA', 'EA', 'Dock 1'), (2, 1, 'Low', '0', '1', 'Dock 2')";

TEST(PickingSlip, SplitsAnOrderAsTheCompanyWants)
{
    struct Case {
        const char* why;
        const char* defaults;
        const char* ranges;
        Route route;
        RunEnd end;
        const char* slips;
        const char* more = "";
        const char* reason = "";  ///< what stands beside a box that says little
    };
    const auto cases = std::to_array<Case>({
        {"the whole order", "mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0", "", Route::Paper, RunEnd::Delivered,
         "1 4 5 > Office"},
        {"nothing chosen", "mdUseDLRange = NULL, mdPSSplit = 2, mdEachLoc = 0", "", Route::Paper, RunEnd::Delivered,
         "1 4 5 > Office"},
        {"another choice is none", "mdUseDLRange = 0, mdPSSplit = 3, mdEachLoc = 0", kRanges, Route::Paper,
         RunEnd::Delivered, "1 4 5 > Office"},
        {"by sequences in windows", "mdUseDLRange = 0, mdPSSplit = 1, mdEachLoc = 0", "", Route::Window,
         RunEnd::Delivered, "1; ; 4; 5"},
        {"by sequences no range names a printer", "mdUseDLRange = 0, mdPSSplit = 1, mdEachLoc = 0", "", Route::Paper,
         RunEnd::Failed, "", "", "names a range or its printer"},
        {"by picking ranges in their order", "mdUseDLRange = 0, mdPSSplit = 2, mdEachLoc = 1", kRanges, Route::Paper,
         RunEnd::Delivered, "4 5 > Dock 1; 1 > Dock 2"},
        {"by locations in the order of the lines", "mdUseDLRange = 1, mdPSSplit = 2, mdEachLoc = 0", kRanges,
         Route::Paper, RunEnd::Delivered, "1 5 > Office; > Office; 4 > Office"},
        {"no choice of the location is the location", "mdUseDLRange = 2, mdEachLoc = NULL", "", Route::Window,
         RunEnd::Delivered, "1 5; ; 4"},
        {"by location ranges", "mdUseDLRange = 1, mdEachLoc = 1", kRanges, Route::Paper, RunEnd::Delivered,
         "4 > Dock 1; 1 4 5 > Dock 2"},
        {"the only range leaves no line out", "mdUseDLRange = 1, mdEachLoc = 1", kOneRange, Route::Paper,
         RunEnd::Delivered, "1 4 5 > Dock 1"},
        {"by picking ranges of the other choice", "mdUseDLRange = 1, mdEachLoc = 2", kRanges, Route::Paper,
         RunEnd::Delivered, "4 5 > Dock 1; 1 > Dock 2"},
        {"by ship dates, where no date is none", "mdUseDLRange = 1, mdEachLoc = 3", "", Route::Paper, RunEnd::Delivered,
         "1 > Office; 4 > Office"},
        {"an unknown choice takes the picking ranges and all lines", "mdUseDLRange = 1, mdEachLoc = 7", kRanges,
         Route::Paper, RunEnd::Delivered, "1 4 5 > Dock 1; 1 4 5 > Dock 2"},
        {"a bound without a value drops the condition", "mdUseDLRange = 1, mdEachLoc = 1",
         "(1, 0, 'A', 'EA', NULL, ' '), (2, 0, 'B', 'EA', 'EA', NULL)", Route::Paper, RunEnd::Delivered, "1 4 5; 4"},
        {"ranges that are not there", "mdUseDLRange = 1, mdEachLoc = 1", "(1, 1, 'A', 'EA', 'EA', ' ')", Route::Paper,
         RunEnd::NotFound, ""},
        {"sequences that are not there", "mdUseDLRange = 0, mdPSSplit = 2", "(1, 0, 'A', 'EA', 'EA', ' ')",
         Route::Paper, RunEnd::NotFound, ""},
        {"lines are needed for their locations", "mdUseDLRange = 1, mdEachLoc = 0", "", Route::Window, RunEnd::Failed,
         "", "DELETE FROM Details", "has no lines"},
        {"an order in one piece needs none", "mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0", "", Route::Window,
         RunEnd::Delivered, "", "DELETE FROM Details"},
        {"nothing to name a file by", "mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0", "", Route::File, RunEnd::Failed,
         "> Office", "DELETE FROM Details", "named after the last"},
        {"a printer that is not there", "mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0", "", Route::File,
         RunEnd::Failed, "", "UPDATE Defaults SET mdPSPrintName = 'Attic'", "No printer of this machine"},
        {"a location with a quote", "mdUseDLRange = 1, mdEachLoc = 0", "", Route::Window, RunEnd::Delivered,
         "1; ; 4; 5", "UPDATE Details SET deLocation = 'O''N' WHERE Line = 5"},
        {"one location", "mdUseDLRange = 1, mdEachLoc = 0", "", Route::Window, RunEnd::Delivered, "1 4 5",
         "UPDATE Details SET deLocation = 'EA' WHERE Line <> 5; UPDATE Details SET deLocation = NULL WHERE Line = "
         "5"},
    });
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        SlipCompany order(engine);
        for (const auto& c : cases) {
            order.set_up(c.defaults, c.ranges).usual_lines().product(c.more);
            EXPECT_EQ(order.print(c.route), c.end) << c.why << ": " << order.box_text(0);
            EXPECT_EQ(order.printed(), c.slips) << c.why;
            EXPECT_EQ(order.stored("quPrPickSlip"), c.end == RunEnd::Delivered ? "1" : "0") << c.why;
            EXPECT_EQ(order.boxes().size(), c.end == RunEnd::Delivered ? 0U : 1U) << c.why << ": " << order.box_text(0);
            const auto& notes = order.state().log.notes();
            EXPECT_THAT(notes.empty() ? "" : notes.front(), testing::HasSubstr(c.reason)) << c.why;
        }
    }
}

TEST(PickingSlip, ShowsEveryFieldInBothDialects)
{
    const std::string item = "deDType = 20, deUofM = ' EA ', deLeadTime = ' a week ', ";
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        for (const bool whole : {false, true}) {
            SlipCompany order(engine, "mdUseDLRange = 0, mdPSSplit = 0, mdLocDetail = 1, mdEachLoc = " +
                                          std::string(whole ? "3" : "0"));
            order.product("UPDATE Quote SET quACCPACNum = ' ORD7 '");
            order
                .line(item +
                      "Line = 1, APItem = 'ITEM', deQuantity = 2.5, deQuotedPrice = 33.335, deConvFactor = 12, "
                      "deLocation = ' WH ', dePickingSeq = ' 10 ', deShipDate = '2026-03-15', deHasItemCom = 1, "
                      "deDesc = '" +
                      std::string(99, 'd') + "efg'")
                .line(item +
                      "Line = 4, APItem = ' ', deQuantity = 3.5, deQuotedPrice = 0.496, deConvFactor = 0.5, "
                      "deLocation = 'EA', deHasItemCom = 0, deDesc = NULL")
                .line(item +
                      "Line = 5, APItem = 'NONE', deQuantity = 40000, deQuotedPrice = 1, deConvFactor = 1, "
                      "deLocation = 'EA', dePickingSeq = 'a long sequence', deHasItemCom = 0")
                .product(
                    "UPDATE Quote SET quSourceCurr = 'JPY', quPrPickSlip = 1; INSERT INTO CommIns (QuoteID, Line, "
                    "CoInType, CommIns) VALUES (1, 1, 2, ' Handle with care '), (1, 4, 1, 'unseen')")
                .accounting(
                    "INSERT INTO IC0370 (LOCATION, [DESC]) VALUES ('WH', 'Warehouse');"
                    "INSERT INTO IC0290 (ITEMNO, LOCATION, AQTYONHAND, QTYSALORDR) VALUES ('ITEM', 'WH', 100, 7.5)");
            ASSERT_EQ(order.print(Route::File, whole), RunEnd::Delivered) << order.box_text(0);
            EXPECT_TRUE(order.boxes().empty()) << order.box_text(0);
            const auto fields = whole ? whole_quantity_slip_fields() : picking_slip_fields();
            expect_listed(listed(fields, order.slips.reports.at(0)->rows),
                          whole ? "picking_slip_whole.txt" : "picking_slip.txt");
            EXPECT_THAT(order.state().gExportFile, testing::EndsWith("/2 QuoteNumber - Picking Slip.pdf"));
        }
    }
}

TEST(PickingSlip, NamesItsRangeAndGoesByItWithoutAnOrderNumber)
{
    struct Case {
        const char* why;
        const char* defaults;
        std::vector<std::string> shown;  ///< range, description and order number of the first slips' first rows
    };
    const std::string number = "2 QuoteNumber - ";
    SlipCompany order(eDBSQLServer);
    for (const auto& c : std::initializer_list<Case>{
             {"locations", "mdUseDLRange = 1, mdEachLoc = 0", {"WH", number + "WH"}},
             {"ship dates", "mdUseDLRange = 1, mdEachLoc = 3", {"3/15/2026", number + "20260315"}},
             {"ranges of locations", "mdUseDLRange = 1, mdEachLoc = 1", {"West", number + "West"}},
             {"ranges of sequences", "mdUseDLRange = 0, mdPSSplit = 2, mdEachLoc = 2", {"High", number + "High"}},
             {"the range is named by another choice than the split",
              "mdUseDLRange = 0, mdPSSplit = 2, mdEachLoc = 0",
              {"EA", number + "EA"}},
             {"no choice names none", "mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = NULL", {"<null>", "<null>"}},
         }) {
        order.set_up(c.defaults, kRanges).usual_lines();
        ASSERT_EQ(order.print(Route::Window), RunEnd::Delivered) << c.why << order.box_text(0);
        EXPECT_EQ(shown(order.row(0), "Detail Range"), c.shown[0]) << c.why;
        EXPECT_EQ(shown(order.row(0), "Detail Range Desc"), c.shown[1]) << c.why;
        EXPECT_EQ(shown(order.row(0), "Accpac Order Number"), c.shown[1].substr(0, 30)) << c.why;
    }
    order.set_up("mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0").usual_lines().print(Route::Window);
    EXPECT_EQ(shown(order.row(0, 1), "Accpac Order Number"), number + "EA") << "each line goes by its own range";
    order.set_up("mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 1", kRanges).usual_lines();
    EXPECT_EQ(order.print(Route::Window), RunEnd::Failed) << "no range was loaded to name";
    order.set_up("mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 3").usual_lines().print(Route::Window);
    EXPECT_EQ(shown(order.row(0, 2), "Detail Range"), "") << "a line without a date";
    EXPECT_EQ(shown(order.row(0, 2), "Detail Range Desc"), "<null>");
    EXPECT_EQ(shown(order.row(0, 2), "Shipping Date"), "<null>");
    EXPECT_EQ(shown(order.row(0, 1), "Shipping Date"), "2026-03-20") << "of the line";
}

TEST(PickingSlip, IsMarkedWhenAllSlipsWentOutAndSaysSoTheNextTime)
{
    for (const auto route : {Route::Paper, Route::Window, Route::File}) {
        SlipCompany order(eDBPervasive, "mdUseDLRange = 1, mdEachLoc = 3");
        order.usual_lines();
        for (const char* before : {"0", "1"}) {
            ASSERT_EQ(order.print(route), RunEnd::Delivered) << order.box_text(0);
            EXPECT_EQ(shown(order.row(1), "Reprint"), before);
            EXPECT_EQ(order.stored("quPrPickSlip"), "1");
        }
    }
    SlipCompany broken(eDBSQLServer, "mdUseDLRange = 1, mdEachLoc = 1",
                       "(1, 0, 'A', 'EA', 'EA', 'Dock 1'), (2, 0, 'B', 'WH', 'WH', 'Attic')");
    EXPECT_EQ(broken.usual_lines().print(Route::Paper), RunEnd::Failed) << "the printer of the second is not there";
    EXPECT_EQ(broken.printed(), "4 > Dock 1; ");
    EXPECT_EQ(broken.stored("quPrPickSlip"), "0");
    EXPECT_THAT(broken.state().log.notes(), Contains(HasSubstr("Of the 2 slips of quote 2 QuoteNumber went out: 1.")));

    SlipCompany refused(eDBPervasive, "mdUseDLRange = 1, mdEachLoc = 3");
    refused.usual_lines().product(
        "CREATE TRIGGER shut BEFORE UPDATE OF quPrPickSlip ON Quote BEGIN SELECT RAISE(ABORT, 'No marks here.'); END");
    EXPECT_EQ(refused.print(Route::Paper), RunEnd::Delivered) << "the slips lie in the printer";
    ASSERT_EQ(refused.boxes().size(), 1U);
    EXPECT_THAT(refused.box_text(0), AllOf(HasSubstr("No marks here."), HasSubstr("modPrint.Print_PickingSlip")));
    EXPECT_THAT(refused.state().log.notes(), Contains(HasSubstr("is not marked")));
}

TEST(PickingSlip, OneThatDoesNotGoOutLeavesTheOrderUnmarkedAndAnEmptyOneDoesNot)
{
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        SlipCompany order(engine, "mdUseDLRange = 1, mdEachLoc = 3");
        for (const size_t refused : {1, 2}) {
            order.usual_lines().slips.refused = refused;
            EXPECT_EQ(order.print(Route::File), RunEnd::Failed);
            EXPECT_EQ(order.slips.reports.size(), 2U) << "the others go out";
            EXPECT_EQ(order.stored("quPrPickSlip"), "0") << refused;
            order.product("DELETE FROM Details");
        }
        order.slips.refused = 0;
        order.set_up("mdUseDLRange = 1, mdEachLoc = 0").state().ports.numbers_outputs = true;
        order.lines({"Line = 1, deDType = 20, APItem = 'ITEM', deDesc = '1', deLocation = 'WH'",
                     "Line = 2, deDType = 20, APItem = 'ZDEL1111', deLocation = 'ZZ'"});
        EXPECT_EQ(order.print(Route::File), RunEnd::Delivered) << order.box_text(0);
        EXPECT_EQ(order.printed(), "1 > Office; ");
        EXPECT_EQ(order.stored("quPrPickSlip"), "1");
        EXPECT_THAT(order.state().log.notes(), testing::ElementsAre(testing::HasSubstr("Slip 2 of 2")));
    }
}

TEST(PickingSlip, ANullLeavesItsFieldEmptyAndTheLineOnTheSlip)
{
    const std::string full =
        "deDType = 20, APItem = 'ITEM', deDesc = 'x', deQuantity = 2, deQuotedPrice = 3.5, deConvFactor = 2, "
        "deUofM = 'EA', deLocation = 'WH', dePickingSeq = '10', deLeadTime = 'a week', deShipDate = '2026-03-15'";
    const std::map<std::string, std::vector<std::string>> kFieldsOf{
        {"APItem", {"Detail Item Number", "Detail Quantity Available"}},
        {"deDesc", {"Detail Desc"}},
        {"deQuantity", {"Detail Quantity", "Detail Amount"}},
        {"deQuotedPrice", {"Detail Unit Price", "Detail Amount"}},
        {"deConvFactor", {"Detail Unit Price", "Detail Amount", "Detail Quantity Available"}},
        {"deUofM", {"Detail Quote UofM"}},
        {"deLocation",
         {"Detail Range", "Detail Range Desc", "Accpac Order Number", "Detail Location", "Detail Location Desc",
          "Detail Quantity Available"}},
        {"dePickingSeq", {"Detail Picking Sequence"}},
        {"deLeadTime", {"Detail Lead Time"}},
    };
    for (const auto engine : {eDBSQLServer, eDBPervasive}) {
        SlipCompany order(engine, "mdUseDLRange = 0, mdPSSplit = 0, mdEachLoc = 0");
        order.accounting(
            "INSERT INTO IC0370 (LOCATION, [DESC]) VALUES ('WH', 'Warehouse');"
            "INSERT INTO IC0290 (ITEMNO, LOCATION, AQTYONHAND, QTYSALORDR) VALUES ('ITEM', 'WH', 100, 7.5)");
        order.line("Line = 1, " + full);
        int line = 1;
        for (const auto& [column, fields] : kFieldsOf) {
            order.line("Line = " + std::to_string(++line) + ", " + full + ", " + column + " = NULL");
        }
        ASSERT_EQ(order.print(Route::Window), RunEnd::Delivered) << order.box_text(0);
        const auto& rows = order.slips.reports.at(0)->rows;
        ASSERT_EQ(rows.size(), kFieldsOf.size() + 1);
        size_t at = 0;
        for (const auto& [column, fields] : kFieldsOf) {
            const auto& row = rows[++at];
            for (const auto& [field, value] : rows[0]) {
                if (field == "Detail Range" || shown(rows[0], field) == "<null>") continue;
                const bool empty = std::ranges::count(fields, field) > 0;
                EXPECT_EQ(shown(row, field), empty ? "<null>" : shown(rows[0], field)) << column << ": " << field;
            }
        }
    }
}

TEST(PickingSlip, TellsWhatIsMissing)
{
    struct Case {
        int32_t quote;
        const char* says;
    };
    for (const auto& c : {Case{99, "The selected Quote information could not be found."},
                          Case{1, "The required Location or Picking Slip ranges could not be found."}}) {
        SlipCompany order(eDBSQLServer, "mdUseDLRange = 1, mdEachLoc = 2");
        EXPECT_EQ(Print_PickingSlip(order.loaded(), c.quote, "slip.rpt", false, true, false), RunEnd::NotFound);
        ASSERT_EQ(order.boxes().size(), 1U);
        EXPECT_EQ(order.boxes()[0].title, "Picking Slip Report Cancelled");
        EXPECT_EQ(order.boxes()[0].text, std::string(c.says) + "\r\nThe report will be cancelled.");
        EXPECT_EQ(order.boxes()[0].icon, Icon::Exclamation);
    }
}

}  // namespace
}  // namespace velora
