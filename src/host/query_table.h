#pragma once

#include <memory>

#include "platform/database.h"
#include "values/table_source.h"

namespace velora {

/// The rows of a query as a report reads them: one after the other, and the query once more for a second reading.
/// @param most_rows  0 for any number
/// @throws Fault for a query without columns, and when the rows go on beyond `most_rows`
std::shared_ptr<TableSource> query_table(std::shared_ptr<Connection> connection, Command command, size_t most_rows);

}  // namespace velora
