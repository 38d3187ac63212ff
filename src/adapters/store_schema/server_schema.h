#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/store_schema/tables.h"

namespace velora::stores {

/// The servers whose words for tables and procedures are known.
enum class ServerKind : uint8_t { MariaDb, PostgreSql, SqlServer, Pervasive };

/// By the name that the command line takes; none for a name that is no server's.
std::optional<ServerKind> server_kind(std::string_view name);

/// Before the tables: what they need of the database. No statement ends in a semicolon; so below.
std::vector<std::string> preparing_statements(ServerKind server);
/// The table and its indexes.
std::vector<std::string> table_statements(ServerKind server, const SchemaTable& table);
/// The stored procedures, for the servers of the dialect that calls them. MariaDB also gets the two that SQL Server
/// brings along, by which the order of a date literal is found: year, month, day.
std::vector<std::string> procedure_statements(ServerKind server);

/// A name as the server's tables have it.
std::string server_name(ServerKind server, std::string_view name);

/// Statements as the server's own client takes them from a file.
std::string as_script(ServerKind server, const std::vector<std::string>& statements);

}  // namespace velora::stores
