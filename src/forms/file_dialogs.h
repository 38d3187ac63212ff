#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "session/session_state.h"

namespace velora::forms {

/// The full path of a definition that a person chose. @throws Fault 32755 when the person cancels
std::string ask_for_definition(SessionState& state, std::string_view title);

/// Files of any sort. @throws Fault 32755 when the person cancels
std::vector<std::string> ask_for_files(SessionState& state, std::string_view title, const std::string& folder);

/// A folder; blank when the person cancels.
std::string Browse_Folder(SessionState& state, std::string_view title, std::string_view root);

}  // namespace velora::forms
