#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace velora::odbc {

/// The connection string with each "${NAME}" replaced by what the environment holds, so that no password stands in a
/// file. A value that would break the string stands between braces. Everything else stays as it is.
/// @param environment  empty text for what is not set
/// @throws std::invalid_argument naming a variable that is not set, or the place of a mark without an end
std::string with_environment(std::string_view text, const std::function<std::string(const char*)>& environment);

/// The connection string as a message may show it: without what stands behind PWD and PASSWORD.
std::string without_passwords(std::string_view text);

}  // namespace velora::odbc
