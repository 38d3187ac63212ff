#pragma once

#include <cstddef>
#include <string_view>

namespace velora {

/// How deep lists and objects of a JSON text may stand in each other. Writing one out again goes down as deep on the
/// stack.
inline constexpr size_t kDeepestJson = 100;

/// Whether they stand deeper in each other. The text need not be JSON.
bool nests_too_deep(std::string_view json);

}  // namespace velora
