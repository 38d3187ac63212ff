#pragma once

#include <memory>

#include "platform/region.h"

namespace velora {

/// Local time of this machine.
std::unique_ptr<Clock> system_clock();

/// A clock that stands still.
std::unique_ptr<Clock> fixed_clock(DateTime moment);

}  // namespace velora
