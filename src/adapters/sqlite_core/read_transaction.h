#pragma once

#include <memory>

#include "adapters/sqlite_core/statement.h"
#include "platform/database.h"

namespace velora::sqlite {

/// A read transaction. It holds the pool, so that it may outlive the connection.
class ReadTransaction final : public Snapshot {
public:
    /// None where the database is within a transaction already. @throws DriverError
    static std::unique_ptr<Snapshot> begin(std::shared_ptr<StatementPool> pool);

    explicit ReadTransaction(std::shared_ptr<StatementPool> pool);
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;
    ~ReadTransaction() override;

private:
    std::shared_ptr<StatementPool> pool_;
};

}  // namespace velora::sqlite
