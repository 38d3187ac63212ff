#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "reports/list_company.h"
#include "support/recording.h"

// The statements of the lists, letter for letter, those that databases refuse too. VELORA_RENEW_GOLDEN=1 writes the
// files anew.

namespace velora {
namespace {

using test::Calls;
using test::ListCompany;

/// What a list asked, its reading of the defaults and lists before left aside.
std::string asked_by(ListCompany& company, const std::string& kind, const Selection& what)
{
    Calls calls;
    auto& state = company.state();
    const auto plain_connection = std::exchange(state.gConn, test::recording(state.gConn, calls));
    const auto plain_session = std::exchange(state.gSess, test::recording(state.gSess, calls));
    load_lists(state);
    load_company(state);
    calls.clear();
    find_report_kind(kind)->print(state, what, {"list.rpt", false, true});
    state.gConn = plain_connection;
    state.gSess = plain_session;
    std::string text;
    for (const auto& call : calls) text += call + "\n";
    return text;
}

std::string name_of(const std::string& kind, const Selection& what)
{
    constexpr std::array kPlaces{"anybody", "accounting", "own"};
    std::string name = "== " + kind + ", " + kPlaces.at(static_cast<size_t>(what.customer_from));
    if (!what.all_dates) name += ", a period";
    if (what.status_id != 0) name += ", status " + std::to_string(what.status_id);
    if (what.reason_id != 0) name += ", reason " + std::to_string(what.reason_id);
    return name + "\n";
}

std::vector<Selection> selections()
{
    std::vector<Selection> all;
    for (const auto place : {CustomerFrom::Anybody, CustomerFrom::Accounting, CustomerFrom::Own}) {
        for (const bool all_dates : {true, false}) {
            Selection& what = all.emplace_back();
            what.customer_from = place;
            what.all_dates = all_dates;
            what.from = *DateTime::from_iso("2026-02-09");
            what.to = *DateTime::from_iso("2026-03-10");
            what.accounting_customer = " O'N ";
            what.customer_id = 5;
        }
    }
    return all;
}

std::string text_of_lists(ListCompany& company)
{
    std::string text;
    const auto ask = [&](const std::string& kind, const Selection& what) {
        text += name_of(kind, what) + asked_by(company, kind, what);
    };
    for (const char* kind : {"customers", "items", "expiration"}) ask(kind, {});
    for (const char* kind : {"win-loss", "lost-reasons", "back-orders"}) {
        for (const Selection& what : selections()) ask(kind, what);
    }
    for (const auto& [status, reason] : {std::pair{0, 0}, {2, 7}, {3, 0}, {3, 7}}) {
        for (Selection what : selections()) {
            what.status_id = status;
            what.reason_id = reason;
            ask("overview", what);
        }
    }
    return text;
}

TEST(ListCalls, AreThoseThatSitesHaveBuiltOn)
{
    for (const auto& [engine, file] :
         {std::pair{eDBSQLServer, "list_calls_sqlserver.txt"}, {eDBPervasive, "list_calls_pervasive.txt"}}) {
        ListCompany company(engine);
        company.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
        company.product(
            "INSERT INTO QuoteStatus (QuoteStatusID) VALUES (2); INSERT INTO Customer (CustomerID) VALUES (6);"
            "INSERT INTO Quote (QuoteID, QuoteStatusID, CustFrom, AccPacID, CustomerID, quDateEnter) VALUES "
            "(1, 2, 0, ' 1200 ', 0, '2026-02-10'), (2, 2, 1, '', 6, '2026-02-10'), (3, 2, 0, '1200', 0, '2026-02-10')");
        const std::string text = text_of_lists(company);
        const auto golden = std::filesystem::path(VELORA_SOURCE_DIR) / "tests" / "golden" / "reports" / file;
        if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) {
            std::ofstream(golden) << text;
            continue;
        }
        std::stringstream expected;
        expected << std::ifstream(golden).rdbuf();
        EXPECT_EQ(text, expected.str()) << file;
    }
    if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) GTEST_SKIP() << "written anew";
}

}  // namespace
}  // namespace velora
