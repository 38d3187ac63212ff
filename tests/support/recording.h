#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/accounting.h"
#include "platform/database.h"

namespace velora::test {

/// What went to the two stores, a line each: a query with its parameters, a view with all calls on it in their order.
using Calls = std::vector<std::string>;

std::shared_ptr<Connection> recording(std::shared_ptr<Connection> connection, Calls& calls);
std::shared_ptr<AccountingSession> recording(std::shared_ptr<AccountingSession> session, Calls& calls);

}  // namespace velora::test
