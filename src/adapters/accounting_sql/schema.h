#pragma once

#include <string>

namespace velora {

/// Makes an accounting store as a new file: all tables, without rows.
/// @throws Fault 75 when the file exists already or cannot be written
void create_accounting_schema(const std::string& path);

}  // namespace velora
