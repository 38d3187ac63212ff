#include "session/query.h"

#include "platform/client_recordset.h"
#include "values/text.h"

namespace velora {

namespace {

std::string shown(const Command& command)
{
    std::string text = command.text;
    for (const auto& parameter : command.parameters) {
        text.append(" ").append(parameter.name).append("=");
        text.append(parameter.value.is_null() ? "null" : to_text(parameter.value));
    }
    return text;
}

}  // namespace

std::shared_ptr<Recordset> unopened_recordset()
{
    auto rows = std::make_shared<ClientRecordset>(std::vector<std::string>{}, std::vector<std::vector<Value>>{});
    rows->Close();
    return rows;
}

std::shared_ptr<Recordset> open_query(SessionState& state, const Query& query, Cursor cursor)
{
    if (state.gEngine != eDBSQLServer && state.gEngine != eDBPervasive) return unopened_recordset();
    const Command& command = state.gEngine == eDBSQLServer ? query.sql_server : query.pervasive;
    state.log.query(shown(command));
    return connection(state).Open(command, cursor);
}

void open_query(SessionState& state, std::shared_ptr<Recordset>& into, const Query& query, Cursor cursor)
{
    into = unopened_recordset();
    into = open_query(state, query, cursor);
}

void execute(SessionState& state, std::string_view sql_server, std::string_view pervasive)
{
    if (state.gEngine != eDBSQLServer && state.gEngine != eDBPervasive) return;
    const auto text = state.gEngine == eDBSQLServer ? sql_server : pervasive;
    state.log.query(text);
    connection(state).Execute(text);
}

bool move_to_first(Recordset& rows)
{
    if (rows.is_empty()) return false;
    rows.MoveFirst();
    return true;
}

std::string doubled_quotes(std::string_view text)
{
    return replaced(text, "'", "''");
}

}  // namespace velora
