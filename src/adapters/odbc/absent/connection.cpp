#include "adapters/odbc/connection.h"

#include "adapters/odbc/server_store.h"
#include "values/fault.h"

namespace velora {

namespace {

[[noreturn]] void refuse()
{
    throw Fault(fault::kCannotCreate,
                "This program was built without database servers: the headers of ODBC were missing.");
}

}  // namespace

std::unique_ptr<Connection> open_odbc(const std::string&, const OdbcOptions&)
{
    refuse();
}

std::unique_ptr<Connection> open_odbc_reader(const std::string&, const QueryLimits&)
{
    refuse();
}

std::unique_ptr<AccountingSession> open_odbc_accounting(const std::string&, const OdbcOptions&)
{
    refuse();
}

std::unique_ptr<ServerStore> open_server_store(const std::string&)
{
    refuse();
}

}  // namespace velora
