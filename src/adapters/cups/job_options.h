#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/printers.h"

namespace velora::cups {

enum class Taker { Scheduler, Printer };

/// What a job asks of its printer, as options of the Internet Printing Protocol (RFC 8011, 5.2).
/// @throws Fault 482 for copies or pages that are none
std::vector<std::pair<std::string, std::string>> job_options(const PrintJob& job, Taker taker);

/// The title as a printer takes it: of at most 255 bytes and without control characters.
std::string job_name(const std::string& title);

}  // namespace velora::cups
