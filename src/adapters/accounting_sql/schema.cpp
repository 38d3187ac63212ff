#include "adapters/accounting_sql/schema.h"

#include "adapters/sqlite_core/schema_writer.h"

namespace velora {

void create_accounting_schema(const std::string& path)
{
    sqlite::create_schema(path, stores::accounting_tables());
}

}  // namespace velora
