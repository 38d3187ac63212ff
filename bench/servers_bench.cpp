// Rows of twenty columns from a server: through the port, and by the driver's calls made bare.
#include <benchmark/benchmark.h>
#include <sql.h>
#include <sqlext.h>

#include <array>
#include <cstring>
#include <iostream>

#include "adapters/odbc/connection.h"
#include "adapters/odbc/server_store.h"
#include "support/database_server.h"

namespace {

using namespace velora;

constexpr int kRows = 20'000;
constexpr int kWhole = 8, kReal = 5, kText = 7;
constexpr const char* kQuery = "SELECT * FROM t";

std::string columns_of(const test::DatabaseServer& server)
{
    const bool is_mariadb = server.name() == "MariaDB";
    std::string sql;
    for (int at = 0; at < kWhole; ++at) sql += "i" + std::to_string(at) + " INTEGER, ";
    for (int at = 0; at < kReal; ++at) {
        sql += "d" + std::to_string(at) + (is_mariadb ? " DOUBLE, " : " DOUBLE PRECISION, ");
    }
    for (int at = 0; at < kText; ++at) sql += (at > 0 ? ", t" : "t") + std::to_string(at) + " VARCHAR(60)";
    return sql;
}

void fill(test::DatabaseServer& server)
{
    server.make_database("bench");
    const auto store = open_server_store(server.connection("bench"));
    store->run("CREATE TABLE t (" + columns_of(server) + ")");
    std::string marks = "?";
    for (int at = 1; at < kWhole + kReal + kText; ++at) marks += ",?";
    store->begin();
    for (int row = 0; row < kRows; ++row) {
        std::vector<Command::Parameter> cells;
        for (int at = 0; at < kWhole; ++at) cells.push_back({{}, int64_t{row} + at});
        for (int at = 0; at < kReal; ++at) cells.push_back({{}, row / 7.0 + at});
        for (int at = 0; at < kText; ++at) cells.push_back({{}, "Text number " + std::to_string(row * 31 + at)});
        store->insert("INSERT INTO t VALUES (" + marks + ")", cells);
    }
    store->commit();
}

void through_the_port(benchmark::State& state, const std::string& connection_string)
{
    const auto connection = open_odbc(connection_string);
    for (auto _ : state) {
        size_t characters = 0;
        const auto rows = connection->Stream(Command::statement(kQuery));
        for (; !rows->at_eof(); rows->MoveNext()) {
            for (size_t column = 0; column < rows->column_count(); ++column) {
                const auto* text = rows->value(column).get_if<std::string>();
                characters += text != nullptr ? text->size() : 1;
            }
        }
        benchmark::DoNotOptimize(characters);
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}

/// Whole and real numbers in their own form, texts as the driver's UTF-16, as every program that is sure of them.
void bare(benchmark::State& state, const std::string& connection_string)
{
    SQLHENV environment = nullptr;
    SQLHDBC connection = nullptr;
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
    SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
    auto text = connection_string;
    SQLDriverConnect(connection, nullptr, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS, nullptr, 0, nullptr,
                     SQL_DRIVER_NOPROMPT);
    for (auto _ : state) {
        SQLHSTMT statement = nullptr;
        SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement);
        SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(kQuery)), SQL_NTS);
        std::array<int64_t, kWhole> whole{};
        std::array<double, kReal> real{};
        std::array<std::array<char16_t, 128>, kText> texts{};
        std::array<SQLLEN, kWhole + kReal + kText> lengths{};
        SQLUSMALLINT column = 1;
        const auto bind = [&](SQLSMALLINT type, void* cell, size_t size) {
            SQLBindCol(statement, column, type, cell, static_cast<SQLLEN>(size), &lengths[column - 1U]);
            ++column;
        };
        for (auto& cell : whole) bind(SQL_C_SBIGINT, &cell, sizeof cell);
        for (auto& cell : real) bind(SQL_C_DOUBLE, &cell, sizeof cell);
        for (auto& cell : texts) bind(SQL_C_WCHAR, cell.data(), sizeof cell);
        SQLLEN characters = 0;
        int rows = 0;
        while (SQL_SUCCEEDED(SQLFetch(statement))) {
            for (int at = kWhole + kReal; at < kWhole + kReal + kText; ++at) characters += lengths[at] / 2;
            ++rows;
        }
        if (rows != kRows) state.SkipWithError("not all rows came");
        benchmark::DoNotOptimize(characters);
        SQLFreeHandle(SQL_HANDLE_STMT, statement);
    }
    state.SetItemsProcessed(state.iterations() * kRows);
    SQLDisconnect(connection);
    SQLFreeHandle(SQL_HANDLE_DBC, connection);
    SQLFreeHandle(SQL_HANDLE_ENV, environment);
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for (const auto& server : test::running_servers()) {
        fill(*server);
        const auto connection = server->connection("bench");
        benchmark::RegisterBenchmark(("bare/" + server->name()).c_str(),
                                     [connection](benchmark::State& state) { bare(state, connection); });
        benchmark::RegisterBenchmark(("port/" + server->name()).c_str(),
                                     [connection](benchmark::State& state) { through_the_port(state, connection); });
    }
    if (test::running_servers().empty()) std::cout << "NO DATABASE SERVER IS INSTALLED\n";
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
