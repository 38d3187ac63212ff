#include "reports/report_lists.h"

#include <filesystem>
#include <fstream>

#include "session/settings.h"
#include "support/test_company.h"

namespace velora {
namespace {

namespace fs = std::filesystem;
using test::TestCompany;
using ::testing::ElementsAre;

/// A company in an application folder of its own.
class ReportLists : public ::testing::Test {
protected:
    ReportLists() : place_(make_folder("here"))
    {
        state().ports.application_folder = place_.string();
        state().gReportSection = "TESTCO_Report";
    }
    ~ReportLists() override { fs::remove_all(root()); }

    SessionState& state() { return company_.state(); }

    static fs::path root() { return fs::path(VELORA_TEST_SCRATCH) / "report-lists"; }

    /// An application folder with the definition Quote.rpt.
    static fs::path make_folder(const std::string& name)
    {
        const fs::path folder = root() / name;
        fs::create_directories(folder / "Reports");
        std::ofstream(folder / "velora.ini") << "[Host]\n";
        std::ofstream(folder / "Reports" / "Quote.rpt") << name;
        return folder;
    }

    [[nodiscard]] std::string here(const std::string& file) const { return (place_ / "Reports" / file).string(); }

    void write_list(const std::vector<ReportListEntry>& entries, WhichReport kind = eRptCustom)
    {
        state().gWhichReport = kind;
        state().gReportList = entries;
        Write_ReportList(state());
    }

    std::vector<std::string> locations()
    {
        Read_ReportList(state());
        std::vector<std::string> found;
        for (const auto& entry : state().gReportList) found.push_back(entry.Location);
        return found;
    }

