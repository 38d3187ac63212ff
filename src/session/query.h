#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// The two texts of one query site. They are separate on purpose: each dialect runs only its own.
struct Query {
    Command sql_server;
    Command pervasive;
};

/// All rows of the text of the engine in use, in memory. With an engine that is neither of the two nothing is opened,
/// and the first touch of the result is fault 3704.
std::shared_ptr<Recordset> open_query(SessionState& state, const Query& query);

/// The same for rows that are walked once and held nowhere.
std::unique_ptr<Rows> stream_query(SessionState& state, const Query& query);

/// A new recordset that nothing has opened: to ask it for its rows is fault 3704, for a column fault 3265.
std::unique_ptr<Recordset> unopened_recordset();

/// Opens a query into a variable of the state or of a caller, which holds a new recordset from the start: a query
/// that cannot be opened leaves that one, and never the rows of an earlier load.
void open_query(SessionState& state, std::shared_ptr<Recordset>& into, const Query& query);

/// Runs a statement of the dialect in use; nothing with any other engine.
void execute(SessionState& state, std::string_view sql_server, std::string_view pervasive);

/// Moves to the first row; false for an empty recordset.
bool move_to_first(Rows& rows);

/// The text with each single quote doubled, as it stands between single quotes in a statement.
std::string doubled_quotes(std::string_view text);

}  // namespace velora
