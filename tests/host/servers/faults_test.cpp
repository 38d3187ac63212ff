#include <functional>
#include <streambuf>

#include "adapters/odbc/connection.h"
#include "adapters/sqlite/connection.h"
#include "host/servers/companies.h"
#include "values/fault.h"

using namespace velora;
using namespace velora::testing;
using ::testing::HasSubstr;

namespace {

/// Keeps what is written, and tells how often a text has been.
class WatchedStream : public std::stringbuf {
public:
    WatchedStream(std::string text, std::function<void(size_t)> seen) : text_(std::move(text)), seen_(std::move(seen))
    {
    }

protected:
    std::streamsize xsputn(const char* characters, std::streamsize size) override
    {
        const auto written = std::stringbuf::xsputn(characters, size);
        look();
        return written;
    }
    int_type overflow(int_type character) override
    {
        const auto written = std::stringbuf::overflow(character);
        look();
        return written;
    }

private:
    void look()
    {
        const std::string all = str();
        for (size_t at = all.find(text_, from_); at != std::string::npos; at = all.find(text_, from_)) {
            from_ = at + text_.size();
            seen_(++count_);
        }
    }

    std::string text_;
    std::function<void(size_t)> seen_;
    size_t from_ = 0;
    size_t count_ = 0;
};

class Faults : public ServersTest {
protected:
    /// A run that is told each delivered document and each box of the database.
    int run_watched(const std::vector<std::string>& arguments, const std::function<void(size_t)>& on_document,
                    const std::function<void(size_t)>& on_box) const
    {
        WatchedStream documents(".pdf", on_document);
        WatchedStream boxes("Reporting Error", on_box);
        std::ostream out(&documents);
        std::ostream err(&boxes);
        const Surroundings around{out, err, [](const char*) { return std::string(); },
                                  fs::path(VELORA_SOURCE_DIR) / "velora-report", false};
        const auto status = static_cast<int>(run_command_line(arguments, around));
        words_ = documents.str() + boxes.str();
        return status;
    }
    mutable std::string words_;
};

}  // namespace

TEST_F(Faults, AServerThatStopsBetweenDocumentsIsToldAndFoundAgain)
{
    for (const auto& server : test::running_servers()) {
        SCOPED_TRACE(server->name());
        const auto folder = moved(company(), *server);
        const auto command = in_company(folder, {"quote", "1", "2", "3", "--output", (folder / "Export/").string()});
        size_t boxes_of_one = 0;
        size_t delivered = 0;
        const auto stop_after_first = [&](size_t count) {
            delivered = count;
            if (count == 1) server->stop();
        };
        EXPECT_EQ(run_watched(command, stop_after_first, [&](size_t count) { boxes_of_one = count; }), 1);
        server->start();
        EXPECT_EQ(delivered, 1u) << "nothing half written goes for a document\n" << words_;
        ASSERT_GT(boxes_of_one, 0u) << words_;
        ASSERT_EQ(boxes_of_one % 2, 0u) << "two documents failed alike\n" << words_;
        boxes_of_one /= 2;

        const auto start_after_second = [&](size_t count) {
            if (count == boxes_of_one) server->start();
        };
        EXPECT_EQ(run_watched(command, stop_after_first, start_after_second), 1) << "the second failed";
        EXPECT_EQ(delivered, 2u) << "the first and the third\n" << words_;
    }
}

TEST_F(Faults, AStoreThatIsNoneIsTold)
{
    for (const auto& server : test::running_servers()) {
        SCOPED_TRACE(server->name());
        const auto folder = moved(company(), *server);
        const std::string store = "odbc:" + server->connection("velora");
        const std::string accounting = "odbc:" + server->connection("accounting");
        struct Case {
            const char* why;
            std::string database, accounting;
            const char* says;
        };
        server->make_database("empty");
        const std::string empty = "odbc:" + server->connection("empty");
        const auto nobody = [](const std::string& connection) {
            const size_t user = connection.find("UID=") + 4;
            return std::string(connection).replace(user, connection.find(';', user) - user, "nobody;PWD=hidden");
        };
        server->make_database("bare");
        const std::string bare = server->connection("bare");
        open_odbc(bare)->Execute("CREATE TABLE Quote (QuoteID INTEGER)");
        for (const auto& c :
             {Case{"a wrong login", nobody(store), accounting, "nobody"},
              Case{"tables of another shape", "odbc:" + bare, accounting, "[Cc]olumn .qu[Tt]ax[Gg]roup"},
              Case{"a database without the tables", empty, accounting, "exist"},
              Case{"an accounting store without them", store, empty, "CompanyInfo"},
              Case{"a database that is not there", "odbc:" + server->connection("nowhere"), accounting, "nowhere"},
              Case{"no such driver", "odbc:Driver={Nothing};Server=x;PWD=hidden", accounting, "of no use"},
              Case{"a wrong port", store + ";Port=1", accounting, "of no use"}}) {
            write_config(folder, server->engine(), c.database, c.accounting);
            const Ran ran = run(in_company(folder, {"quote", "1"}));
            EXPECT_EQ(ran.status, 1) << c.why;
            EXPECT_THAT(ran.err, ::testing::ContainsRegex(c.says)) << c.why;
            EXPECT_THAT(ran.err, ::testing::Not(HasSubstr("hidden"))) << c.why;
        }
    }
}

