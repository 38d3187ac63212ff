#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "session/session_state.h"

namespace velora {

// The lookup lists. Each loader replaces the old object, so that a change of the table shows at the next call of an
// entry point.

void Get_QuoteStatus(SessionState& state, bool pAll);
void Get_QuoteType(SessionState& state, bool pAll);
void Get_QuoteConfid(SessionState& state, bool pAll);
void Get_Reasons(SessionState& state, bool pAll);

/// List kinds of the two helpers below: 0 status, 1 reason, 2 type, 3 confidence.
inline constexpr int16_t kListStatus = 0;
inline constexpr int16_t kListReason = 1;
inline constexpr int16_t kListType = 2;
inline constexpr int16_t kListConfidence = 3;

/// Calls `add` with the text and the key of each row in the order of the list; for no row of a kind above 3.
void Load_Options(SessionState& state, const std::shared_ptr<Recordset>& list, int16_t pKind,
                  const std::function<void(const std::string& text, int32_t key)>& add);

/// The display text of a key: the name, or the code where the name is blank; of a reason always the code.
/// The list stays on the row that was found, at its end where none was.
std::string Return_ListValue(SessionState& state, const std::shared_ptr<Recordset>& list, int16_t pID, int16_t pKind);

}  // namespace velora
