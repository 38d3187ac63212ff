#include <sqlite3.h>

#include "adapters/accounting_sql/schema.h"
#include "adapters/accounting_sql/session.h"
#include "adapters/scratch.h"

using namespace velora;
using test::Scratch;
namespace fs = std::filesystem;

namespace {

void run(sqlite3* database, const std::string& sql)
{
    ASSERT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
}

std::vector<std::string> names(const std::string& path)
{
    const auto session = open_accounting_store(path);
    const auto rows = session->OpenView("IC0370", "IC");
    std::vector<std::string> texts;
    rows->Browse("", true);
    while (rows->Fetch()) texts.push_back(to_text(rows->field("DESC")));
    return texts;
}

}  // namespace

/// The accounting program owns the file: it may end in the midst of a change, and the product only reads.
TEST(AccountingRecovery, AChangeThatDidNotEndIsNotSeenThoughTheStoreIsOnlyRead)
{
    const Scratch scratch;
    const auto whole = scratch.path("whole.db");
    const auto crashed = scratch.path("crashed.db");
    create_accounting_schema(whole);
    sqlite3* database = nullptr;
    sqlite3_open(whole.c_str(), &database);
    run(database, "PRAGMA journal_mode = DELETE");
    run(database,
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
        "INSERT INTO IC0370 (LOCATION, DESC) SELECT i, 'before' FROM n");
    run(database, "PRAGMA cache_size = 2");
    run(database, "BEGIN IMMEDIATE");
    run(database, "UPDATE IC0370 SET DESC = 'after'");
    fs::copy_file(whole, crashed);
    fs::copy_file(whole + "-journal", crashed + "-journal");
    ASSERT_NE(test::content_of(crashed).find("after"), std::string::npos) << "the file is half written";
    EXPECT_THAT(names(crashed), testing::AllOf(testing::SizeIs(3000), testing::Each("before")));
    run(database, "COMMIT");
    sqlite3_close(database);
    EXPECT_THAT(names(whole), testing::Each("after"));
}

TEST(AccountingRecovery, KeysPaddedToTheirColumnFindTheirRows)
{
    const Scratch scratch;
    const auto path = scratch.path("accounting.db");
    create_accounting_schema(path);
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    run(database,
        "INSERT INTO IC0290 (ITEMNO, LOCATION, AQTYONHAND) VALUES ('A1                      ', '1     ', 5),"
        " ('A1', '2', 6), ('A10                     ', '1     ', 7), ('   ', '1', 8)");
    sqlite3_close(database);
    struct Case {
        const char* why;
        const char* filter;
        std::vector<std::string> expected;
    };
    const auto session = open_accounting_store(path);
    for (const auto& c : {Case{"both columns padded", "ITEMNO = \"A1\" AND LOCATION = 1", {"5"}},
                          Case{"the asked value padded", "ITEMNO = \"A1      \" AND LOCATION = \"1  \"", {"5"}},
                          Case{"one padded and one not", "ITEMNO = \"A1\"", {"5", "6"}},
                          Case{"a longer key is another", "ITEMNO = \"A10\"", {"7"}},
                          Case{"blanks alone are the empty key", "ITEMNO = \"\"", {"8"}}}) {
        const auto rows = session->OpenView("IC0290", "IC");
        rows->Browse(c.filter, true);
        std::vector<std::string> found;
        while (rows->Fetch()) found.push_back(to_text(rows->field("AQTYONHAND")));
        EXPECT_EQ(found, c.expected) << c.why;
    }
}
