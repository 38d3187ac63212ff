#pragma once

#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// The trimmed id of the company of the session.
std::string company_id(SessionState& state);

/// Loads the company's row of defaults into a new object, so that a change of the table shows at the next call of an
/// entry point.
void Get_Defaults(SessionState& state);

/// A column of the company's defaults. @throws Fault when the row or the column is not there
const Value& company_default(SessionState& state, std::string_view column);

/// Fills the versions of the accounting modules that are still blank; once filled they stay for the life of the
/// process.
void Get_ModuleVersions(SessionState& state);

/// The version of an active accounting module, blank when there is none of that id.
std::string AP_ModuleVersion(SessionState& state, std::string_view module);

}  // namespace velora
