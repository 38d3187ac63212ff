#pragma once

#include <memory>

#include "adapters/accounting_core/relation_source.h"
#include "platform/accounting.h"

namespace velora::accounting {

/// The accounting session on a database of relations. Its views hold the database by themselves.
std::unique_ptr<AccountingSession> open_session(std::unique_ptr<RelationSource> source);

}  // namespace velora::accounting
