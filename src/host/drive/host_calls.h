#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "session/enumerations.h"

namespace velora::drive {

/// The panes of the options by the names that a person types, in the order of their numbers.
inline constexpr auto kPaneNames = std::to_array<std::string_view>(
    {"printer", "quote", "expiration", "checklist", "confirmation", "picking-slip", "export", "email", "log", "misc"});

/// What the application around the component calls. Each shows a form.
struct HostCalls {
    std::function<void(WhichReport kind, int32_t quote_id)> open_reports;
    std::function<void(WhichFrame pane)> show_printers;
    std::function<void()> show_emailer;
};

}  // namespace velora::drive
