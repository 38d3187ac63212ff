#pragma once

#include <memory>
#include <string>

#include "host/host.h"
#include "values/fault.h"

namespace velora {

/// Opens a definition that a person named. @throws HostError with file and reason
std::shared_ptr<OpenedReport> open_definition_file(Host& host, const std::string& file);

/// The fault of a definition as a message. @param what  that cannot be done with it: "read", "rendered"
HostError definition_error(const std::string& definition, const std::string& what, const Fault& caught);

}  // namespace velora