TEST_F(Faults, ADatabaseWithoutItsProceduresNamesTheOneThatIsMissing)
{
    for (const auto& server : test::running_servers()) {
        if (server->engine() != "SQLServer") continue;  // the plain dialect calls none
        const auto folder = moved(company(), *server);
        const auto quote = in_company(folder, {"quote", "1", "--output", scratch("it.pdf").string()});
        ASSERT_EQ(run(quote).status, 0);
        open_odbc(server->connection("velora"))->Execute("DROP PROCEDURE sprQuoteOneID");
        const Ran ran = run(quote);
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, HasSubstr("sprQuoteOneID does not exist"));
    }
}

TEST_F(Faults, ATransferIsAllOrNothing)
{
    for (const auto& server : test::running_servers()) {
        SCOPED_TRACE(server->name());
        const auto folder = company_copy();
        const auto transfer = [&](std::vector<std::string> more = {}) {
            std::vector<std::string> all{"--folder", folder.string(), "transfer", "--database",
                                         server->connection("velora")};
            all.insert(all.end(), more.begin(), more.end());
            return run(all);
        };
        const auto query = [&](const std::string& sql) {
            return open_odbc(server->connection("velora"))->Open(Command::statement(sql));
        };
        server->make_database("velora");
        const auto whole = open_sqlite((folder / "velora.db").string());
        const auto quotes = whole->Open(Command::statement("SELECT QuoteID FROM Quote"))->RecordCount();

        whole->Execute("UPDATE Details SET deQuantity = 'many' WHERE QuoteID = 3");
        const Ran misfit = transfer();
        EXPECT_EQ(misfit.status, 1);
        EXPECT_THAT(misfit.err, HasSubstr("Details"));
        EXPECT_THAT(misfit.err, HasSubstr("deQuantity"));
        EXPECT_THROW(query("SELECT * FROM Quote"), Fault) << "not even a table was made";
        whole->Execute("UPDATE Details SET deQuantity = 1 WHERE QuoteID = 3");

        const Ran first = transfer();
        EXPECT_EQ(first.status, 0) << first.err;
        EXPECT_THAT(first.out, HasSubstr("rows in"));
        EXPECT_EQ(query("SELECT * FROM Quote")->RecordCount(), quotes);

        const Ran again = transfer();
        EXPECT_EQ(again.status, 1);
        EXPECT_THAT(again.err, HasSubstr("--replace"));
        EXPECT_THAT(again.err, HasSubstr("Details"));
        EXPECT_EQ(transfer({"--replace"}).status, 0);
        EXPECT_EQ(query("SELECT * FROM Quote")->RecordCount(), quotes) << "not twice";

        // A column that is not there stops the copy in its middle.
        open_odbc(server->connection("velora"))->Execute("ALTER TABLE ShipTo DROP COLUMN stFax");
        const Ran broken = transfer({"--replace"});
        EXPECT_EQ(broken.status, 1);
        EXPECT_THAT(broken.err, HasSubstr("held before"));
        EXPECT_EQ(query("SELECT * FROM Quote")->RecordCount(), quotes) << "the old rows stand";
        fs::remove_all(folder);
    }
}

TEST_F(Faults, TheSchemaThatIsPrintedIsTheOneThatIsMade)
{
    for (const auto& server : test::running_servers()) {
        SCOPED_TRACE(server->name());
        const std::string name = server->name() == "MariaDB" ? "mariadb" : "postgresql";
        for (const auto& more : {std::vector<std::string>{}, std::vector<std::string>{"--accounting"}}) {
            std::vector<std::string> command{"schema", name};
            command.insert(command.end(), more.begin(), more.end());
            const Ran printed = run(command);
            ASSERT_EQ(printed.status, 0) << printed.err;
            server->make_database("printed");
            const auto connection = open_odbc(server->connection("printed"));
            std::istringstream script(printed.out);
            std::string statement;
            for (std::string line; std::getline(script, line);) {
                statement += line + "\n";
                if (!line.ends_with(';')) continue;
                EXPECT_NO_THROW(connection->Execute(statement.substr(0, statement.size() - 2))) << statement;
                statement.clear();
            }
            const char* table = more.empty() ? "SELECT * FROM Quote" : "SELECT * FROM IC0480";
            EXPECT_GT(connection->Open(Command::statement(table))->column_count(), 20u);
        }
    }
    for (const char* name : {"sqlite", "sqlserver", "pervasive"}) {
        EXPECT_THAT(run({"schema", name}).out, HasSubstr("Quote")) << name;
    }
    EXPECT_EQ(run({"schema", "oracle"}).status, 2);
}
