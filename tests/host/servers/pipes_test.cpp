#include <sqlite3.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/servers/companies.h"
#include "reports/kinds.h"

using namespace velora;
using namespace velora::testing;

namespace {

/// What can be asked of a kind: every quote, or each of its selections.
std::vector<std::vector<std::string>> calls_of(const ReportKind& kind, const std::vector<std::string>& quotes)
{
    const std::string name(kind.name);
    if (kind.criteria.file || kind.print == nullptr) return {};
    std::vector<std::vector<std::string>> calls;
    if (kind.criteria.quote) {
        for (const auto& quote : quotes) calls.push_back({name, quote});
        return calls;
    }
    calls.push_back({name});
    if (kind.criteria.period) {
        calls.push_back({name, "--from", "2026-01-01", "--to", "2026-06-15"});
        calls.push_back({name, "--customer", "1"});
        calls.push_back({name, "--accounting-customer", "1100"});
    }
    if (kind.criteria.status) calls.push_back({name, "--status", "1"});
    return calls;
}

std::string shown(const std::vector<std::string>& call)
{
    std::string text;
    for (const auto& word : call) text += word + " ";
    return text;
}

/// Where two texts part, with what stands around it.
std::string first_difference(const std::string& got, const std::string& wanted)
{
    const auto [a, b] = std::ranges::mismatch(got, wanted);
    const auto at = static_cast<size_t>(a - got.begin());
    const size_t from = at < 60 ? 0 : at - 60;
    return "\ngot    ..." + got.substr(from, 120) + "\nwanted ..." + wanted.substr(from, 120);
}

/// The rows of a query that states no order (of some lists, and of the places that a checklist is split by) come in
/// that of the server.
std::vector<std::string> sorted_lines(const std::string& pipe)
{
    std::vector<std::string> lines;
    std::istringstream stream(pipe);
    for (std::string line; std::getline(stream, line);) {
        while (!line.empty() && (line.back() == ',' || line.back() == '}' || line.back() == ']')) line.pop_back();
        const size_t rows = line.find("\"rows\":[");
        if (rows != std::string::npos) {
            lines.push_back(line.substr(0, rows));
            line.erase(0, rows + 8);
        }
        lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
}

class Pipes : public ServersTest {
protected:
    struct Outcome {
        int status;
        std::string pipe;
        std::string boxes;  ///< their titles: the words of a database error are each server's own
    };

    [[nodiscard]] Outcome outcome(const fs::path& company, std::vector<std::string> call) const
    {
        const auto pipe = scratch("pipe.json");
        for (const char* file : {"pipe.json", "messages"}) fs::remove(scratch(file));
        call.insert(call.end(), {"--pipe", pipe.string(), "--output", scratch("out.txt").string()});
        auto arguments = in_company(company, std::move(call));
        // A query may hold a short date of the region, and MariaDB reads it only with the year in front.
        std::ranges::replace(arguments, std::string("en-US"), std::string("sv-SE"));
        const Ran ran = run(arguments);
        return {ran.status, fs::exists(pipe) ? file_text(pipe) : "", titles(messages())};
    }

    static std::string titles(const std::string& lines)
    {
        std::string all;
        std::istringstream stream(lines);
        for (std::string line; std::getline(stream, line);) {
            all += nlohmann::json::parse(line)["title"].get<std::string>() + "\n";
        }
        return all;
    }

    /// Every n-th quote, the one that shows everything among them.
    static std::vector<std::string> quotes_of(const fs::path& company, int every)
    {
        std::vector<std::string> ids;
        sqlite3* database = nullptr;
        sqlite3_open((company / "velora.db").c_str(), &database);
        const auto sql = "SELECT QuoteID FROM Quote WHERE (QuoteID - 52) % " + std::to_string(every) + " = 0";
        sqlite3_exec(
            database, sql.c_str(),
            [](void* all, int, char** row, char**) {
                static_cast<std::vector<std::string>*>(all)->emplace_back(row[0]);
                return 0;
            },
            &ids, nullptr);
        sqlite3_close(database);
        return ids;
    }

    /// Every document that there is, on the folder and on every server.
    void compare(const fs::path& company, int every)
    {
        const auto quotes = quotes_of(company, every);
        ASSERT_FALSE(quotes.empty());
        for (const auto& server : test::running_servers()) {
            SCOPED_TRACE(server->name());
            const auto there = moved(company, *server);
            const auto here = scratch("here-" + server->name());
            fs::copy(company, here, fs::copy_options::recursive);
            write_config(here, server->engine(), "sqlite:velora.db", "sqlite:accounting.db");
            size_t documents = 0;
            for (const ReportKind& kind : report_kinds()) {
                for (const auto& call : calls_of(kind, quotes)) {
                    const auto wanted = outcome(here, call);
                    const auto got = outcome(there, call);
                    EXPECT_EQ(got.status, wanted.status) << shown(call);
                    EXPECT_EQ(got.boxes, wanted.boxes) << shown(call);
                    const bool is_ordered = kind.which == eRptQuote || kind.which == eRptOrderConfirmation;
                    const bool same =
                        got.pipe == wanted.pipe || (!is_ordered && sorted_lines(got.pipe) == sorted_lines(wanted.pipe));
                    EXPECT_TRUE(same) << shown(call) << first_difference(got.pipe, wanted.pipe);
                    if (wanted.status == 0 || wanted.status == 4) ++documents;
                }
            }
            EXPECT_GT(documents, quotes.size() / 2) << "most of them are real ones";
        }
    }
};

/// What the tests of the builders know of odd data, in rows of one company.
constexpr const char* kOddities = R"(
UPDATE Quote SET CustName = 'O''Brien "&" Söhne 😀 日本', quDesc = 'a' || char(9) || 'b', quNotes = replace(hex(zeroblob(40000)), '00', 'ñ');
UPDATE Quote SET quDateTransfer = '2026-03-13 23:59:59', quPercentSS1 = 0.1 + 0.2, quRateEx = 1e-7 WHERE QuoteID % 2 = 0;
UPDATE Quote SET quDateEnter = '1899-12-30' WHERE QuoteID % 7 = 3;
UPDATE Quote SET quDateShip = '1789-07-14' WHERE QuoteID % 7 = 4;
UPDATE Quote SET quPONumber = NULL WHERE QuoteID % 7 = 5;
UPDATE Quote SET QuoteNumber = '  ' || QuoteNumber || ' ' WHERE QuoteID % 3 = 0;
UPDATE Details SET deQuantity = -0.005, deDiscPer = 33.333333333333336, deCost = 0.00005 WHERE Line % 3 = 1;
UPDATE Details SET deQuantity = 1e15, deQuotedPrice = 0.1 WHERE Line % 5 = 4;
UPDATE Details SET deDesc = NULL, deUofM = NULL WHERE Line % 4 = 3;
UPDATE Details SET deConvFactor = 0 WHERE Line % 6 = 5;
UPDATE Details SET deTaxIncl1 = 'yes', deTaxIncl2 = '-1', deTaxIncl3 = 'True' WHERE Line % 2 = 0;
UPDATE CommIns SET CommIns = 'first' || char(13) || char(10) || 'second' || char(10) || ' ' ;
UPDATE Customer SET cuFullName = lower(cuFullName), cuPhone = '+1 (555) 12345678901234567890' WHERE CustomerID % 2 = 0;
UPDATE DMiscCharge SET Amount = 1.00005 WHERE Line % 2 = 1;
UPDATE QuoteStatus SET qsName = NULL WHERE QuoteStatusID = 2;
)";

constexpr const char* kOddAccounting = R"(
UPDATE AR0024 SET NAMECUST = '  ' || NAMECUST || ' ', TEXTPHON1 = NULL;
UPDATE AR0024 SET IDCUST = ' ' || IDCUST || '  ' WHERE rowid % 2 = 0;
UPDATE IC0310 SET ITEMNO = lower(ITEMNO), FMTITEMNO = 'ü-' || FMTITEMNO WHERE rowid % 2 = 0;
UPDATE IC0480 SET BASEPRICE = BASEPRICE / 3, DBASEPRICE = DBASEPRICE / 3;
UPDATE TX0004 SET ITEMRATE1 = 8.875 WHERE rowid % 2 = 1;
UPDATE AR0018 SET NAMEEMPL = NULL WHERE rowid % 2 = 1;
)";

