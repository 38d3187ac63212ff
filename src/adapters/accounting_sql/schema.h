#pragma once

#include <string>
#include <vector>

#include "adapters/sqlite_core/schema_writer.h"

namespace velora {

/// One table for each view, the company, its currencies and its active modules.
std::vector<sqlite::SchemaTable> accounting_tables();

/// Makes an accounting store as a new file: all tables, without rows.
/// @throws Fault 75 when the file exists already or cannot be written
void create_accounting_schema(const std::string& path);

}  // namespace velora
