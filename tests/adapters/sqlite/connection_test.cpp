#include "adapters/sqlite/connection.h"

#include "adapters/scratch.h"
#include "adapters/sqlite/schema.h"

using namespace velora;
using test::fault_of;
using test::Scratch;

namespace {

std::unique_ptr<Rows> query(Connection& connection, const std::string& text)
{
    return connection.Stream(Command::statement(text));
}

std::unique_ptr<Recordset> in_memory(Connection& connection, const std::string& text)
{
    return connection.Open(Command::statement(text));
}

std::vector<std::string> first_column(Rows& rows)
{
    std::vector<std::string> texts;
    for (; !rows.at_eof(); rows.MoveNext()) texts.push_back(to_text(rows.value(size_t{0})));
    return texts;
}

/// A connection with statuses that stand in another order than their keys.
std::unique_ptr<Connection> with_statuses()
{
    auto connection = open_sqlite_in_memory();
    connection->Execute(
        "INSERT INTO QuoteStatus VALUES (3, 'L', 'Lost', NULL, 1), (1, 'O', 'Open', NULL, 1), (2, 'X', '', NULL, 0)");
    return connection;
}

}  // namespace

TEST(SqliteConnection, BothDialectsAreUnderstood)
{
    const auto connection = with_statuses();
    for (const char* text : {
             "SELECT [qsName] FROM [QuoteStatus] WHERE ([QuoteStatusID]=1);",
             "SELECT [QuoteStatus].[qsName] FROM [QuoteStatus]WHERE ([QuoteStatus].[QSACTIVE]=1) AND ([qsCode]='o') ;",
             "SELECT qsName FROM QuoteStatus WHERE QuoteStatusID=1",
             "SELECT QSNAME FROM quotestatus WHERE (QuoteStatus.qsCode = 'O')",
         }) {
        const auto rows = query(*connection, text);
        ASSERT_FALSE(rows->at_eof()) << text;
        EXPECT_EQ(to_text(rows->value("QsName")), "Open") << text;
    }
}

TEST(SqliteConnection, StoredProceduresAnswerTheirRows)
{
    struct Case {
        const char* name;
        std::vector<Value> parameters;
        std::vector<std::string> expected;
    };
    const auto connection = with_statuses();
    connection->Execute("INSERT INTO Defaults (Company) VALUES ('DEMOCO')");
    connection->Execute("INSERT INTO Details (QuoteID, Line) VALUES (7, 2), (7, 1), (8, 1)");
    connection->Execute("INSERT INTO CommIns VALUES (7, 1, 1, 'a'), (7, 1, 2, 'b')");
    for (const auto& c : {Case{"sprQuoteStatus", {}, {"1", "2", "3"}}, Case{"SPRQUOTESTATUSACTIVE", {}, {"1", "3"}},
                          Case{"sprReasons", {}, {}}, Case{"sprQuoteDefaults", {"democo"}, {"DEMOCO"}},
                          Case{"sprQuoteDefaults", {"' OR 1=1 --"}, {}}, Case{"sprDetailAll", {7}, {"7", "7"}},
                          Case{"sprDetailsCommInsAll", {7}, {"7", "7", "7"}}}) {
        auto command = Command::procedure(c.name);
        for (const auto& value : c.parameters) command.parameters.push_back({"P", value});
        EXPECT_EQ(first_column(*connection->Stream(command)), c.expected) << c.name;
        EXPECT_EQ(first_column(*connection->Open(command)), c.expected) << c.name;
    }
}

TEST(SqliteConnection, TheServerBatchesTellTheLanguageOfDates)
{
    for (const auto& [language, format] : {std::pair{0, "mdy"}, std::pair{23, "dmy"}, std::pair{3, "ymd"}}) {
        const auto connection = open_sqlite_in_memory({.default_language = language});
        const auto configured = connection->Execute("sp_configure 'default language'");
        EXPECT_EQ(configured->value("config_value"), Value(language));
        auto languages = connection->Execute("sp_helplanguage");
        while (languages->value("langid") != Value(language)) languages->MoveNext();
        EXPECT_EQ(languages->value("dateformat"), Value(format));
        EXPECT_FALSE(connection->Execute("SELECT 1 WHERE 1 = 1")->is_empty());
    }
}

