#pragma once

#include <memory>
#include <string>

#include "platform/database.h"

namespace velora {

struct SqliteOptions {
    int default_language = 0;  ///< language id of the server's default language; it decides how literals order a date
    int busy_milliseconds = 5000;  ///< how long a locked file is waited for
};

/// The product's database in a file. Answers both dialects and the stored procedures of the servers. Recordsets hold
/// the file open by themselves and may outlive the connection.
/// @throws Fault 53 for a missing file, 75 for one that is no database, truncated, locked or unreadable
std::unique_ptr<Connection> open_sqlite(const std::string& path, const SqliteOptions& options = {});

/// Any SQLite file for statements of unknown origin, as `Connection::open_reader` says. @throws Fault as `open_sqlite`
std::unique_ptr<Connection> open_sqlite_reader(const std::string& path, const QueryLimits& limits,
                                               const SqliteOptions& options = {});

/// The product's tables without rows, in memory. Nobody can open them a second time.
std::unique_ptr<Connection> open_sqlite_in_memory(const SqliteOptions& options = {});

}  // namespace velora
