#include <sqlite3.h>

#include "adapters/scratch.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/schema.h"
#include "adapters/store_schema/tables.h"

using namespace velora;
using test::content_of;
using test::fault_of;
using test::Scratch;
using testing::AllOf;
using testing::HasSubstr;

namespace {

/// The file as an outside program opens it, without the product's collation.
class Outsider {
public:
    explicit Outsider(const std::string& path) { sqlite3_open(path.c_str(), &database_); }
    Outsider(const Outsider&) = delete;
    Outsider& operator=(const Outsider&) = delete;
    ~Outsider() { sqlite3_close(database_); }

    void run(const std::string& sql)
    {
        ASSERT_EQ(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sql << ": " << sqlite3_errmsg(database_);
    }

private:
    sqlite3* database_ = nullptr;
};

std::string database_in(const Scratch& scratch)
{
    create_product_schema(scratch.path("velora.db"));
    return scratch.path("velora.db");
}

}  // namespace

TEST(SqliteFile, BadFilesAreRefusedWithPathAndReason)
{
    const Scratch scratch;
    const std::string whole = content_of(database_in(scratch));
    std::string damaged = whole;
    damaged.replace(100, 2000, 2000, 'x');
    std::filesystem::create_directory(scratch.path("folder.db"));

    struct Case {
        std::string path;
        int32_t number;
        const char* reason;
    };
    for (const auto& c : {
             Case{scratch.path("missing.db"), fault::kFileNotFound, "does not exist"},
             Case{scratch.path("folder.db"), fault::kPathAccess, "not a file"},
             Case{scratch.write("empty.db", ""), fault::kPathAccess, "empty"},
             Case{scratch.write("text.db", "[Host]\nCompany=DEMOCO\n"), fault::kPathAccess, "not a database"},
             Case{scratch.write("short.db", whole.substr(0, 60)), fault::kPathAccess, "truncated"},
             Case{scratch.write("half.db", whole.substr(0, whole.size() / 2)), fault::kPathAccess, "truncated"},
             Case{scratch.write("damaged.db", damaged), fault::kPathAccess, "damaged"},
         }) {
        const auto fault = fault_of([&] { open_sqlite(c.path); });
        EXPECT_EQ(fault.number(), c.number) << c.path;
        EXPECT_THAT(fault.description(), AllOf(HasSubstr(c.path), HasSubstr(c.reason)));
    }
    EXPECT_FALSE(std::filesystem::exists(scratch.path("missing.db"))) << "opening never makes a file";
}

TEST(SqliteFile, ALockedFileIsRefusedAndALockDuringWorkIsReported)
{
    const Scratch scratch;
    const auto path = database_in(scratch);
    const auto connection = open_sqlite(path, {.busy_milliseconds = 1});
    Outsider other(path);
    other.run("BEGIN EXCLUSIVE");
    EXPECT_THAT(fault_of([&] { open_sqlite(path, {.busy_milliseconds = 1}); }).description(),
                AllOf(HasSubstr(path), HasSubstr("locked")));
    EXPECT_THAT(fault_of([&] { connection->Execute("SELECT * FROM Quote"); }).description(), HasSubstr("locked"));
    EXPECT_EQ(connection->Errors().at(0).SQLState, "HYT00");
    other.run("COMMIT");
    EXPECT_TRUE(connection->Execute("SELECT * FROM Quote")->is_empty());
}

TEST(SqliteFile, ASnapshotIsOneStateOfTheDataUntilItEnds)
{
    const Scratch scratch;
    const auto path = database_in(scratch);
    const auto connection = open_sqlite(path);
    const auto writer = open_sqlite(path, {.busy_milliseconds = 1});
    const auto quotes = [&] { return to_text(connection->Execute("SELECT COUNT(*) FROM Quote")->value(size_t{0})); };
    const std::string insert = "INSERT INTO Quote (QuoteID) VALUES (77)";
    auto snapshot = connection->begin_snapshot();
    ASSERT_NE(snapshot, nullptr);
    EXPECT_EQ(connection->begin_snapshot(), nullptr) << "it reads so already";
    const std::string before = quotes();
    EXPECT_THROW(writer->Execute(insert), Fault) << "a writer waits";
    EXPECT_EQ(quotes(), before);
    snapshot.reset();
    writer->Execute(insert);
    EXPECT_NE(quotes(), before);
    connection->Execute("DELETE FROM Quote");
    EXPECT_EQ(quotes(), "0");
}

TEST(SqliteFile, ASchemaIsNeverWrittenOverAFile)
{
    const Scratch scratch;
    const auto path = scratch.write("velora.db", "mine");
    EXPECT_EQ(fault_of([&] { create_product_schema(path); }).number(), fault::kPathAccess);
    EXPECT_EQ(content_of(path), "mine");
    EXPECT_EQ(fault_of([&] { create_product_schema(scratch.path("no folder/velora.db")); }).number(),
              fault::kPathAccess);
}

TEST(SqliteFile, OutsideProgramsWriteRowsAndDatesBecomeIso)
{
    struct Case {
        const char* written;
        Value read;
    };
    const Scratch scratch;
    const auto path = database_in(scratch);
    for (const auto& c : {
             Case{"'2024-03-05'", *DateTime::from_ymd(2024, 3, 5)},
             Case{"'3/5/2024'", *DateTime::from_ymd(2024, 3, 5)},
             Case{"'03/05/24 9:05'", *DateTime::from_ymd(2024, 3, 5, 9, 5)},
             Case{"' 12/31/1999 23:59:59.999 '", *DateTime::from_ymd(1999, 12, 31, 23, 59, 59)},
             Case{"'2024/3/5'", *DateTime::from_ymd(2024, 3, 5)},
             Case{"'2/30/2024'", "2/30/2024"},
             Case{"'3/5/2024 noon'", "3/5/2024 noon"},
             Case{"'a/b/c'", "a/b/c"},
             Case{"''", ""},
             Case{"NULL", nullptr},
         }) {
        Outsider other(path);
        other.run("DELETE FROM Quote");
        other.run(std::string("INSERT INTO Quote (QuoteID, quDateEnter) VALUES (1, ") + c.written + ")");
        other.run(std::string("UPDATE Quote SET quDateShip = ") + c.written + " WHERE QuoteID = 1");
        const auto rows = open_sqlite(path)->Execute("SELECT * FROM Quote");
        EXPECT_EQ(rows->value("quDateEnter"), c.read) << c.written;
        EXPECT_EQ(rows->value("quDateShip"), c.read) << c.written;
    }
}

TEST(SqliteFile, AQuoteLeavesNoColumnNullButItsTransferDate)
{
    const Scratch scratch;
    const auto path = database_in(scratch);
    Outsider(path).run("INSERT INTO Quote (QuoteID) VALUES (4)");
    const auto rows = open_sqlite(path)->Execute("SELECT * FROM Quote");
    for (size_t column = 0; column < rows->column_count(); ++column) {
        EXPECT_EQ(rows->value(column).is_null(), rows->column_name(column) == "quDateTransfer")
            << rows->column_name(column);
    }
    EXPECT_EQ(rows->value("quDesc"), Value(""));
    EXPECT_EQ(rows->value("quPercentSS5"), Value(0.0));
}

TEST(SqliteFile, KeysMayRepeatAndEveryColumnTakesANull)
{
    const Scratch scratch;
    const auto path = database_in(scratch);
    Outsider other(path);
    for (const auto& table : stores::product_tables()) {
        const std::string name(table.name);
        std::string nulls;
        for (const auto& column : table.columns) {
            for (int at = 0; at < std::max(column.repeated, 1); ++at) nulls += nulls.empty() ? "NULL" : ",NULL";
        }
        other.run("INSERT INTO " + name + " VALUES (" + nulls + ")");
        other.run("INSERT INTO " + name + " SELECT * FROM " + name);
    }
}
