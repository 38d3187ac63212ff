#include "adapters/accounting_sql/session.h"

#include "adapters/accounting_core/session.h"
#include "adapters/accounting_sql/sqlite_source.h"

namespace velora {

std::unique_ptr<AccountingSession> open_accounting_store(const std::string& path, int busy_milliseconds)
{
    sqlite::Database::Options options{.access = sqlite::Database::Access::QueryOnly};
    options.busy_milliseconds = busy_milliseconds;
    return accounting::open_session(accounting::make_sqlite_source(sqlite::Database::open(path, options)));
}

}  // namespace velora
