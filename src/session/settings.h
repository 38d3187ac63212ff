#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "session/session_state.h"

namespace velora {

/// A setting of the user for the company of the session.
std::string setting(SessionState& state, std::string_view key, std::string_view otherwise);

/// Writes settings of the user for the company of the session, in one step.
void save_settings(SessionState& state, std::span<const NamedText> values);

std::string Encrypt(SessionState& state, std::string_view pText);
std::string Decrypt(SessionState& state, std::string_view pText);

/// A path below the application folder, joined by the platform's separator.
std::string application_path(const SessionState& state, std::string_view folder, std::string_view file = {});

}  // namespace velora
