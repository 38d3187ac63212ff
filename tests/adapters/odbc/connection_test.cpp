#include "adapters/odbc/connection.h"

#include <chrono>

#include "adapters/odbc/server_store.h"
#include "support/database_server.h"
#include "values/fault.h"

using namespace velora;
using test::DatabaseServer;

namespace {

/// One database for all tests of a server, with a table of every type that a store has and an odd row in it.
struct Served {
    DatabaseServer* server;
    bool one_statement;
};

std::vector<Served> each_server()
{
    std::vector<Served> all;
    for (const auto& server : test::running_servers()) {
        all.push_back({server.get(), false});
        all.push_back({server.get(), true});
    }
    if (all.empty()) std::cout << "NO DATABASE SERVER IS INSTALLED\n";
    return all;
}

class OdbcConnection : public testing::Test {
protected:
    void SetUp() override
    {
        servers_ = each_server();
        if (servers_.empty()) GTEST_SKIP() << "no database server is installed";
    }

    /// Runs the case on every server, with drivers as they are and as if they took one statement at a time.
    template <class Case>
    void on_each(Case run)
    {
        for (const auto& [server, one_statement] : servers_) {
            SCOPED_TRACE(server->name() + (one_statement ? ", one statement at a time" : ""));
            server->make_database("port");
            OdbcOptions options;
            options.one_statement = one_statement;
            options.timeout = std::chrono::seconds(1);
            const auto connection = open_odbc(server->connection("port"), options);
            run(*connection, *server);
        }
    }

    static Fault fault_of(const std::function<void()>& work)
    {
        try {
            work();
        } catch (const Fault& fault) {
            return fault;
        }
        ADD_FAILURE() << "nothing was raised";
        return {0, ""};
    }

private:
    std::vector<Served> servers_;
};

bool is_mariadb(const DatabaseServer& server)
{
    return server.name() == "MariaDB";
}

/// The same type in the words of the two servers.
std::string words(const DatabaseServer& server, const char* mariadb, const char* postgresql)
{
    return is_mariadb(server) ? mariadb : postgresql;
}

std::string long_text(size_t characters)
{
    std::string text;
    for (size_t at = 0; text.size() < characters; ++at) text += at % 7 == 0 ? "😀ü" : "line " + std::to_string(at);
    return text;
}

}  // namespace

