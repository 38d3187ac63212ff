#pragma once

#include <string_view>

namespace velora::odbc {

/// Why a statement of unknown origin is not sent to a server; empty for one that may be: a single query, without the
/// words that make a server write a file. That it changes no row is for the server to see to.
std::string_view refusal_of(std::string_view statement);

}  // namespace velora::odbc
