#pragma once

#include <optional>
#include <string_view>

#include "values/date_time.h"

namespace velora::engine {

/// A date as people write it: "2024/03/05", "3/5/2024", "Mar 5, 2024 14:30", "5 March 2024 2:30 PM", "2024-03-05".
/// With slashes the month stands before the day. None for anything else.
std::optional<DateTime> written_date(std::string_view text);

}  // namespace velora::engine
