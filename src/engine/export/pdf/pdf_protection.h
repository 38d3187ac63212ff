#pragma once

#include <string>

#include "engine/page/page.h"

namespace velora::engine {

/// The finished file, encrypted (AES-256, ISO 32000-2) with what its readers may do. No two are the same: keys are
/// random.
/// @throws Fault 429 on a machine without the library that encrypts, 440 when it refuses
std::string protected_pdf(const std::string& file, const Protection& protection);

}  // namespace velora::engine
