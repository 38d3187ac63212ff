#pragma once

#include <memory>
#include <string>

#include "adapters/odbc/statement.h"
#include "platform/database.h"

namespace velora::odbc {

/// The way to a server, which is found again after it broke: what asks for a statement after a loss gets a new
/// connection, unless one state of the data is being read, which the loss has ended.
class Link {
public:
    /// Connects. @throws DriverError, Fault where there is no driver manager
    Link(std::string connection_string, const Session::Options& options);

    /// @throws DriverError when the server cannot be reached again
    StatementPool& pool();
    [[nodiscard]] Session& session() { return *pool().source(); }
    [[nodiscard]] const std::string& connection_string() const { return connection_string_; }
    [[nodiscard]] const Session::Options& options() const { return options_; }

    /// Remembers an error that means the loss of the connection.
    void notice(const DriverError& error);

    /// From the first read on, one state of the data is seen, until the end, which writes nothing.
    void begin(Session::Purpose purpose);  ///< @throws DriverError
    void end() noexcept;
    [[nodiscard]] bool in_transaction() const { return in_transaction_; }

private:
    void connect();

    std::string connection_string_;
    Session::Options options_;
    std::shared_ptr<StatementPool> pool_;
    bool is_lost_ = false;
    bool in_transaction_ = false;
};

/// One state of the data, as long as it lives; none where the link is within a transaction. What the end of it meets
/// has been told by the statement before. @throws DriverError
std::unique_ptr<Snapshot> begin_snapshot(std::shared_ptr<Link> link);

/// @throws Fault with every word of the driver, where a link throws its error
std::shared_ptr<Link> open_link(const std::string& connection_string, const Session::Options& options);

}  // namespace velora::odbc
