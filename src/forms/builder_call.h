#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "reports/kinds.h"

namespace velora::forms {

/// A call of a report builder: its name, and what it is handed beside the shared state, in the order of its interface.
struct BuilderCall {
    using Argument = std::variant<bool, int32_t, std::string, DateTime>;

    std::string_view builder;
    std::vector<Argument> arguments;
};

BuilderCall builder_call(const ReportKind& kind, const Selection& selection, const Delivery& delivery,
                         int16_t show_customer);

/// Calls the builder of the kind. A location that is not a full path counts from the application folder's Reports.
/// @throws Fault 429 when the builder is not part of this build
RunEnd call_builder(SessionState& state, const ReportKind& kind, const Selection& selection, const Delivery& delivery);

/// The kind of a list entry's type; null for a type that no builder prints.
const ReportKind* kind_of_type(int16_t type);

}  // namespace velora::forms
