#include "engine/fill/rows/row_store.h"

#include "values/fault.h"

namespace velora::engine {

RowStore::RowStore(TableSource& table, const std::function<bool()>& cancelled)
    : cancelled_(cancelled), fields_(table.fields())
{
    table.rewind();
    while (table.next()) {
        auto& row = rows_.emplace_back();
        row.reserve(fields_.size());
        for (size_t field = 0; field < fields_.size(); ++field) row.push_back(table.cell(field));
    }
}

void RowStore::check() const
{
    if (cancelled_ && cancelled_()) throw fault::of(fault::kCancelled);
}

}  // namespace velora::engine
