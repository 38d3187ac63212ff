#include "adapters/odbc/connection.h"
#include "adapters/odbc/link.h"
#include "adapters/odbc/reader_guard.h"
#include "adapters/odbc/statement_rows.h"
#include "values/fault.h"

namespace velora {

namespace {

using odbc::DriverError;
using odbc::Link;
using odbc::StatementPool;

/// Rows for statements of unknown origin, in a transaction that reads only and is rolled back.
class OdbcReader final : public Connection {
public:
    OdbcReader(std::shared_ptr<Link> link, QueryLimits limits)
        : link_(std::move(link)), guard_(std::move(limits)), shared_(std::make_shared<odbc::Shared>(link_))
    {
        link_->begin(odbc::Session::Purpose::ReadOnly);
    }
    ~OdbcReader() override { link_->end(); }

    std::unique_ptr<Recordset> Open(const Command& command) override
    {
        return shared_->reported(command.text, [&] { return all_rows(*run(command)); });
    }

    std::unique_ptr<Rows> Stream(const Command& command) override
    {
        return shared_->reported(command.text, [&]() -> std::unique_ptr<Rows> {
            return std::make_unique<odbc::StatementRows>(run(command), command.parameters, shared_);
        });
    }

    std::unique_ptr<Rows> Execute(std::string_view text) override
    {
        return Stream(Command::statement(std::string(text)));
    }

    std::vector<DatabaseError>& Errors() override { return shared_->errors(); }
    std::unique_ptr<Connection> open_reader(const QueryLimits& limits) override
    {
        return open_odbc_reader(link_->connection_string(), limits);
    }

private:
    StatementPool::Loan run(const Command& command)
    {
        if (command.kind != Command::Kind::Text || !command.parameters.empty()) {
            throw DriverError("42000", "A definition's query is a text without parameters.");
        }
        auto& pool = link_->pool();
        shared_->make_room();
        auto statement = odbc::once(pool, command.text);
        guard_.execute(*statement, command.text);
        return statement;
    }

    std::shared_ptr<Link> link_;
    odbc::ReaderGuard guard_;
    std::shared_ptr<odbc::Shared> shared_;
};

}  // namespace

std::unique_ptr<Connection> open_odbc_reader(const std::string& connection_string, const QueryLimits& limits)
{
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(limits.time);
    try {
        return std::make_unique<OdbcReader>(odbc::open_link(connection_string, {seconds, true, false}), limits);
    } catch (const DriverError& error) {
        throw Fault(fault::kDatabase, error.what());
    }
}

}  // namespace velora
