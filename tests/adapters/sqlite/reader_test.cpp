#include "adapters/scratch.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/schema.h"

using namespace velora;
using test::content_of;
using test::fault_of;
using test::Scratch;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kEndless =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";

/// A company with one status, its file, and the bytes that may not change.
struct Company {
    Scratch scratch;
    std::string file = scratch.path("velora.db");
    std::string bytes;

    Company()
    {
        create_product_schema(file);
        open_sqlite(file)->Execute("INSERT INTO QuoteStatus VALUES (1, 'O', 'Open', NULL, 1)");
        bytes = content_of(file);
    }
};

std::string read_all(Connection& connection, const std::string& text)
{
    std::string cells;
    const auto rows = connection.Stream(Command::statement(text));
    for (; !rows->at_eof(); rows->MoveNext()) cells += to_text(rows->value(size_t{0})) + ";";
    return cells;
}

}  // namespace

TEST(SqliteReader, ReadsWhatReportsRead)
{
    const Company company;
    const auto product = open_sqlite(company.file);
    const auto reader = product->open_reader({});
    for (const char* text : {
             "SELECT qsName FROM QuoteStatus",
             "SELECT [qsName] FROM [QuoteStatus] WHERE [qsCode] LIKE 'o%' GROUP BY 1 HAVING count(*) > 0;",
             "WITH s AS (SELECT upper(qsName) AS n FROM QuoteStatus) SELECT replace(n, 'PEN', 'pen') FROM s",
             "SELECT qsName FROM QuoteStatus, json_each('[1]') WHERE QuoteStatusID = value",
             "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3)"
             " SELECT qsName FROM QuoteStatus, n WHERE i = 2 AND qsName IN (SELECT qsName FROM QuoteStatus)",
         }) {
        EXPECT_EQ(read_all(*reader, text), "Open;") << text;
    }
    product->Execute("INSERT INTO QuoteStatus VALUES (2, 'L', 'Lost', NULL, 1)");
    EXPECT_EQ(read_all(*reader, "SELECT qsName FROM QuoteStatus ORDER BY QuoteStatusID"), "Open;Lost;");
    EXPECT_EQ(read_all(*open_sqlite_in_memory(), "SELECT 1"), "1;");
    EXPECT_EQ(fault_of([] { open_sqlite_in_memory()->open_reader({}); }).number(), fault::kPathAccess);
}

TEST(SqliteReader, NothingElseIsLetThrough)
{
    struct Case {
        const char* statement;
        const char* says;
    };
    const Company company;
    const std::string elsewhere = company.scratch.path("elsewhere.db");
    const std::string attach = "ATTACH '" + elsewhere + "' AS other";
    const std::string vacuum = "VACUUM INTO '" + elsewhere + "'";
    for (const auto& c : {
             Case{"DELETE FROM QuoteStatus", "DELETE"},
             Case{"DELETE FROM QuoteStatus RETURNING qsName", "DELETE"},
             Case{"UPDATE QuoteStatus SET qsName = 'x'", "UPDATE"},
             Case{"UPDATE sqlite_master SET sql = ''", "may not be modified"},
             Case{"INSERT INTO QuoteStatus VALUES (7, 'x', 'x', NULL, 1)", "INSERT"},
             Case{"REPLACE INTO QuoteStatus VALUES (1, 'x', 'x', NULL, 1)", "INSERT"},
             Case{"WITH x AS (SELECT 1) DELETE FROM QuoteStatus", "DELETE"},
             Case{"DROP TABLE QuoteStatus", "may only read"},
             Case{"CREATE TABLE x (a)", "may only read"},
             Case{"CREATE TEMP TABLE x AS SELECT 1", "may only read"},
             Case{"CREATE VIRTUAL TABLE x USING fts5(a)", "may only read"},
             Case{"ALTER TABLE QuoteStatus RENAME TO x", "may only read"},
             Case{"PRAGMA user_version = 7", "PRAGMA"},
             Case{"PRAGMA query_only = 0", "PRAGMA"},
             Case{"PRAGMA journal_mode = WAL", "PRAGMA"},
             Case{"SELECT * FROM pragma_user_version", "PRAGMA"},
             Case{"SELECT load_extension('x')", "load_extension"},
             Case{attach.c_str(), "ATTACH"},
             Case{vacuum.c_str(), "ATTACH"},
             Case{"DETACH main", "DETACH"},
             Case{"BEGIN IMMEDIATE", "transaction"},
             Case{"SAVEPOINT x", "savepoint"},
             Case{"ANALYZE", "may only read"},
             Case{"REINDEX", "may only read"},
             Case{"SELECT 1; DELETE FROM QuoteStatus", "more than one statement"},
             Case{"SELECT zeroblob(200000000)", "too big"},
             Case{"", "no statement"},
         }) {
        const auto reader = open_sqlite_reader(company.file, {});
        const Fault fault = fault_of([&] { read_all(*reader, c.statement); });
        EXPECT_EQ(fault.number(), fault::kDatabase) << c.statement;
        EXPECT_THAT(fault.description(), HasSubstr(c.says)) << c.statement;
        EXPECT_EQ(content_of(company.file), company.bytes) << c.statement;
        EXPECT_FALSE(std::filesystem::exists(elsewhere)) << c.statement;
        EXPECT_EQ(read_all(*reader, "SELECT qsName FROM QuoteStatus"), "Open;") << "afterwards it reads as before";
    }
}

TEST(SqliteReader, WorkEndsAtTheLimitAndWhenItIsCancelled)
{
    const Company company;
    QueryLimits short_time;
    short_time.time = std::chrono::milliseconds(1);
    const auto hurried = open_sqlite_reader(company.file, short_time);
    EXPECT_THAT(fault_of([&] { read_all(*hurried, kEndless); }).description(), HasSubstr("stopped"));
    EXPECT_THAT(fault_of([&] { read_all(*hurried, kEndless); }).description(), HasSubstr("stopped"));

    int asked = 0;
    QueryLimits no_time;
    no_time.time = std::chrono::milliseconds(0);
    no_time.cancelled = [&] { return ++asked == 50; };
    const auto cancelled = open_sqlite_reader(company.file, no_time);
    const Fault fault = fault_of([&] { read_all(*cancelled, kEndless); });
    EXPECT_THAT(fault.description(), HasSubstr("cancelled"));
    EXPECT_THAT(fault.description(), Not(HasSubstr("may only read")));
    EXPECT_EQ(asked, 50);
}
