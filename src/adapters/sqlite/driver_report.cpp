#include "adapters/sqlite/driver_report.h"

#include <sqlite3.h>

namespace velora::sqlite {

namespace {

struct State {
    int code;                  // primary result code, 0 for any
    std::string_view opening;  // of the message; empty for any
    std::string_view sql_state;
};

// The first line that fits decides.
// clang-format off
constexpr auto kStates = std::to_array<State>({
    {0, "Could not find stored procedure",  "42000"},
    {SQLITE_ERROR,      "no such table",  "42S02"},
    {SQLITE_ERROR,      "no such column", "42S22"},
    {SQLITE_ERROR,      "",               "42000"},
    {SQLITE_CONSTRAINT, "",               "23000"},
    {SQLITE_RANGE,      "",               "07002"},
    {SQLITE_BUSY,       "",               "HYT00"},
    {SQLITE_LOCKED,     "",               "HYT00"},
    {SQLITE_READONLY,   "",               "25006"},
    {SQLITE_INTERRUPT,  "",               "HY008"},
    {SQLITE_IOERR,      "",               "08S01"},
});
// clang-format on

std::string_view sql_state(int code, std::string_view message)
{
    for (const auto& state : kStates) {
        const bool fits = state.code == 0 || state.code == (code & 0xff);
        if (fits && message.starts_with(state.opening)) return state.sql_state;
    }
    return "HY000";
}

}  // namespace

Fault report(const ErrorList& errors, const DriverError& error, const std::string& statement)
{
    const std::string message = error.what();
    const std::string description = "[Velora][SQLite]" + message;
    errors->push_back(
        {description, "Velora SQLite driver", std::string(sql_state(error.code(), message)), error.code()});
    return {fault::kDatabase, description, statement};
}

}  // namespace velora::sqlite