TEST_F(OdbcConnection, CarriesEveryTypeThereAndBackWithoutLoss)
{
    on_each([](Connection& connection, DatabaseServer& server) {
        const std::string moment = words(server, "DATETIME", "TIMESTAMP");
        const std::string text = words(server, "VARCHAR(40)", "VARCHAR(40)");
        const std::string real = words(server, "DOUBLE", "DOUBLE PRECISION");
        const std::string long_type = words(server, "MEDIUMTEXT", "TEXT");
        connection.Execute("CREATE TABLE t (id INTEGER, notes " + long_type + ", big BIGINT, small " + real +
                           ", exact NUMERIC(19,4), longer NUMERIC(30,8), moment " + moment + ", day DATE, word " +
                           text + ", more " + long_type + ")");
        const std::vector<Value> cells{int64_t{-5},
                                       long_text(70'000),
                                       int64_t{9007199254740993},
                                       0.1 + 0.2,
                                       Fixed4::from_units(-123456789012345678),
                                       "1234567890123456789012.12345678",
                                       *DateTime::from_iso("1899-12-30T23:59:59"),
                                       *DateTime::from_iso("2026-02-28"),
                                       " 'Ünï' \"q\" 😀 ",
                                       ""};
        Command insert = Command::statement("INSERT INTO t VALUES (?,?,?,?,?,?,?,?,?,?)");
        for (const auto& cell : cells) insert.parameters.push_back({{}, cell});
        connection.Stream(insert);
        Command nulls = Command::statement(insert.text);
        nulls.parameters = {Command::Parameter::integer({}, 6)};
        nulls.parameters.resize(cells.size());
        connection.Stream(nulls);

        const auto rows = connection.Stream(Command::statement("SELECT * FROM t ORDER BY id"));
        ASSERT_EQ(rows->column_count(), cells.size());
        for (size_t at = 0; at < cells.size(); ++at) EXPECT_EQ(rows->value(at), cells[at]) << rows->column_name(at);
        EXPECT_EQ(rows->value("NOTES"), cells[1]) << "names without case, and a long text twice";
        rows->MoveNext();
        for (size_t at = 1; at < cells.size(); ++at) EXPECT_TRUE(rows->value(at).is_null()) << rows->column_name(at);
        rows->MoveNext();
        EXPECT_TRUE(rows->at_eof());
    });
}

TEST_F(OdbcConnection, ReadsWithinReadsAndGoesBackToTheFirstRow)
{
    on_each([](Connection& connection, DatabaseServer&) {
        connection.Execute("CREATE TABLE t (a INTEGER, b VARCHAR(10))");
        for (const char* row : {"1,'x'", "2,'y'", "3,'z'"}) {
            connection.Execute("INSERT INTO t VALUES (" + std::string(row) + ")");
        }
        const auto outer = connection.Stream(Command::statement("SELECT * FROM t ORDER BY a"));
        std::string seen;
        for (; !outer->at_eof(); outer->MoveNext()) {
            seen += to_text(outer->value("b"));
            Command inner = Command::statement("SELECT b FROM t WHERE a > ? ORDER BY a");
            inner.parameters.push_back({{}, outer->value("a")});
            const auto rows = connection.Stream(inner);
            for (; !rows->at_eof(); rows->MoveNext()) seen += to_text(rows->value(0));
            EXPECT_EQ(connection.Open(Command::statement("SELECT 1 FROM t"))->RecordCount(), 3u);
        }
        EXPECT_EQ(seen, "xyzyzz");
        outer->MoveFirst();
        EXPECT_EQ(outer->value("b"), Value("x"));
        outer->MoveNext();
        EXPECT_EQ(outer->value("b"), Value("y"));
        outer->Close();
        EXPECT_EQ(fault_of([&] { (void)outer->at_eof(); }).number(), fault::kClosedObject);

        const auto none = connection.Stream(Command::statement("SELECT * FROM t WHERE a = 9"));
        EXPECT_TRUE(none->is_empty());
        EXPECT_EQ(fault_of([&] { (void)none->value(0); }).number(), fault::kNoCurrentRow);
        EXPECT_EQ(fault_of([&] { (void)none->value("c"); }).number(), fault::kNoSuchColumn);
        EXPECT_NO_THROW(connection.Execute("UPDATE t SET b = 'q' WHERE a = 9")) << "an update that meets no row";
    });
}

TEST_F(OdbcConnection, RowsOutliveTheConnection)
{
    for (const auto& server : test::running_servers()) {
        server->make_database("port");
        auto connection = open_odbc(server->connection("port"));
        const auto kept = connection->Open(Command::statement("SELECT 7 AS a"));
        const auto streamed = connection->Stream(Command::statement("SELECT 8 AS a"));
        connection.reset();
        EXPECT_EQ(to_number(kept->value("a")), 7);
        EXPECT_EQ(to_number(streamed->value("a")), 8);
    }
}

TEST_F(OdbcConnection, CallsProceduresWithTheirInputs)
{
    on_each([](Connection& connection, DatabaseServer& server) {
        if (!is_mariadb(server)) return;  // the plain dialect calls none
        connection.Execute("CREATE PROCEDURE one(QID INT) SELECT QID + 1 AS n, 'x' AS t");
        connection.Execute("CREATE PROCEDURE named(Comp VARCHAR(10)) SELECT Comp AS c UNION ALL SELECT 'end'");
        for (int round = 0; round < 3; ++round) {
            const auto rows =
                connection.Stream(Command::procedure("one", {Command::Parameter::integer("QID", 40 + round)}));
            EXPECT_EQ(rows->value("n"), Value(int64_t{41 + round}));
        }
        const auto named =
            connection.Open(Command::procedure("named", {Command::Parameter::varchar("Comp", 10, "DÉMO")}));
        EXPECT_EQ(named->RecordCount(), 2u);
        EXPECT_EQ(named->value("c"), Value("DÉMO"));

        const auto missing = fault_of([&] { connection.Open(Command::procedure("nowhere")); });
        EXPECT_EQ(missing.number(), fault::kDatabase);
        EXPECT_THAT(missing.description(), testing::HasSubstr("nowhere"));
        EXPECT_EQ(fault_of([&] { connection.Open(Command::procedure("one(1); DROP TABLE t; --")); }).number(),
                  fault::kDatabase)
            << "only a name goes into the text";
    });
}

TEST_F(OdbcConnection, ReportsEveryRecordOfTheDriver)
{
    on_each([](Connection& connection, DatabaseServer& server) {
        const std::string text = "SELECT * FROM nowhere";
        const auto fault = fault_of([&] { connection.Stream(Command::statement(text)); });
        EXPECT_EQ(fault.number(), fault::kDatabase);
        EXPECT_EQ(fault.where(), text);
        EXPECT_THAT(fault.description(), testing::HasSubstr("nowhere"));
        ASSERT_FALSE(connection.Errors().empty());
        const auto& error = connection.Errors().front();
        EXPECT_EQ(error.Description, fault.description());
        EXPECT_EQ(error.SQLState, words(server, "42S02", "42P01"));
        EXPECT_EQ(error.NativeError != 0, true);
        EXPECT_EQ(to_number(connection.Open(Command::statement("SELECT 1"))->value(0)), 1) << "the connection goes on";
    });
}

TEST_F(OdbcConnection, EndsAStatementThatTakesTooLong)
{
    on_each([](Connection& connection, DatabaseServer& server) {
        const std::string slow = words(server, "SELECT SLEEP(20)", "SELECT pg_sleep(20)");
        const auto fault = fault_of([&] { connection.Open(Command::statement(slow)); });
        EXPECT_THAT(fault.description(), testing::HasSubstr(words(server, "max_statement_time", "timeout")));
    });
}

TEST_F(OdbcConnection, ComesBackAfterTheServerDid)
{
    for (const auto& server : test::running_servers()) {
        SCOPED_TRACE(server->name());
        server->make_database("port");
        const auto connection = open_odbc(server->connection("port"));
        connection->Execute("CREATE TABLE t (a INTEGER)");
        server->stop();
        EXPECT_EQ(fault_of([&] { connection->Open(Command::statement("SELECT 1")); }).number(), fault::kDatabase);
        EXPECT_FALSE(connection->Errors().empty());
        EXPECT_EQ(fault_of([&] { connection->Open(Command::statement("SELECT 1")); }).number(), fault::kDatabase);
        server->start();
        EXPECT_EQ(connection->Open(Command::statement("SELECT 1 FROM t"))->RecordCount(), 0u);
    }
}

TEST_F(OdbcConnection, SaysWhyItCannotBeOpened)
{
    struct Case {
        const char* why;
        std::string connection;
    };
    for (const auto& server : test::running_servers()) {
        server->make_database("port");
        const auto whole = server->connection("port");
        for (const auto& c :
             {Case{"no driver of that name", "Driver={No Such Driver};Server=127.0.0.1"},
              Case{"no source of that name", "DSN=velora-nowhere"}, Case{"no server", whole + ";Port=1"},
              Case{"no such database", server->connection("nowhere")}, Case{"nonsense", "=;;={"},
              Case{"no driver at all", "Server=127.0.0.1"}}) {
            const auto fault = fault_of([&] { open_odbc(c.connection); });
            EXPECT_EQ(fault.number(), fault::kDatabase) << c.why;
            EXPECT_FALSE(fault.description().empty()) << c.why;
        }
    }
}

TEST_F(OdbcConnection, ASnapshotShowsOneStateWhateverIsWritten)
{
    on_each([](Connection& connection, DatabaseServer& server) {
        connection.Execute("CREATE TABLE t (a INTEGER)");
        connection.Execute("INSERT INTO t VALUES (1)");
        const auto other = open_odbc(server.connection("port"));
        const auto read = [&] { return to_number(connection.Open(Command::statement("SELECT a FROM t"))->value(0)); };
        for (int round = 1; round <= 2; ++round) {
            auto snapshot = connection.begin_snapshot();
            ASSERT_NE(snapshot, nullptr);
            EXPECT_EQ(connection.begin_snapshot(), nullptr) << "it reads one state already";
            EXPECT_EQ(read(), round);
            other->Execute("UPDATE t SET a = a + 1");
            EXPECT_EQ(read(), round) << "what was written meanwhile is not seen";
            EXPECT_EQ(fault_of([&] { connection.Execute("SELECT * FROM nowhere"); }).number(), fault::kDatabase);
            EXPECT_EQ(read(), round) << "a statement that failed ends nothing";
            snapshot.reset();
            EXPECT_EQ(read(), round + 1);
        }
        connection.Execute("UPDATE t SET a = 10");
        EXPECT_EQ(to_number(other->Open(Command::statement("SELECT a FROM t"))->value(0)), 10) << "marks go through";
    });
}

TEST_F(OdbcConnection, ALossWithinASnapshotStaysALoss)
{
    for (const auto& server : test::running_servers()) {
        SCOPED_TRACE(server->name());
        server->make_database("port");
        const auto connection = open_odbc(server->connection("port"));
        auto snapshot = connection->begin_snapshot();
        const auto ask = [&] { return connection->Open(Command::statement("SELECT 1"))->RecordCount(); };
        EXPECT_EQ(ask(), 1u);
        server->stop();
        EXPECT_EQ(fault_of(ask).number(), fault::kDatabase);
        server->start();
        EXPECT_THAT(fault_of(ask).description(), testing::HasSubstr("lost")) << "two states would meet in one document";
        snapshot.reset();
        EXPECT_EQ(ask(), 1u) << "the next document";
    }
}

TEST_F(OdbcConnection, AReaderReadsAndDoesNothingElse)
{
    on_each([](Connection& connection, DatabaseServer& server) {
        connection.Execute("CREATE TABLE t (a INTEGER)");
        connection.Execute("INSERT INTO t VALUES (1)");
        if (is_mariadb(server)) {
            connection.Execute("CREATE FUNCTION sneak() RETURNS INT BEGIN DELETE FROM t; RETURN 1; END");
        } else {
            connection.Execute("CREATE FUNCTION sneak() RETURNS INTEGER LANGUAGE sql AS 'DELETE FROM t; SELECT 1'");
        }
        QueryLimits limits;
        limits.time = std::chrono::seconds(5);
        const auto reader = connection.open_reader(limits);
        EXPECT_EQ(to_number(reader->Open(Command::statement("SELECT a FROM t"))->value(0)), 1);
        for (const char* statement : {"DELETE FROM t", "SELECT sneak()", "WITH x AS (SELECT 1) DELETE FROM t", "COMMIT",
                                      "SELECT 1; DELETE FROM t", "SET SESSION TRANSACTION READ WRITE"}) {
            EXPECT_EQ(fault_of([&] { reader->Open(Command::statement(statement)); }).number(), fault::kDatabase)
                << statement;
        }
        EXPECT_EQ(connection.Open(Command::statement("SELECT a FROM t"))->RecordCount(), 1u) << "nothing is gone";
    });
}

TEST_F(OdbcConnection, AReadersWorkEndsAtItsLimits)
{
    on_each([](Connection& connection, DatabaseServer& server) {
        const std::string slow =
            words(server,
                  "SELECT COUNT(*) FROM information_schema.columns a, information_schema.columns b,"
                  " information_schema.columns c",
                  "SELECT COUNT(*) FROM generate_series(1, 3000000000)");
        QueryLimits limits;
        limits.time = std::chrono::milliseconds(200);
        const auto late = fault_of([&] { connection.open_reader(limits)->Open(Command::statement(slow)); });
        EXPECT_EQ(late.number(), fault::kDatabase);
        limits.time = std::chrono::seconds(100);
        limits.cancelled = [] { return true; };
        const auto cancelled = fault_of([&] { connection.open_reader(limits)->Open(Command::statement(slow)); });
        EXPECT_THAT(cancelled.description(), testing::HasSubstr("cancelled"));
    });
}
