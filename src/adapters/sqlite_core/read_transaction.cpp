#include "adapters/sqlite_core/read_transaction.h"

#include <sqlite3.h>

namespace velora::sqlite {

std::unique_ptr<Snapshot> ReadTransaction::begin(std::shared_ptr<StatementPool> pool)
{
    if (sqlite3_get_autocommit(pool->source().handle()) == 0) return nullptr;
    return std::make_unique<ReadTransaction>(std::move(pool));
}

ReadTransaction::ReadTransaction(std::shared_ptr<StatementPool> pool) : pool_(std::move(pool))
{
    pool_->source().run("BEGIN");
}

ReadTransaction::~ReadTransaction()
{
    // Nothing was written. What the driver refuses here has been told by the statement that it refused before.
    sqlite3_exec(pool_->source().handle(), "COMMIT", nullptr, nullptr, nullptr);
}

}  // namespace velora::sqlite
