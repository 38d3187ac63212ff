#pragma once

#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// Writes the prepared report into the folder and in the format of the user's settings. Leaves the result in
/// `gExportOK` and `gExportFile`; with no format set up nothing is written and nothing is said.
/// @param pFileName  without folder and extension
void Export_Report(SessionState& state, std::string_view pFileName);

/// The name with its slashes of both kinds as underscores. Nothing else in a name is cleaned.
std::string Replace_Slashes(SessionState& state, std::string_view pName);

}  // namespace velora
