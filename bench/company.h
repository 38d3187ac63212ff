#pragma once

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "adapters/accounting_sql/schema.h"
#include "adapters/accounting_sql/session.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/schema.h"
#include "reports/data_pipe.h"
#include "reports/preparation.h"

// A company to measure with: two stores filled by SQL, a state over them whose reports go nowhere, and the statements
// of a run to send them bare.

namespace velora::bench {

namespace fs = std::filesystem;

inline void run_sql(const fs::path& file, const std::string& sql)
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

inline std::string number(int value)
{
    return std::to_string(value);
}

/// Stores of the real schemas, filled anew, or left as the run before made them where VELORA_BENCH_KEEP is set.
inline fs::path make_stores(const std::string& name, const std::string& product_sql, const std::string& accounting_sql)
{
    fs::path made = fs::path(VELORA_BENCH_SCRATCH) / name;
    const fs::path whole = made / "whole";
    if (std::getenv("VELORA_BENCH_KEEP") != nullptr && fs::exists(whole)) return made;
    fs::remove_all(made);
    fs::create_directories(made);
    create_product_schema((made / "velora.db").string());
    create_accounting_schema((made / "accounting.db").string());
    run_sql(made / "velora.db", product_sql);
    run_sql(made / "accounting.db", accounting_sql);
    std::ofstream(whole).put('\n');
    return made;
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
    explicit Bench(const fs::path& stores)
    {
        state.gConn = open_sqlite((stores / "velora.db").string());
        state.gSess = open_accounting_store((stores / "accounting.db").string());
        state.gEngine = eDBSQLServer;
        state.gMultiCurr = true;
        state.ports.engine = &engine_;
        state.ports.settings = &settings_;
        state.ports.clock = &clock_;
        load_lists(state);
        load_company(state);
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

struct Statement {
    std::string file;
    std::string sql;
};

inline std::vector<Statement>* recorded = nullptr;

inline int record(unsigned, void*, void* statement, void*)
{
    auto* handle = static_cast<sqlite3_stmt*>(statement);
    if (recorded == nullptr || sqlite3_stmt_readonly(handle) == 0) return 0;
    char* sql = sqlite3_expanded_sql(handle);
    recorded->push_back({sqlite3_db_filename(sqlite3_db_handle(handle), "main"), sql});
    sqlite3_free(sql);
    return 0;
}

inline int trace_connection(sqlite3* database, const char**, const void*)
{
    return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, record, nullptr);
}

/// Every statement that a run sends, with its values in place.
inline std::vector<Statement> statements_of(const fs::path& stores, const std::function<void(Bench&)>& run)
{
    std::vector<Statement> statements;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(trace_connection));
    {
        Bench bench(stores);
        recorded = &statements;
        run(bench);
        recorded = nullptr;
    }
    sqlite3_reset_auto_extension();
    return statements;
}

/// Sends them through the library's own interface and reads all their cells. Each is prepared for its values, as a
/// program without a cache of statements does it.
inline void measure_bare(benchmark::State& measured, const std::vector<Statement>& statements)
{
    std::map<std::string, sqlite3*> databases;
    for (const auto& statement : statements) {
        auto& database = databases[statement.file];
        if (database != nullptr) continue;
        sqlite3_open(statement.file.c_str(), &database);
        sqlite3_create_collation(database, "VLDATE", SQLITE_UTF8, nullptr,
                                 [](void*, int, const void*, int, const void*) { return 0; });
    }
    for (auto round : measured) {
        for (const auto& [file, sql] : statements) {
            sqlite3_stmt* handle = nullptr;
            if (sqlite3_prepare_v2(databases.at(file), sql.c_str(), -1, &handle, nullptr) != SQLITE_OK) {
                throw std::runtime_error(sql);
            }
            const int columns = sqlite3_column_count(handle);
            while (sqlite3_step(handle) == SQLITE_ROW) {
                for (int column = 0; column < columns; ++column) {
                    benchmark::DoNotOptimize(sqlite3_column_text(handle, column));
                }
            }
            sqlite3_finalize(handle);
        }
    }
    measured.counters["statements"] = static_cast<double>(statements.size());
    for (const auto& [file, database] : databases) sqlite3_close(database);
}

}  // namespace velora::bench
