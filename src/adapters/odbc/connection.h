#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/accounting.h"
#include "platform/database.h"

namespace velora {

struct OdbcOptions {
    std::chrono::seconds timeout{30};  ///< of a login and of each statement; 0 for no end
    bool one_statement = false;        ///< as if the driver took a single statement at a time
};

/// The product's database on a server, by the connection string of the driver manager. A connection that was lost is
/// made anew by the next statement. Rows and recordsets may outlive the connection.
/// @throws Fault with the driver's words when there is no driver, no server or no login
std::unique_ptr<Connection> open_odbc(const std::string& connection_string, const OdbcOptions& options = {});

/// A server's rows for statements of unknown origin, as `Connection::open_reader` says. @throws Fault as `open_odbc`
std::unique_ptr<Connection> open_odbc_reader(const std::string& connection_string, const QueryLimits& limits);

/// The accounting store on a server: tables or views by the names of the accounting views. @throws Fault as `open_odbc`
std::unique_ptr<AccountingSession> open_odbc_accounting(const std::string& connection_string,
                                                        const OdbcOptions& options = {});

}  // namespace velora
