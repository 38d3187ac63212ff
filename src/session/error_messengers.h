#pragma once

#include <string>
#include <string_view>
#include <type_traits>

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

/// The failure path of a procedure: answers with what `work` gives, or reports a fault under the procedure's name and
/// answers blank, zero or false. A procedure that may leave with half a result sets a variable of its own in `work`.
/// What an adapter raises and is no fault is one all the same.
template <class Work>
auto with_failure_path(SessionState& state, Messenger messenger, std::string_view procedure, Work work)
{
    using Result = std::invoke_result_t<Work>;
    try {
        return work();
    } catch (const std::exception& caught) {
        const Fault fault = fault::of(caught);
        messenger(state, fault.number(), fault.description(), procedure);
    }
    return Result();
}

}  // namespace velora
