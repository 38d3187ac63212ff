#pragma once

#include "forms/controls/form.h"
#include "session/session_state.h"

namespace velora::forms {

/// Gives the push buttons of a form the look that `gWinXP` asks for. No other control changes.
void Apply_ButtonStyle(const SessionState& state, Form& form);

}  // namespace velora::forms
