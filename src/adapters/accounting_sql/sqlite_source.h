#pragma once

#include <memory>

#include "adapters/accounting_core/relation_source.h"
#include "adapters/sqlite_core/database.h"

namespace velora::accounting {

/// The tables and views of an SQLite file.
std::unique_ptr<RelationSource> make_sqlite_source(sqlite::Database database);

}  // namespace velora::accounting
