#include "service/report.h"

#include "reports/quote_company.h"
#include "support/test_company.h"

namespace velora {
namespace {

using test::QuoteCompany;
using test::TestCompany;
using testing::ElementsAre;
using testing::HasSubstr;

class RecordingWindows final : public Windows {
public:
    void open_selection(SessionState& state) override { note(state, "selection"); }
    void open_options(SessionState& state, WhichFrame frame) override
    {
        note(state, "options " + std::to_string(static_cast<int>(frame)));
    }
    void open_emailer(SessionState& state) override { note(state, "emailer"); }

    std::vector<std::string> calls;  ///< each with the settings section that it found

private:
    void note(const SessionState& state, const std::string& window)
    {
        calls.push_back(window + " " + state.gReportSection);
    }
};

/// What an operation is called with, but for session, connection and engine.
struct Given {
    bool win_xp = false;
    bool multi_currency = false;
    int32_t quote = 0;
    std::string definition = "missing.rpt";
};

struct Operation {
    const char* name;
    void (*call)(Report&, const Report::Session&, const Report::Database&, WhichEngine, const Given&);
    bool takes_connection, takes_look, takes_currency;
    bool loads_lists, loads_defaults;
    bool has_failure_path;
};

// clang-format off
const auto kOperations = std::to_array<Operation>({
    {"Show_Printers", [](Report& r, const Report::Session& s, const Report::Database& c, WhichEngine e, const Given& g) {
        r.Show_Printers(s, c, g.win_xp, e, eFExport); }, true, true, false, false, true, true},
    {"Open_Reports", [](Report& r, const Report::Session& s, const Report::Database& c, WhichEngine e, const Given& g) {
        r.Open_Reports(s, c, g.win_xp, e, eRptItemList, g.multi_currency, "ANNA", g.quote, "TWO", true, false, 3); },
        true, true, true, true, true, true},
    {"Print_CurrentQuote", [](Report& r, const Report::Session& s, const Report::Database& c, WhichEngine e, const Given& g) {
        r.Print_CurrentQuote(s, c, e, g.multi_currency, g.quote, "TWO", 0, g.definition, true, false); },
        true, false, true, true, true, true},
    {"Print_OrderChecklist", [](Report& r, const Report::Session& s, const Report::Database& c, WhichEngine e, const Given& g) {
        r.Print_OrderChecklist(s, c, e, g.quote, g.definition, true, false); }, true, false, false, false, true, false},
    {"Print_OrderConfirmation", [](Report& r, const Report::Session& s, const Report::Database& c, WhichEngine e, const Given& g) {
        r.Print_OrderConfirmation(s, c, e, g.quote, g.definition, true, false); }, true, false, false, true, true, false},
    {"Show_Emailer", [](Report& r, const Report::Session& s, const Report::Database&, WhichEngine e, const Given& g) {
        r.Show_Emailer(s, g.win_xp, e); }, false, true, false, false, false, false},
    {"Print_OrderPickingSlip", [](Report& r, const Report::Session& s, const Report::Database& c, WhichEngine e, const Given& g) {
        r.Print_OrderPickingSlip(s, c, e, g.quote, g.definition, true, false, true); },
        true, false, false, true, true, false},
    {"Print_QuoteExpiration", [](Report& r, const Report::Session& s, const Report::Database& c, WhichEngine e, const Given& g) {
        r.Print_QuoteExpiration(s, c, e, g.definition, true, false); }, true, false, false, false, true, false},
});
// clang-format on

class ReportService : public testing::Test {
protected:
    ReportService()
    {
        company.product(
            "INSERT INTO QuoteStatus (QuoteStatusID, qsCode, qsActive) VALUES (1, 'OPEN', 1), (2, 'OLD', 0);"
            "INSERT INTO QuoteType (QuoteTypeID, qtCode, qtActive) VALUES (1, 'STD', 1), (2, 'OLD', 0);"
            "INSERT INTO QuoteConfidence (QuoteConfidID, qcCode, qcActive) VALUES (1, 'HIGH', 1), (2, 'OLD', 0);"
            "INSERT INTO Reason (ReasonID, reCode, reActive) VALUES (1, 'PRICE', 1), (2, 'OLD', 0)");
    }

