#include "adapters/sqlite/schema.h"

#include "adapters/sqlite_core/schema_writer.h"

namespace velora {

void create_product_schema(const std::string& path)
{
    sqlite::create_schema(path, stores::product_tables());
}

}  // namespace velora
