#pragma once

#include <memory>
#include <string>
#include <vector>

#include "adapters/sqlite_core/database.h"
#include "platform/database.h"
#include "values/fault.h"

namespace velora::sqlite {

/// The errors of a connection, shared with the recordsets that were opened on it.
using ErrorList = std::shared_ptr<std::vector<DatabaseError>>;

/// Adds the driver's refusal to the list, worded as a driver does, and makes the fault to throw for it.
Fault report(const ErrorList& errors, const DriverError& error, const std::string& statement);

}  // namespace velora::sqlite
