#pragma once

#include <string>
#include <string_view>

namespace velora::engine {

/// The address when a click on it cannot run a program in the page: http, https, ftp, mailto, tel, file or relative.
/// Empty for others.
std::string_view safe_address(std::string_view address);

/// Name of an anchor as a fragment identifier: everything but letters, digits, "-" and "_" is written as "." and two
/// hex digits.
std::string anchor_identifier(std::string_view name);

}  // namespace velora::engine
