#include "adapters/sqlite/connection.h"

#include <sqlite3.h>

#include "adapters/sqlite/server_answers.h"
#include "adapters/sqlite/statement_rows.h"
#include "adapters/sqlite_core/read_transaction.h"
#include "adapters/sqlite_core/schema_writer.h"
#include "adapters/store_schema/procedures.h"

namespace velora {

namespace {

using sqlite::Database;
using sqlite::DriverError;
using sqlite::StatementPool;

constexpr int kUnknownProcedure = 2812;  // the number that a server gives it

class SqliteConnection final : public Connection {
    /// Runs a command; what the driver refuses is a fault with an entry in the errors.
    template <class Run>
    auto reported(const Command& command, Run run)
    {
        try {
            return run();
        } catch (const DriverError& error) {
            throw report(errors_, error, command.text);
        }
    }

public:
    /// @param path  empty for a database in memory
    SqliteConnection(Database database, std::string path, const SqliteOptions& options)
        : pool_(std::make_shared<StatementPool>(std::move(database))), path_(std::move(path)), options_(options)
    {
    }

    std::unique_ptr<Recordset> Open(const Command& command) override
    {
        return reported(command, [&] {
            auto statement = prepared(command);
            return all_rows(statement);
        });
    }

    std::unique_ptr<Rows> Stream(const Command& command) override
    {
        return reported(command, [&]() -> std::unique_ptr<Rows> {
            auto statement = prepared(command);
            if (statement->column_count() == 0) return all_rows(statement);
            return std::make_unique<sqlite::StatementRows>(std::move(statement), errors_);
        });
    }

    std::unique_ptr<Rows> Execute(std::string_view text) override
    {
        return Stream(Command::statement(std::string(text)));
    }

    std::vector<DatabaseError>& Errors() override { return *errors_; }

    std::unique_ptr<Snapshot> begin_snapshot() override
    {
        return reported(Command::statement("BEGIN"), [&] { return sqlite::ReadTransaction::begin(pool_); });
    }

    std::unique_ptr<Connection> open_reader(const QueryLimits& limits) override
    {
        if (!path_.empty()) return open_sqlite_reader(path_, limits, options_);
        throw Fault(fault::kPathAccess, "A database in memory cannot be opened a second time.");
    }

private:
    [[nodiscard]] StatementPool::Loan prepared(const Command& command);
    [[nodiscard]] std::string statement_text(const Command& command) const;
    static std::unique_ptr<Recordset> all_rows(StatementPool::Loan& statement);

    std::shared_ptr<StatementPool> pool_;
    sqlite::ErrorList errors_ = std::make_shared<std::vector<DatabaseError>>();
    std::string path_;
    SqliteOptions options_;
};

std::string SqliteConnection::statement_text(const Command& command) const
{
    if (command.kind == Command::Kind::StoredProcedure) {
        if (const auto* known = stores::find_procedure(command.text)) return std::string(known->statement);
        throw DriverError(kUnknownProcedure, "Could not find stored procedure '" + command.text + "'.");
    }
    return sqlite::batch_statement(command.text, options_.default_language).value_or(command.text);
}

void bind_parameters(StatementPool::Loan& statement, const Command& command)
{
    const auto given = static_cast<int>(command.parameters.size());
    if (given != statement->mark_count()) {
        throw DriverError(SQLITE_RANGE, "the statement has " + std::to_string(statement->mark_count()) +
                                            " parameters and got " + std::to_string(given));
    }
    for (int at = 0; at < given; ++at) statement->bind(at + 1, command.parameters[static_cast<size_t>(at)].value);
}

std::unique_ptr<Recordset> SqliteConnection::all_rows(StatementPool::Loan& statement)
{
    std::vector<std::vector<Value>> rows;
    while (statement->step()) {
        auto& row = rows.emplace_back();
        row.reserve(statement->column_count());
        for (size_t column = 0; column < statement->column_count(); ++column) row.push_back(statement->value(column));
    }
    std::vector<std::string> names;
    for (size_t column = 0; column < statement->column_count(); ++column) {
        names.push_back(statement->columns()->name(column));
    }
    return std::make_unique<Recordset>(std::move(names), std::move(rows));
}

StatementPool::Loan SqliteConnection::prepared(const Command& command)
{
    auto statement = pool_->lend(statement_text(command));
    bind_parameters(statement, command);
    return statement;
}

Database::Options database_options(const SqliteOptions& options)
{
    Database::Options made;
    made.date_order = sqlite::date_order_of(options.default_language);
    made.busy_milliseconds = options.busy_milliseconds;
    return made;
}

}  // namespace

std::unique_ptr<Connection> open_sqlite(const std::string& path, const SqliteOptions& options)
{
    return std::make_unique<SqliteConnection>(Database::open(path, database_options(options)), path, options);
}

std::unique_ptr<Connection> open_sqlite_reader(const std::string& path, const QueryLimits& limits,
                                               const SqliteOptions& options)
{
    auto guarded = database_options(options);
    guarded.access = Database::Access::Guarded;
    guarded.limits = limits;
    return std::make_unique<SqliteConnection>(Database::open(path, guarded), path, options);
}

std::unique_ptr<Connection> open_sqlite_in_memory(const SqliteOptions& options)
{
    auto database = Database::memory(database_options(options));
    sqlite::create_tables(database, stores::product_tables());
    return std::make_unique<SqliteConnection>(std::move(database), std::string(), options);
}

}  // namespace velora