TEST(SqliteConnection, DeclaredTypesMakeDatesAndMoney)
{
    const auto connection = open_sqlite_in_memory();
    connection->Execute(
        "INSERT INTO Details (QuoteID, deShipDate, deCost, deQuantity, deHasItemCom, APItem)"
        " VALUES (1, '3/5/2024 10:30', 12.34567, 2, 1, 17), (2, 'soon', 5, NULL, NULL, NULL)");
    const auto rows = query(*connection, "SELECT * FROM Details");
    EXPECT_EQ(rows->value("deShipDate"), Value(*DateTime::from_ymd(2024, 3, 5, 10, 30)));
    EXPECT_EQ(rows->value("deCost"), Value(Fixed4::from_units(123457)));
    EXPECT_EQ(rows->value("deQuantity"), Value(2.0));
    EXPECT_EQ(rows->value("deHasItemCom"), Value(1));
    EXPECT_EQ(rows->value("APItem"), Value("17"));
    rows->MoveNext();
    EXPECT_EQ(rows->value("deShipDate"), Value("soon")) << "text that is no date stays text";
    EXPECT_EQ(rows->value("deCost"), Value(Fixed4::from_units(50000)));
    EXPECT_TRUE(rows->value("deQuantity").is_null());
}

TEST(SqliteConnection, ParametersCarryAnyValueUnchanged)
{
    const auto connection = open_sqlite_in_memory();
    for (const char* text :
         {"O'Brien", "a;b", "\"quoted\"", "'; DROP TABLE Quote; --", "[x]", "?1", "é€漢", " padded ", ""}) {
        const std::vector<Command::Parameter> parameters{{"name", text}, {"id", 5}};
        connection->Execute("DELETE FROM Customer");
        connection->Open(
            {Command::Kind::Text, "INSERT INTO Customer (cuFullName, CustomerID) VALUES (?, ?)", parameters});
        const auto rows = connection->Stream(
            {Command::Kind::Text, "SELECT * FROM Customer WHERE cuFullName = ? AND CustomerID = ?", parameters});
        ASSERT_FALSE(rows->is_empty()) << text;
        EXPECT_EQ(rows->value("cuFullName"), Value(text));
    }
}

TEST(SqliteConnection, StreamedRowsReadTheTableWhileItIsWalked)
{
    const auto connection = open_sqlite_in_memory();
    connection->Execute("INSERT INTO Customer (CustomerID) VALUES (1), (2)");
    const auto streamed = query(*connection, "SELECT CustomerID FROM Customer");
    const auto held = in_memory(*connection, "SELECT CustomerID FROM Customer");
    connection->Execute("INSERT INTO Customer (CustomerID) VALUES (3)");
    EXPECT_THAT(first_column(*streamed), testing::ElementsAre("1", "2", "3"))
        << "rows held at opening would lack the third";
    EXPECT_THAT(first_column(*held), testing::ElementsAre("1", "2"));
    streamed->MoveFirst();
    EXPECT_EQ(streamed->value("CustomerID"), Value(1)) << "going back to the first row runs the query again";
}

TEST(SqliteConnection, ARecordsetLivesOnAndItsChangesStayInMemory)
{
    auto connection = with_statuses();
    const auto rows = in_memory(*connection, "SELECT * FROM QuoteStatus ORDER BY QuoteStatusID");
    rows->Disconnect();
    rows->put("qsName", "Changed");
    rows->AddNew();
    rows->put("qsCode", "N");
    EXPECT_EQ(rows->RecordCount(), 4u);
    EXPECT_TRUE(rows->value("qsName").is_null()) << "a new row is of nulls";
    EXPECT_EQ(first_column(*query(*connection, "SELECT qsName FROM QuoteStatus ORDER BY QuoteStatusID")),
              (std::vector<std::string>{"Open", "", "Lost"}));
    connection.reset();
    rows->AbsolutePosition(1);
    EXPECT_EQ(rows->value("qsName"), Value("Changed"));
}

