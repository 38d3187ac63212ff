#include "engine/fill/row_store.h"

namespace velora::engine {

RowStore::RowStore(TableSource& table) : fields_(table.fields())
{
    table.rewind();
    while (table.next()) {
        auto& row = rows_.emplace_back();
        row.reserve(fields_.size());
        for (size_t field = 0; field < fields_.size(); ++field) row.push_back(table.cell(field));
    }
}

}  // namespace velora::engine
