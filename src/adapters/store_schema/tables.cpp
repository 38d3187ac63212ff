#include "adapters/store_schema/tables.h"

#include <algorithm>

namespace velora::stores {

std::vector<NamedColumn> SchemaTable::named_columns() const
{
    std::vector<NamedColumn> named;
    for (const SchemaColumn& column : columns) {
        for (int at = 1; at <= std::max(column.repeated, 1); ++at) {
            const std::string number = column.repeated > 0 ? std::to_string(at) : "";
            named.push_back({std::string(column.name) + number, column.type, column.default_value});
        }
    }
    return named;
}

}  // namespace velora::stores
