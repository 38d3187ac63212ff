#pragma once

#include <memory>
#include <string_view>

#include "values/table_source.h"

namespace velora::engine {

/// Rows that stand in one cell, as JSON: a list of objects, or of plain values, which are the field _THIS. What stands
/// in an object inside a row is a field too, by the names with a point between them ("customer.city"); lists inside a
/// row stay JSON, for the next report inside.
///
/// @return null when the text is no such list, or one of more than a million rows, 16 MB or 100 lists in each other
std::unique_ptr<TableSource> nested_rows(std::string_view json);

}  // namespace velora::engine