    TestCompany company_;
    fs::path place_;
};

TEST_F(ReportLists, AreMadeOnFirstUseUnderTheNameOfTheirKind)
{
    struct Case {
        WhichReport kind;
        const char* file;
        std::vector<int> types;
    };
    for (const auto& c : {
             Case{eRptQuote, "TESTCO_QuoteReports.ini", {1, 1}},
             Case{eRptOverviewQuotes, "TESTCO_OverviewReports.ini", {2}},
             Case{eRptCustomerList, "TESTCO_CustomerListReports.ini", {3}},
             Case{eRptItemList, "TESTCO_ItemListReports.ini", {4}},
             Case{eRptWinLossGraph, "TESTCO_WinLossReports.ini", {5}},
             Case{eRptLostReasonGraph, "TESTCO_LostReasonReports.ini", {6}},
             Case{eRptOrderChecklist, "TESTCO_OrderReports.ini", {7, 8, 9}},
             Case{eRptPickingSlip, "TESTCO_OrderReports.ini", {7, 8, 9}},
             Case{eRptOrderConfirmation, "TESTCO_OrderReports.ini", {7, 8, 9}},
             Case{eRptAllOrderMenu, "TESTCO_OrderReports.ini", {7, 8, 9}},
             Case{eRptExpireQuotes, "TESTCO_ExpirationReports.ini", {10}},
             Case{eRptBackOrder, "TESTCO_BackOrderReports.ini", {11}},
             Case{eRptAllOrder, "TESTCO_CustomReports.ini", {}},
             Case{eRptCustom, "TESTCO_CustomReports.ini", {}},
         }) {
        EXPECT_EQ(INIFile(state(), c.kind), here(c.file));
        state().gWhichReport = c.kind;
        Read_ReportList(state());
        std::vector<int> types;
        for (const auto& entry : state().gReportList) types.push_back(entry.Type);
        EXPECT_EQ(types, c.types) << c.file;
        for (const auto& entry : state().gReportList) EXPECT_EQ(entry.Location, here(entry.Name + ".rpt"));
        company_.profiles.files.clear();
    }
}

TEST_F(ReportLists, ShowAsManyAsTheNumberSaysAndAreThere)
{
    write_list({{"A", "/a.rpt", 22}, {"B", "/b.rpt", 22}, {"C", "/c.rpt", 22}});
    Write_ProfileString(state(), "Reports", "Number", "2");
    EXPECT_THAT(locations(), ElementsAre("/a.rpt", "/b.rpt"));
    Write_ProfileString(state(), "Reports", "Number", "2147483647");
    EXPECT_THAT(locations(), ElementsAre("/a.rpt", "/b.rpt", "/c.rpt")) << "it ends where the sections end";
    write_list({});
    EXPECT_EQ(Read_ProfileString(state(), "Reports", "Number"), "0");
    EXPECT_EQ(Read_ProfileString(state(), "Report #3", "Name"), "C") << "sections past the end stay";
    for (const char* number : {"", "-3", "many"}) {
        Write_ProfileString(state(), "Reports", "Number", number);
        EXPECT_TRUE(locations().empty()) << number;
    }
}

TEST_F(ReportLists, ATypeBeyondSixteenBitsIsAFault)
{
    write_list({{"A", "/a.rpt", 22}});
    Write_ProfileString(state(), "Report #1", "Type", "65537");
    try {
        Read_ReportList(state());
        ADD_FAILURE() << "no fault";
    } catch (const Fault& caught) {
        EXPECT_EQ(caught.number(), fault::kOverflow);
        EXPECT_EQ(caught.where(), "Report #1");
    }
}

TEST_F(ReportLists, ALocationIsFoundInTheFolderAtHand)
{
    const fs::path original = make_folder("original");
    const fs::path shared = root() / "shared" / "Reports";  // of no application
    fs::create_directories(shared);
    std::ofstream(shared / "Quote.rpt") << "shared";
    struct Case {
        const char* why;
        std::string location, expected;
    };
    for (const auto& c : {
             Case{"relative", "Quote.rpt", here("Quote.rpt")},
             Case{"relative, deeper", "own/Mine.rpt", here("own/Mine.rpt")},
             Case{"its own", here("Quote.rpt"), here("Quote.rpt")},
             Case{"a copy of another folder", (original / "Reports/Quote.rpt").string(), here("Quote.rpt")},
             Case{"moved here", "/long/gone/Reports/Quote.rpt", here("Quote.rpt")},
             Case{"moved, and not here", "/long/gone/Reports/Mine.rpt", "/long/gone/Reports/Mine.rpt"},
             Case{"the other folder's alone", (original / "Reports/Mine.rpt").string(),
                  (original / "Reports/Mine.rpt").string()},
             Case{"shared by several", (shared / "Quote.rpt").string(), (shared / "Quote.rpt").string()},
             Case{"somewhere else", "/srv/Quote.rpt", "/srv/Quote.rpt"},
             Case{"nothing", "", ""},
         }) {
        EXPECT_EQ(definition_path(state(), c.location), c.expected) << c.why;
    }
}

TEST_F(ReportLists, TheDefaultIsThatOfTheSettingsElseTheFirstOfTheList)
{
    const auto set = [&](const char* key, const char* value) {
        company_.settings.set("Morvane\\Velora", "TESTCO_Report", key, value);
    };
    const auto of = [&](const char* kind) { return default_definition(state(), *find_report_kind(kind)); };
    EXPECT_EQ(of("quote"), here("Quote.rpt"));
    EXPECT_EQ(of("confirmation"), here("Confirmation, Taxes.rpt")) << "the first of its type in the list of three";
    EXPECT_EQ(of("custom"), "");
    set("Datapipe", "/srv/list.rpt");
    set("Custom", "/srv/own.rpt");
    set("Expiration", "Mine.rpt");
    set("Confirmation", "");
    EXPECT_EQ(of("quote"), here("Quote.rpt")) << "neither is switched on";
    EXPECT_EQ(of("expiration"), here("Mine.rpt"));
    EXPECT_EQ(of("confirmation"), here("Confirmation, Taxes.rpt"));
    set("Quote2", "True");
    EXPECT_EQ(of("quote"), "/srv/own.rpt");
    set("Quote1", "true");
    EXPECT_EQ(of("quote"), "/srv/list.rpt");
}

TEST_F(ReportLists, ADefinitionIsFoundByItsNameAmongItsKind)
{
    const auto& slip = *find_report_kind("picking-slip");
    EXPECT_EQ(listed_definition(state(), slip, " picking SLIP"), here("Picking Slip.rpt"));
    EXPECT_EQ(listed_definition(state(), slip, "Order Checklist"), "") << "of another kind in the same file";
    EXPECT_EQ(listed_definition(state(), slip, ""), "");
}

}  // namespace
}  // namespace velora