TEST(SqliteConnection, EmptyClosedAndForeignAccessFails)
{
    const auto connection = with_statuses();
    const auto check = [](Rows& empty, Rows& rows) {
        EXPECT_TRUE(empty.is_empty());
        EXPECT_EQ(fault_of([&] { (void)empty.value("reCode"); }).number(), fault::kNoCurrentRow);
        EXPECT_EQ(fault_of([&] { empty.MoveFirst(); }).number(), fault::kNoCurrentRow);
        EXPECT_EQ(fault_of([&] { (void)rows.value("reCode"); }).number(), fault::kNoSuchColumn);
        rows.Close();
        EXPECT_EQ(fault_of([&] { (void)rows.at_eof(); }).number(), fault::kClosedObject);
    };
    check(*query(*connection, "SELECT * FROM Reason"), *query(*connection, "SELECT * FROM QuoteStatus"));
    check(*in_memory(*connection, "SELECT * FROM Reason"), *in_memory(*connection, "SELECT * FROM QuoteStatus"));
}

TEST(SqliteConnection, FailuresAreReportedAsADriverDoes)
{
    struct Case {
        Command command;
        const char* description;
        const char* state;
    };
    const auto connection = with_statuses();
    for (const auto& c : {
             Case{Command::statement("SELECT * FROM Nowhere"), "[Velora][SQLite]no such table: Nowhere", "42S02"},
             Case{Command::statement("SELECT Wrong FROM Quote"), "[Velora][SQLite]no such column: Wrong", "42S22"},
             Case{Command::statement("SELECT \"text\" FROM Quote"), "[Velora][SQLite]no such column: text", "42S22"},
             Case{Command::statement("SELEKT"), "[Velora][SQLite]near \"SELEKT\": syntax error", "42000"},
             Case{Command::statement("SELECT 1; DELETE FROM QuoteStatus"),
                  "[Velora][SQLite]more than one statement in the text", "42000"},
             Case{Command::statement(""), "[Velora][SQLite]there is no statement in the text", "42000"},
             Case{Command::statement("ATTACH '/tmp/other.db' AS other"),
                  "[Velora][SQLite]too many attached databases - max 0", "42000"},
             Case{Command::procedure("sprNothing"), "[Velora][SQLite]Could not find stored procedure 'sprNothing'.",
                  "42000"},
             Case{Command::procedure("sprQuoteOneID"), "[Velora][SQLite]the statement has 1 parameters and got 0",
                  "07002"},
         }) {
        connection->Errors().clear();
        const auto fault = fault_of([&] { connection->Stream(c.command); });
        EXPECT_EQ(fault.number(), fault::kDatabase) << c.command.text;
        EXPECT_EQ(fault.description(), c.description);
        EXPECT_EQ(fault.where(), c.command.text);
        ASSERT_EQ(connection->Errors().size(), 1u) << c.command.text;
        EXPECT_EQ(connection->Errors()[0].Description, c.description);
        EXPECT_EQ(connection->Errors()[0].SQLState, c.state) << c.command.text;
        EXPECT_NE(connection->Errors()[0].NativeError, 0);
        EXPECT_NE(connection->Errors()[0].Source, "");
    }
    EXPECT_EQ(first_column(*query(*connection, "SELECT count(*) FROM QuoteStatus")).at(0), "3");
}

TEST(SqliteConnection, OneTextServesSeveralRecordsetsAtOnce)
{
    const auto connection = with_statuses();
    const auto outer = query(*connection, "SELECT * FROM QuoteStatus ORDER BY QuoteStatusID");
    const auto inner = query(*connection, "SELECT * FROM QuoteStatus ORDER BY QuoteStatusID");
    inner->MoveNext();
    EXPECT_EQ(outer->value("QuoteStatusID"), Value(1));
    EXPECT_EQ(inner->value("QuoteStatusID"), Value(2));
}

TEST(SqliteConnection, AStatementWithoutRowsAnswersAnEmptyRecordset)
{
    const auto connection = with_statuses();
    const auto rows = connection->Execute("UPDATE QuoteStatus SET qsActive = 0");
    EXPECT_TRUE(rows->is_empty());
    EXPECT_EQ(rows->column_count(), 0u);
    EXPECT_EQ(first_column(*query(*connection, "SELECT sum(qsActive) FROM QuoteStatus")).at(0), "0");
}
