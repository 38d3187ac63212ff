#pragma once

#include <optional>
#include <string_view>

#include "session/session_state.h"

namespace velora::forms {

/// A number of the company's defaults; none for a null. @throws Fault when the row or the column is not there
std::optional<double> default_number(SessionState& state, std::string_view column);

/// A null equals nothing.
inline bool default_is(SessionState& state, std::string_view column, double number)
{
    return default_number(state, column) == number;
}

}  // namespace velora::forms
