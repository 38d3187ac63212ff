#pragma once

#include <memory>

#include "platform/printers.h"

namespace velora {

/// The printers that CUPS knows: the queues of its scheduler, and those that it finds on the network. On a machine
/// without CUPS there are none.
std::unique_ptr<Printers> cups_printers();

}  // namespace velora
