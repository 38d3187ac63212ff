#include "adapters/odbc/server_store.h"

#include "adapters/odbc/link.h"
#include "values/fault.h"

namespace velora {

namespace {

using odbc::DriverError;
using odbc::Server;
using stores::ServerKind;

ServerKind kind_of(Server server)
{
    switch (server) {
        case Server::MariaDb:
            return ServerKind::MariaDb;
        case Server::PostgreSql:
            return ServerKind::PostgreSql;
        case Server::SqlServer:
            return ServerKind::SqlServer;
        default:
            return ServerKind::Pervasive;
    }
}

/// Does the work; what the driver refuses is a fault that names the statement.
template <class Work>
auto reported(const std::string& statement, Work work)
{
    try {
        return work();
    } catch (const DriverError& error) {
        throw Fault(fault::kDatabase, error.what(), statement);
    }
}

class OdbcStore final : public ServerStore {
public:
    explicit OdbcStore(std::shared_ptr<odbc::Link> link) : link_(std::move(link)), kind_(kind_of(session().server())) {}

    [[nodiscard]] ServerKind kind() const override { return kind_; }
    [[nodiscard]] bool rolls_back_tables() const override
    {
        return kind_ == ServerKind::PostgreSql || kind_ == ServerKind::SqlServer;
    }

    bool has_table(const std::string& name) override
    {
        try {
            session().run("SELECT 1 FROM " + stores::server_name(kind_, name) + " WHERE 1 = 0");
            return true;
        } catch (const DriverError& error) {
            if (error.state() == "42S02" || error.state() == "S0002" || error.state() == "42P01") return false;
            throw Fault(fault::kDatabase, error.what(), name);
        }
    }

    int64_t row_count(const std::string& name) override
    {
        const std::string sql = "SELECT COUNT(*) FROM " + stores::server_name(kind_, name);
        return reported(sql, [&] {
            const auto statement = odbc::once(link_->pool(), sql);
            statement->execute_directly(sql);
            return statement->fetch() ? static_cast<int64_t>(to_number(statement->value(0))) : 0;
        });
    }

    void run(const std::string& statement) override
    {
        reported(statement, [&] { session().run(statement); });
    }

    void insert(const std::string& statement, const std::vector<Command::Parameter>& cells) override
    {
        reported(statement, [&] { link_->pool().lend(statement)->execute(cells); });
    }

    void begin() override
    {
        reported("BEGIN", [&] { session().begin(odbc::Session::Purpose::Write); });
    }
    void commit() override
    {
        reported("COMMIT", [&] { session().commit(); });
    }
    void roll_back() noexcept override { session().roll_back(); }

private:
    [[nodiscard]] odbc::Session& session() { return link_->session(); }

    std::shared_ptr<odbc::Link> link_;
    ServerKind kind_;
};

}  // namespace

std::unique_ptr<ServerStore> open_server_store(const std::string& connection_string)
{
    constexpr auto kNoEnd = std::chrono::seconds(0);  // a table may be long
    return std::make_unique<OdbcStore>(odbc::open_link(connection_string, {kNoEnd, false, false}));
}

}  // namespace velora
