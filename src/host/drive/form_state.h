#pragma once

#include <nlohmann/json.hpp>

#include "forms/controls/form.h"

namespace velora::drive {

using Json = nlohmann::ordered_json;

/// All that a person could see of a form.
Json form_state(const forms::Form& form, bool is_modal);

}  // namespace velora::drive
