#pragma once

#include <memory>
#include <string>

#include "platform/accounting.h"

namespace velora {

/// The accounting store in a file, opened for reading. Its views hold the file open by themselves.
/// @throws Fault 53 for a missing file, 75 for one that is no database, truncated, locked or unreadable
std::unique_ptr<AccountingSession> open_accounting_store(const std::string& path, int busy_milliseconds = 5000);

}  // namespace velora
