#include "session/query.h"

#include "platform/recordset.h"
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

bool has_dialect(const SessionState& state)
{
    return state.gEngine == eDBSQLServer || state.gEngine == eDBPervasive;
}

/// The command of the dialect in use, which the log has seen.
const Command& logged(SessionState& state, const Query& query)
{
    const Command& command = state.gEngine == eDBSQLServer ? query.sql_server : query.pervasive;
    state.log.query(shown(command));
    return command;
}

}  // namespace

std::unique_ptr<Recordset> unopened_recordset()
{
    auto rows = std::make_unique<Recordset>(std::vector<std::string>{}, std::vector<std::vector<Value>>{});
    rows->Close();
    return rows;
}

std::shared_ptr<Recordset> open_query(SessionState& state, const Query& query)
{
    if (!has_dialect(state)) return unopened_recordset();
    return connection(state).Open(logged(state, query));
}

std::unique_ptr<Rows> stream_query(SessionState& state, const Query& query)
{
    if (!has_dialect(state)) return unopened_recordset();
    return connection(state).Stream(logged(state, query));
}

void open_query(SessionState& state, std::shared_ptr<Recordset>& into, const Query& query)
{
    into = unopened_recordset();
    into = open_query(state, query);
}

void execute(SessionState& state, std::string_view sql_server, std::string_view pervasive)
{
    if (!has_dialect(state)) return;
    const auto text = state.gEngine == eDBSQLServer ? sql_server : pervasive;
    state.log.query(text);
    connection(state).Execute(text);
}

bool move_to_first(Rows& rows)
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
