#include "adapters/odbc/connection.h"

#include <algorithm>

#include "adapters/odbc/link.h"
#include "adapters/odbc/statement_rows.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {

namespace {

using odbc::DriverError;
using odbc::Link;
using odbc::Server;
using odbc::StatementPool;

/// Only a name goes into the text of a call.
bool is_procedure_name(std::string_view name)
{
    const auto is_of_name = [](char c) {
        return c == '_' || c == '.' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    };
    return !name.empty() && std::ranges::all_of(name, is_of_name);
}

std::string call_of(const Command& command)
{
    if (!is_procedure_name(command.text)) {
        throw DriverError("42000", "Could not find stored procedure '" + command.text + "'.");
    }
    std::string marks;
    for (size_t at = 0; at < command.parameters.size(); ++at) marks += at == 0 ? "?" : ",?";
    return "{CALL " + command.text + "(" + marks + ")}";
}

/// SQL Server takes a procedure's name alone for a call of it. The two such batches that there are become calls for a
/// server that has these procedures and needs the word.
std::string as_called(std::string_view text, Server server)
{
    if (server == Server::SqlServer) return std::string(text);
    std::string_view name = text;
    while (name.ends_with(';') || name.ends_with(' ')) name.remove_suffix(1);
    if (same_name(name, "sp_helplanguage")) return "CALL sp_helplanguage()";
    if (same_name(name, "sp_configure 'default language'")) return "CALL sp_configure('default language')";
    return std::string(text);
}

class OdbcConnection final : public Connection {
public:
    explicit OdbcConnection(std::shared_ptr<Link> link)
        : link_(std::move(link)), shared_(std::make_shared<odbc::Shared>(link_))
    {
    }

    std::unique_ptr<Recordset> Open(const Command& command) override
    {
        return shared_->reported(command.text, [&] {
            auto statement = run(command);
            return all_rows(*statement);
        });
    }

    std::unique_ptr<Rows> Stream(const Command& command) override
    {
        return shared_->reported(command.text, [&]() -> std::unique_ptr<Rows> {
            auto statement = run(command);
            if (statement->columns()->count() == 0) return all_rows(*statement);
            return std::make_unique<odbc::StatementRows>(std::move(statement), command.parameters, shared_);
        });
    }

    std::unique_ptr<Rows> Execute(std::string_view text) override
    {
        return Stream(Command::statement(std::string(text)));
    }

    std::vector<DatabaseError>& Errors() override { return shared_->errors(); }

    std::unique_ptr<Snapshot> begin_snapshot() override
    {
        return shared_->reported("BEGIN", [&] { return odbc::begin_snapshot(link_); });
    }

    std::unique_ptr<Connection> open_reader(const QueryLimits& limits) override
    {
        return open_odbc_reader(link_->connection_string(), limits);
    }

private:
    StatementPool::Loan run(const Command& command)
    {
        auto& pool = link_->pool();
        shared_->make_room();
        const bool is_call = command.kind == Command::Kind::StoredProcedure;
        if (!is_call && command.parameters.empty()) {
            const auto text = as_called(command.text, pool.source()->server());
            auto statement = odbc::once(pool, text);
            statement->execute_directly(text);
            return statement;
        }
        auto statement = pool.lend(is_call ? call_of(command) : command.text);
        statement->execute(command.parameters);
        return statement;
    }

    std::shared_ptr<Link> link_;
    std::shared_ptr<odbc::Shared> shared_;
};

}  // namespace

std::unique_ptr<Connection> open_odbc(const std::string& connection_string, const OdbcOptions& options)
{
    return std::make_unique<OdbcConnection>(
        odbc::open_link(connection_string, {options.timeout, false, options.one_statement}));
}

}  // namespace velora
