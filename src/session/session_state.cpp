#include "session/session_state.h"

#include "values/fault.h"

namespace velora {

Connection& connection(SessionState& state)
{
    if (!state.gConn) throw fault::object_not_set("gConn");
    return *state.gConn;
}

AccountingSession& accounting(SessionState& state)
{
    if (!state.gSess) throw fault::object_not_set("gSess");
    return *state.gSess;
}

Recordset& opened(const std::shared_ptr<Recordset>& rows, const char* name)
{
    if (!rows) throw fault::object_not_set(name);
    return *rows;
}

}  // namespace velora
