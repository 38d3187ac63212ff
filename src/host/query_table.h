#pragma once

#include <memory>

#include "platform/database.h"
#include "values/table_source.h"

namespace velora {

/// The rows of a query as a report reads them: one after the other, and the query once more for a second reading.
std::shared_ptr<TableSource> query_table(std::shared_ptr<Connection> connection, Command command);

}  // namespace velora
