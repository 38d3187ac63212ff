#pragma once

#include <string>

#include "values/fault.h"

namespace velora {

/// Why a run ended, in words that say what a person can do about it, beside the box of the product that says little;
/// blank where the box says all that is known.
std::string reason_of(const Fault& caught);

}  // namespace velora
