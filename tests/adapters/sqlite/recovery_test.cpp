#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "adapters/scratch.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/schema.h"

using namespace velora;
using test::Scratch;
namespace fs = std::filesystem;

namespace {

void run(sqlite3* database, const std::string& sql)
{
    ASSERT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(database);
}

/// A database of many quotes, and beside it the same as a program left it that ended in the midst of a change: the
/// file half written, the journal there.
class LeftBehind {
public:
    explicit LeftBehind(const Scratch& scratch) : path(scratch.path("crashed.db"))
    {
        const auto whole = scratch.path("whole.db");
        create_product_schema(whole);
        sqlite3* database = nullptr;
        sqlite3_open(whole.c_str(), &database);
        run(database, "PRAGMA journal_mode = DELETE");
        run(database,
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
            "INSERT INTO Quote (QuoteID, quDesc) SELECT i, 'before' FROM n");
        run(database, "PRAGMA cache_size = 2");  // changed pages go to the file at once
        run(database, "BEGIN IMMEDIATE");
        run(database, "UPDATE Quote SET quDesc = 'after'");
        fs::copy_file(whole, path);
        fs::copy_file(whole + "-journal", path + "-journal");
        run(database, "ROLLBACK");
        sqlite3_close(database);
    }

    [[nodiscard]] bool is_half_written() const
    {
        return test::content_of(path).find("after") != std::string::npos && fs::file_size(path + "-journal") > 1000;
    }

    const std::string path;
};

int64_t count(const std::string& path, const std::string& condition)
{
    const auto rows = open_sqlite(path)->Execute("SELECT COUNT(*) FROM Quote WHERE " + condition);
    return static_cast<int64_t>(to_number(rows->value(size_t{0})));
}

}  // namespace

TEST(SqliteRecovery, AChangeThatDidNotEndIsTakenBackWhenTheFileIsOpened)
{
    const Scratch scratch;
    const LeftBehind crashed(scratch);
    ASSERT_TRUE(crashed.is_half_written());
    EXPECT_EQ(count(crashed.path, "quDesc = 'before'"), 3000);
    EXPECT_EQ(count(crashed.path, "quDesc = 'after'"), 0);
    EXPECT_FALSE(fs::exists(crashed.path + "-journal")) << "what is cleared up does not stay";
}

TEST(SqliteRecovery, WithoutItsJournalTheFileIsStillReadOrRefusedButNeverChanged)
{
    const Scratch scratch;
    const LeftBehind crashed(scratch);
    fs::remove(crashed.path + "-journal");
    const auto before = test::content_of(crashed.path);
    try {
        count(crashed.path, "quDesc = 'before'");
    } catch (const Fault&) {
    }
    EXPECT_EQ(test::content_of(crashed.path), before);
}

TEST(SqliteRecovery, AJournalOfNonsenseHarmsNothing)
{
    const Scratch scratch;
    const auto path = scratch.path("velora.db");
    create_product_schema(path);
    open_sqlite(path)->Execute("INSERT INTO Quote (QuoteID, quDesc) VALUES (1, 'kept')");
    for (const std::string& journal : {std::string("no journal at all"), std::string(5000, '\0'), std::string()}) {
        scratch.write("velora.db-journal", journal);
        EXPECT_EQ(count(path, "quDesc = 'kept'"), 1) << journal.size();
    }
}

TEST(SqliteWriters, TwoProcessesLoseNoRow)
{
    constexpr int kRows = 40;
    const Scratch scratch;
    const auto path = scratch.path("velora.db");
    create_product_schema(path);
    const auto write = [&](int from) {
        const auto connection = open_sqlite(path, {.busy_milliseconds = 60000});
        for (int at = 0; at < kRows; ++at) {
            connection->Execute("INSERT INTO Quote (QuoteID, quDesc) VALUES (" + std::to_string(from + at) + ", 'x')");
        }
    };
    const pid_t child = fork();
    if (child == 0) {
        try {
            write(1000);
        } catch (...) {
            _exit(1);
        }
        _exit(0);
    }
    write(2000);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "the other writer waited and was served";
    EXPECT_EQ(count(path, "QuoteID BETWEEN 1000 AND 1999"), kRows);
    EXPECT_EQ(count(path, "QuoteID BETWEEN 2000 AND 2999"), kRows);
}

TEST(SqliteWriters, AReaderSeesWholeChangesWhileAnotherThreadWrites)
{
    const Scratch scratch;
    const auto path = scratch.path("velora.db");
    create_product_schema(path);
    std::thread writer([&] {
        const auto connection = open_sqlite(path, {.busy_milliseconds = 60000});
        for (int at = 0; at < 30; ++at) {
            connection->Execute("INSERT INTO Quote (QuoteID, quDesc) VALUES (1, 'x'), (2, 'x')");
        }
    });
    const auto reader = open_sqlite(path, {.busy_milliseconds = 60000});
    for (int at = 0; at < 30; ++at) {
        const auto rows = reader->Execute("SELECT COUNT(*) FROM Quote");
        EXPECT_EQ(static_cast<int64_t>(to_number(rows->value(size_t{0}))) % 2, 0) << "both rows or none";
    }
    writer.join();
    EXPECT_EQ(count(path, "1 = 1"), 60);
}
