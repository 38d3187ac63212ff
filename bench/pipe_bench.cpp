// From the two stores to a finished data pipe, beside the same SQL statements run bare through SQLite's C interface.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>

#include "adapters/accounting_sql/schema.h"
#include "adapters/accounting_sql/session.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/schema.h"
#include "pricing/taxes.h"
#include "reports/customer_list.h"
#include "reports/quote_report.h"
#include "session/lists.h"
#include "values/fault.h"

namespace {

using namespace velora;
namespace fs = std::filesystem;

constexpr int kLines = 5'000;
constexpr int kItems = 1'000;
constexpr int kCustomers = 100'000;

void run_sql(const fs::path& file, const std::string& sql)
{
    sqlite3* database = nullptr;
    sqlite3_open(file.c_str(), &database);
    // The date collation is the adapter's; rows are only inserted here.
    sqlite3_create_collation(database, "VLDATE", SQLITE_UTF8, nullptr,
                             [](void*, int, const void*, int, const void*) { return 0; });
    char* message = nullptr;
    if (sqlite3_exec(database, ("BEGIN;" + sql + "COMMIT;").c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        throw std::runtime_error(message);
    }
    sqlite3_close(database);
}

std::string number(int value)
{
    return std::to_string(value);
}

std::string quote_rows()
{
    std::string sql =
        "INSERT INTO Quote (QuoteID, QuoteNumber, AccPacID, quDateEnter, quCurCode, quTaxGroup, quPriceList, "
        "quTaxClass1, "
        "quTaxClass2) VALUES (1, 'Q-1', '1200', '2026-03-01', 'CAD', 'TWO', 'STD', '1', '1');"
        "INSERT INTO Defaults (Company, DefaultID, mdUsePLDef, mdDefaultPL, mdShowCustItem) VALUES ('BENCH', 1, 0, "
        "'STD', 0);";
    for (int line = 1; line <= kLines; ++line) {
        const auto item = "P-" + number(100'000 + line * 7919 % kItems);
        sql +=
            "INSERT INTO Details (QuoteID, Line, APItem, deIType, deDType, deDesc, deQuantity, deQtyTransfer, deUofM, "
            "deConvFactor, deQuotedPrice, dePriceList, deDiscount, deCost, deLocation, deCategory, deWeight, "
            "deLeadTime, "
            "deTaxClass1, deTaxClass2, deTaxIncl1, deTaxIncl2) VALUES (1, " +
            number(line) + ", '" + item + "', 30, 20, 'Ball bearing, two rubber seals, size " + number(line % 97) +
            "', " + number(line % 40 + 1) + ", 0, 'EA', 1, " + number(line % 900 + 5) +
            ".35, 'STD', 1.25, 3.1, '1', 'A" + number(line % 20) + "', 0.75, 'In stock', '1', '1', '0', '0');";
    }
    return sql;
}

std::string customer_rows()
{
    std::string sql;
    for (int id = 1; id <= kCustomers; ++id) {
        const auto n = number(id);
        sql += "INSERT INTO Customer VALUES (" + n + ", 'C" + number(1'000'000 + id) + "', 'Customer number " + n +
               " Limited', 'Cust" + n + "', '" + n + " Harbour Road', 'Unit " + n +
               "', NULL, NULL, 'Halifax', 'NS', 'Canada', 'B3J " + number(id % 10) + "X1', '902555" +
               number(1000 + id % 9000) + "', '902556" + number(1000 + id % 9000) + "', 'Contact " + n + "', 'orders" +
               n + "@example.com', 'info" + n + "@example.com', 'RETAIL', 'STD', 'N30', 'NS', " + number(id % 6) +
               ", NULL, 'CAD', 'TRADE', '1', '1', '1', '1', '1', '', '', '', '', '', 0);";
    }
    return sql;
}

std::string accounting_rows()
{
    std::string sql =
        "INSERT INTO CompanyInfo (CompanyID, Name, HomeCurrency, Multicurrency, PhoneFormat) VALUES ('BENCH', 'Bench', "
        "'CAD', 1, 1); INSERT INTO CurrencyInfo VALUES ('CAD', '$', ',', '.', 2, 2, 2);"
        "INSERT INTO ActiveApplications VALUES (1, 'IC', '60A');"
        "INSERT INTO TX0003 (GROUPID, AUTHORITY1, TAXABLE1, AUTHORITY2, TAXABLE2) VALUES ('TWO', 'FED', 0, 'PROV', 0);"
        "INSERT INTO TX0004 (AUTHORITY, TTYPE, BUYERCLASS, ITEMRATE1) VALUES ('FED', 1, '1', 5), ('PROV', 1, '1', "
        "9.975);"
        "INSERT INTO IC0370 VALUES ('1', 'Main'); INSERT INTO IC0390 VALUES ('STD', 'Standard');"
        "INSERT INTO AR0024 (IDCUST, NAMECUST) VALUES ('1200', 'Bay Works');";
    for (int category = 0; category < 20; ++category)
        sql += "INSERT INTO IC0210 VALUES ('A" + number(category) + "', 'x');";
    for (int at = 0; at < kItems; ++at) {
        const auto item = "P-" + number(100'000 + at);
        sql += "INSERT INTO IC0310 (ITEMNO, FMTITEMNO) VALUES ('" + item + "', '" + item + "');";
        sql +=
            "INSERT INTO IC0480 (CURRENCY, ITEMNO, PRICELIST, PRICETYPE, PRICEBASE, PRICEFMT, DBASEPRICE, MARKUPCOST, "
            "PRCNTLVL1, PRCNTLVL2, PRCNTLVL3, PRCNTLVL4, PRCNTLVL5, PRICEQTY1, PRICEQTY2, PRICEQTY3, PRICEQTY4, "
            "PRICEQTY5, DBASEUNIT, DBASECONV) VALUES ('CAD', '" +
            item + "', 'STD', 1, 2, 1, " + number(at + 5) + ".95, 3, 1, 2, 3, 4, 5, 10, 20, 30, 40, 50, 'EA', 1);";
    }
    return sql;
}

/// The stores, filled once.
const fs::path& stores()
{
    static const fs::path folder = [] {
        fs::path made(VELORA_BENCH_SCRATCH);
        fs::remove_all(made);
        fs::create_directories(made);
        create_product_schema((made / "velora.db").string());
        create_accounting_schema((made / "accounting.db").string());
        run_sql(made / "velora.db", quote_rows() + customer_rows());
        run_sql(made / "accounting.db", accounting_rows());
        return made;
    }();
    return folder;
}

/// Takes the pipe and lets it go: what is measured ends there.
class NoReport final : public OpenedReport {
public:
    [[nodiscard]] const std::vector<TableSource::Field>& fields() const override { return none_; }
    [[nodiscard]] bool brings_its_own_data() const override { return false; }
    void SetDataSource(std::shared_ptr<TableSource>) override {}
    void SetParameter(const std::string&, Value) override {}
    void SelectPrinter(const std::string&, const std::string&, const std::string&) override {}
    void PaperOrientation(int) override {}
    void PaperSource(int) override {}
    void PrintOut() override {}
    void Export(ExportFormat, const std::string&) override {}
    std::shared_ptr<PageView> View() override { return nullptr; }
    [[nodiscard]] const std::vector<std::string>& warnings() const override { return texts_; }

private:
    std::vector<TableSource::Field> none_;
    std::vector<std::string> texts_;
};

class NoEngine final : public ReportEngine {
public:
    std::shared_ptr<OpenedReport> OpenReport(const std::string&) override { return std::make_shared<NoReport>(); }
};

class NoSettings final : public SettingsStore {
public:
    [[nodiscard]] std::string get(std::string_view, std::string_view, std::string_view,
                                  std::string_view otherwise) const override
    {
        return std::string(otherwise);
    }
    void set(std::string_view, std::string_view, std::string_view, std::string_view) override {}
};

class BenchClock final : public Clock {
public:
    [[nodiscard]] DateTime now() const override { return *DateTime::from_iso("2026-03-13"); }
};

class Bench {
public:
    Bench()
    {
        state.gConn = open_sqlite((stores() / "velora.db").string());
        state.gSess = open_accounting_store((stores() / "accounting.db").string());
        state.gEngine = eDBSQLServer;
        state.gMultiCurr = true;
        state.ports.engine = &engine_;
        state.ports.settings = &settings_;
        state.ports.clock = &clock_;
        Get_QuoteStatus(state, false);
        Get_QuoteType(state, false);
        Get_QuoteConfid(state, false);
        Get_Defaults(state);
        Get_ModuleVersions(state);
        state.ports.on_pipe = [this](const DataPipeRecordset& pipe) {
            rows = pipe.RecordCount();
            bytes = pipe.bytes_held();
        };
    }

    SessionState state;
    size_t rows = 0;
    size_t bytes = 0;

private:
    NoEngine engine_;
    NoSettings settings_;
    BenchClock clock_;
};

void quote_pipe(benchmark::State& measured)
{
    Bench bench;
    for (auto round : measured) Print_Quote(bench.state, 1, "", 0, false, false);
    if (bench.rows != kLines) throw std::runtime_error("the quote was not printed");
    measured.counters["bytes_a_row"] = static_cast<double>(bench.bytes) / kLines;
    measured.counters["fields"] =
        benchmark::Counter(157.0 * kLines * static_cast<double>(measured.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(quote_pipe)->Unit(benchmark::kMillisecond);

void customer_pipe(benchmark::State& measured)
{
    Bench bench;
    for (auto round : measured) Print_CustomerList(bench.state, "", false, false);
    if (bench.rows != kCustomers) throw std::runtime_error("the list was not printed");
    measured.SetItemsProcessed(measured.iterations() * kCustomers);
    measured.counters["bytes_a_row"] = static_cast<double>(bench.bytes) / kCustomers;
}
BENCHMARK(customer_pipe)->Unit(benchmark::kMillisecond);

struct Statement {
    std::string file;
    std::string sql;
};

std::vector<Statement>* recorded = nullptr;

int record(unsigned, void*, void* statement, void*)
{
    auto* handle = static_cast<sqlite3_stmt*>(statement);
    if (recorded == nullptr || sqlite3_stmt_readonly(handle) == 0) return 0;
    char* sql = sqlite3_expanded_sql(handle);
    recorded->push_back({sqlite3_db_filename(sqlite3_db_handle(handle), "main"), sql});
    sqlite3_free(sql);
    return 0;
}

int trace_connection(sqlite3* database, const char**, const void*)
{
    return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, record, nullptr);
}

/// Every statement that a run of the quote sends, with its values in place.
std::vector<Statement> statements_of_a_quote()
{
    std::vector<Statement> statements;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(trace_connection));
    {
        Bench bench;
        recorded = &statements;
        Print_Quote(bench.state, 1, "", 0, false, false);
        recorded = nullptr;
    }
    sqlite3_reset_auto_extension();
    return statements;
}

/// Prepared once for each text with its values, as a program without a cache of statements does it.
void run_bare(const std::map<std::string, sqlite3*>& databases, const std::vector<Statement>& statements)
{
    for (const auto& [file, sql] : statements) {
        sqlite3_stmt* handle = nullptr;
        sqlite3_prepare_v2(databases.at(file), sql.c_str(), -1, &handle, nullptr);
        const int columns = sqlite3_column_count(handle);
        while (sqlite3_step(handle) == SQLITE_ROW) {
            for (int column = 0; column < columns; ++column) {
                benchmark::DoNotOptimize(sqlite3_column_text(handle, column));
            }
        }
        sqlite3_finalize(handle);
    }
}

void quote_statements_bare(benchmark::State& measured)
{
    const auto statements = statements_of_a_quote();
    std::map<std::string, sqlite3*> databases;
    for (const auto& statement : statements) {
        auto& database = databases[statement.file];
        if (database != nullptr) continue;
        sqlite3_open(statement.file.c_str(), &database);
        sqlite3_create_collation(database, "VLDATE", SQLITE_UTF8, nullptr,
                                 [](void*, int, const void*, int, const void*) { return 0; });
    }
    for (auto round : measured) run_bare(databases, statements);
    measured.counters["statements"] = static_cast<double>(statements.size());
    for (const auto& [file, database] : databases) sqlite3_close(database);
}
BENCHMARK(quote_statements_bare)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
