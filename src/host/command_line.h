#pragma once

#include <span>
#include <string>

#include "host/host.h"
#include "host/host_error.h"

namespace velora {

/// Runs the program. Nothing is thrown: what went wrong stands on `err` and in the status.
/// @param arguments  without the name of the program
ExitStatus run_command_line(std::span<const std::string> arguments, const Surroundings& around);

}  // namespace velora