    /// A process in which nothing was called yet.
    Report fresh()
    {
        auto& state = company.state();
        if (!session) session = company.session();
        if (!connection) connection = company.connection();
        const Ports ports = state.ports;
        state = SessionState{};
        state.ports = ports;
        state.ports.windows = &windows;
        windows.calls.clear();
        company.user.boxes.clear();
        return Report(state);
    }

    /// Calls, and gives what came back to the caller.
    static std::optional<Fault> fault_of(const std::function<void()>& call)
    {
        try {
            call();
        } catch (const Fault& caught) {
            return caught;
        }
        return std::nullopt;
    }

    QuoteCompany company;
    RecordingWindows windows;
    Report::Session session;
    Report::Database connection;
};

TEST_F(ReportService, EachOperationStoresWhatItTakesAndLeavesTheRestAsItWas)
{
    for (const auto& operation : kOperations) {
        for (const bool given : {false, true}) {
            Report report = fresh();
            SessionState& state = report.state();
            state.gWinXP = state.gMultiCurr = !given;
            state.gQuoteID = 77;
            state.gShowCust = 9;
            state.gSessUser = "EARLIER";
            state.gWhichReport = eRptBackOrder;
            state.gOwnQuotes = false;
            (void)fault_of([&] { operation.call(report, session, connection, eDBSQLServer, {given, given, 5}); });

            EXPECT_EQ(state.gSess, session) << operation.name;
            EXPECT_EQ(state.gEngine, eDBSQLServer) << operation.name;
            EXPECT_EQ(state.gConn != nullptr, operation.takes_connection) << operation.name;
            EXPECT_EQ(state.gWinXP, operation.takes_look == given) << operation.name;
            EXPECT_EQ(state.gMultiCurr, operation.takes_currency == given) << operation.name;
            const bool opens_selection = std::string_view(operation.name) == "Open_Reports";
            EXPECT_EQ(state.gQuoteID, opens_selection ? 5 : 77)
                << operation.name << ": the id goes to the builder, not into the state";
            EXPECT_EQ(state.gSessUser, opens_selection ? "ANNA" : "EARLIER") << operation.name;
            EXPECT_EQ(state.gShowCust, opens_selection ? 3 : 9) << operation.name;
            EXPECT_EQ(state.gWhichReport, opens_selection ? eRptItemList : eRptBackOrder) << operation.name;
            EXPECT_EQ(state.gOwnQuotes, opens_selection) << operation.name;
        }
    }
}

TEST_F(ReportService, EachOperationLoadsNoMoreThanItsWorkNeeds)
{
    for (const auto& operation : kOperations) {
        Report report = fresh();
        SessionState& state = report.state();
        (void)fault_of([&] { operation.call(report, session, connection, eDBSQLServer, {}); });
        for (const auto& [list, name] :
             {std::pair{state.gQuoteStatus, "status"}, std::pair{state.gQuoteType, "type"},
              std::pair{state.gQuoteConfid, "confidence"}, std::pair{state.gReasons, "reasons"}}) {
            ASSERT_EQ(list != nullptr, operation.loads_lists) << operation.name << ": " << name;
            if (!list) continue;
            EXPECT_EQ(list->RecordCount(), 1U) << operation.name << ": active rows only, " << name;
        }
        EXPECT_EQ(state.gDefaults != nullptr, operation.loads_defaults) << operation.name;
        EXPECT_EQ(state.gReportSection, "TESTCO_Report") << operation.name;
        EXPECT_EQ(state.gVerOE, "60A") << operation.name;
    }
}

TEST_F(ReportService, TheSelectionAndTheQuoteLoadTheTaxGroupThatTheyAreGiven)
{
    for (const size_t at : {1, 2}) {
        Report report = fresh();
        kOperations[at].call(report, session, connection, eDBSQLServer, {});
        EXPECT_EQ(report.state().gTaxAuthorityCount, 2) << kOperations[at].name;
        EXPECT_EQ(report.state().gTaxAuthorities[1].Authority, "PROV") << kOperations[at].name;
    }
    Report report = fresh();
    report.Open_Reports(session, connection, false, eDBSQLServer, eRptQuote, false, "ANNA");
    EXPECT_EQ(report.state().gTaxAuthorityCount, 0) << "the group may be left out";
    EXPECT_EQ(report.state().gQuoteID, 0);
    EXPECT_EQ(company.boxes().size(), 0U) << company.box_text(0);
}

TEST_F(ReportService, WindowsAreOpenedLastWithTheStateThatTheyNeed)
{
    Report report = fresh();
    for (const auto& operation : kOperations) {
        (void)fault_of([&] { operation.call(report, session, connection, eDBSQLServer, {}); });
    }
    EXPECT_THAT(windows.calls,
                ElementsAre("options 6 TESTCO_Report", "selection TESTCO_Report", "emailer TESTCO_Report"));
}

TEST_F(ReportService, TheFlagForMailIsAcceptedAndNeverRead)
{
    std::vector<std::string> calls[2];
    std::vector<std::string> asked[2];
    for (const bool mail : {false, true}) {
        Report report = fresh();
        report.Open_Reports(session, connection, true, eDBPervasive, eRptQuote, true, "ANNA", 1, "TWO", false, mail, 0);
        calls[mail] = windows.calls;
        for (const auto& query : report.state().log.queries()) asked[mail].push_back(query.text);
        EXPECT_TRUE(company.boxes().empty()) << company.box_text(0);
    }
    EXPECT_EQ(calls[0], calls[1]);
    EXPECT_EQ(asked[0], asked[1]);
    EXPECT_EQ(asked[0].size(), 5U) << "four lists and the defaults";
}

TEST_F(ReportService, TheEmailerLeavesConnectionAndDefaultsToWhoeverSetThem)
{
    Report report = fresh();
    report.Show_Emailer(session, true, eDBPervasive);
    EXPECT_EQ(report.state().gConn, nullptr) << "nobody set one yet";
    EXPECT_TRUE(company.boxes().empty());

    report.Show_Printers(session, connection, false, eDBSQLServer, eFPrinter);
    const auto defaults = report.state().gDefaults;
    ASSERT_NE(defaults, nullptr);
    report.Show_Emailer(session, true, eDBPervasive);
    EXPECT_EQ(report.state().gConn, connection);
    EXPECT_EQ(report.state().gDefaults, defaults);
    EXPECT_EQ(report.state().gEngine, eDBPervasive);
}

TEST_F(ReportService, TheSectionIsTheTrimmedIdOfTheCompany)
{
    company.accounting("UPDATE CompanyInfo SET CompanyID = ' AB '");
    Report report = fresh();
    report.Show_Emailer(session, false, eDBSQLServer);
    EXPECT_EQ(report.state().gReportSection, "AB_Report");
}

TEST_F(ReportService, ModuleVersionsStayForTheLifeOfTheProcess)
{
    Report report = fresh();
    report.Show_Emailer(session, false, eDBSQLServer);
    ASSERT_EQ(report.state().gVerAR, "60A");
    ASSERT_EQ(report.state().gVerAP, "") << "not active in the first company";

    TestCompany other;
    other.accounting(
        "UPDATE CompanyInfo SET CompanyID = 'OTHER'; UPDATE ActiveApplications SET AppVersion = '55A';"
        "INSERT INTO ActiveApplications VALUES (4, 'AP', ' 54A ')");
    report.Show_Emailer(other.session(), false, eDBSQLServer);
    EXPECT_EQ(report.state().gReportSection, "OTHER_Report");
    EXPECT_EQ(report.state().gVerAR, "60A") << "once filled it stays, another company's session or not";
    EXPECT_EQ(report.state().gVerAP, "54A") << "what was still blank is asked for again";
}

TEST_F(ReportService, WithoutAnEngineEachLoaderReportsAndTheOperationGoesOn)
{
    Report report = fresh();
    report.Open_Reports(session, connection, true, eDBNone, eRptQuote, true, "ANNA", 0, "TWO");
    std::vector<std::string> procedures{"modGeneral.Get_QuoteStatus", "modGeneral.Get_QuoteType",
                                        "modGeneral.Get_QuoteConfid", "modGeneral.Get_Reasons",
                                        "modGeneral.Get_Defaults"};
    ASSERT_EQ(company.boxes().size(), procedures.size());
    for (size_t at = 0; at < procedures.size(); ++at) {
        EXPECT_THAT(company.box_text(at), HasSubstr("3704"));
        EXPECT_THAT(company.box_text(at), HasSubstr(procedures[at]));
    }
    EXPECT_THAT(windows.calls, ElementsAre("selection TESTCO_Report"));
    EXPECT_TRUE(report.state().log.queries().empty()) << "no query is opened at all";
    EXPECT_EQ(report.state().gTaxAuthorityCount, 2) << "the accounting views need no engine";
}

TEST_F(ReportService, ThreeOperationsTellAFaultAndFiveHandItToTheCaller)
{
    for (const auto& operation : kOperations) {
        Report report = fresh();
        const auto raised = fault_of([&] { operation.call(report, nullptr, connection, eDBSQLServer, {true}); });
        EXPECT_EQ(raised.has_value(), !operation.has_failure_path) << operation.name;
        if (raised) {
            EXPECT_EQ(raised->number(), fault::kObjectNotSet) << operation.name;
        } else {
            ASSERT_FALSE(company.boxes().empty()) << operation.name;
            EXPECT_THAT(company.boxes().back().text, HasSubstr(std::string("clsReport.") + operation.name));
            EXPECT_THAT(company.boxes().back().text, HasSubstr("91"));
        }
        EXPECT_EQ(report.state().gEngine, eDBSQLServer) << "what was stored before stays stored";
        EXPECT_TRUE(windows.calls.empty()) << operation.name;
    }
}

TEST_F(ReportService, AHostWithoutWindowsIsToldInTheWayOfEachOperation)
{
    Report report = fresh();
    report.state().ports.windows = nullptr;
    report.Show_Printers(session, connection, false, eDBSQLServer, eFPrinter);
    report.Open_Reports(session, connection, false, eDBSQLServer, eRptQuote, false, "");
    ASSERT_EQ(company.boxes().size(), 2U);
    EXPECT_THAT(company.box_text(0), HasSubstr("clsReport.Show_Printers"));
    EXPECT_THAT(company.box_text(1), HasSubstr("clsReport.Open_Reports"));
    const auto raised = fault_of([&] { report.Show_Emailer(session, false, eDBSQLServer); });
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->number(), fault::kCannotCreate);
    EXPECT_EQ(company.boxes().size(), 2U) << "the caller tells";
}

TEST_F(ReportService, AQuoteGoesOutByTheSettingsOfItsCompany)
{
    company.add({.number = 1});
    company.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "5");
    company.settings.set("Morvane\\Velora", "TESTCO_Report", "Export", "/out");
    Report report = fresh();
    report.Print_CurrentQuote(session, connection, eDBPervasive, true, 1, "TWO", 0, "quote.rpt", true, true);
    EXPECT_TRUE(company.boxes().empty()) << company.box_text(0);
    EXPECT_THAT(company.engine.report->calls, ElementsAre("export 5 /out/Q_1 - Bay Works.txt"))
        << "an export wins over a preview";
    EXPECT_TRUE(report.state().gExportOK);
    EXPECT_EQ(report.state().gQuoteID, 0);
    EXPECT_EQ(report.state().gQuote.QuoteID, 1);
}

TEST_F(ReportService, AQuoteThatCannotBePrintedIsToldAndTheCallReturns)
{
    struct Case {
        const char* why;
        int32_t quote;
        const char* definition;
        const char* says;
    };
    for (const auto& c : {Case{"no such definition", 1, "missing.rpt", "could not be found"},
                          Case{"no such quote", 999, "quote.rpt", "could not be found"}}) {
        Report report = fresh();
        report.Print_CurrentQuote(session, connection, eDBSQLServer, true, c.quote, "TWO", 0, c.definition, true,
                                  false);
        ASSERT_EQ(company.boxes().size(), 1U) << c.why;
        EXPECT_THAT(company.box_text(0), HasSubstr(c.says)) << c.why;
        EXPECT_FALSE(report.state().gExportOK) << c.why;
        EXPECT_TRUE(company.engine.report->calls.empty()) << c.why;
    }
}

TEST(ReportObjects, ShareTheStateOfTheirProcessUnlessTheyAreGivenOne)
{
    Report first;
    Report second;
    EXPECT_EQ(&first.state(), &second.state());
    SessionState own;
    Report third(own);
    EXPECT_EQ(&third.state(), &own);
}

}  // namespace
}  // namespace velora
