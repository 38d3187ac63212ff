#pragma once

#include <string>
#include <vector>

#include "adapters/sqlite_core/schema_writer.h"

namespace velora {

/// The tables of the product's database.
std::vector<sqlite::SchemaTable> product_tables();

/// Makes the product's database as a new file: all tables, without rows. No column refuses a null and no key has to be
/// unique; what an insert leaves out of a quote is filled with a harmless value, but for the transfer date.
/// @throws Fault 75 when the file exists already or cannot be written
void create_product_schema(const std::string& path);

}  // namespace velora