void change(const fs::path& file, const char* sql)
{
    sqlite3* database = nullptr;
    sqlite3_open(file.c_str(), &database);
    // The date columns' collation is the adapter's; nothing here compares a date.
    sqlite3_create_collation(database, "VLDATE", SQLITE_UTF8, nullptr,
                             [](void*, int, const void*, int, const void*) { return 0; });
    char* error = nullptr;
    sqlite3_exec(database, sql, nullptr, nullptr, &error);
    EXPECT_EQ(error, nullptr) << error;
    sqlite3_free(error);
    sqlite3_close(database);
}

}  // namespace

TEST_F(Pipes, OfTheSampleCompanyAreTheSameOnEveryServer)
{
    compare(company(), 5);
}

TEST_F(Pipes, OfAnOddCompanyAreTheSameOnEveryServer)
{
    const auto odd = company_copy();
    change(odd / "velora.db", kOddities);
    change(odd / "accounting.db", kOddAccounting);
    compare(odd, 3);
}

TEST_F(Pipes, OneStoreMayStayAFile)
{
    for (const auto& server : test::running_servers()) {
        SCOPED_TRACE(server->name());
        const auto mixed = moved(company(), *server);
        fs::copy(company() / "accounting.db", mixed / "accounting.db");
        const auto wanted = outcome(company(), {"quote", "--number", "Q-10052"});
        write_config(mixed, server->engine(), "odbc:" + server->connection("velora"), "sqlite:accounting.db");
        EXPECT_EQ(outcome(mixed, {"quote", "--number", "Q-10052"}).pipe, wanted.pipe);
        fs::copy(company() / "velora.db", mixed / "velora.db");
        write_config(mixed, server->engine(), "sqlite:velora.db", "odbc:" + server->connection("accounting"));
        EXPECT_EQ(outcome(mixed, {"quote", "--number", "Q-10052"}).pipe, wanted.pipe);
        EXPECT_EQ(wanted.status, 0);
    }
}
