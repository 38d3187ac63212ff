#pragma once

#include <span>
#include <string>

#include "adapters/sqlite_core/database.h"
#include "adapters/store_schema/tables.h"

namespace velora::sqlite {

/// Makes a new database file with these tables, all or nothing.
/// @throws Fault 75 when the file exists already or cannot be written
void create_schema(const std::string& path, std::span<const stores::SchemaTable> tables);

/// Makes the tables in a database that is open. @throws DriverError
void create_tables(const Database& database, std::span<const stores::SchemaTable> tables);

/// The statements of one table: the table, its triggers and its indexes. Nothing in them needs more than plain SQLite,
/// so that other programs can write rows.
std::string table_sql(const stores::SchemaTable& table);

}  // namespace velora::sqlite
