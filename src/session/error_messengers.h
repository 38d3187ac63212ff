#pragma once

#include <string>
#include <string_view>

#include "session/session_state.h"
#include "values/fault.h"

namespace velora {

// The three ways to tell the person at the screen that something failed. `pProcName` is module, dot, procedure.

/// Shows a box; without a user interface it goes nowhere.
void tell(SessionState& state, const MessageBox& box);

/// Nothing for the number 0.
void ErrorMessenger(SessionState& state, int32_t pErrNum, std::string_view pErrDesc, std::string_view pProcName);
/// The session's own errors if it has any, the first three and the last two, else as `ErrorMessenger`. Clears them.
void ErrorACCPAC(SessionState& state, int32_t pErrNum, std::string_view pErrDesc, std::string_view pProcName);
/// The connection's own errors if it has any, else as `ErrorMessenger`. Clears them.
void ErrorADO(SessionState& state, int32_t pErrNum, std::string_view pErrDesc, std::string_view pProcName);

using Messenger = void (*)(SessionState&, int32_t, std::string_view, std::string_view);

/// The failure path of a procedure: runs `work`, reports a fault under the procedure's name and leaves.
/// What `work` had set until then stands.
template <class Work>
void with_failure_path(SessionState& state, Messenger messenger, std::string_view procedure, Work work)
{
    try {
        work();
    } catch (const Fault& caught) {
        messenger(state, caught.number(), caught.description(), procedure);
    }
}

}  // namespace velora
