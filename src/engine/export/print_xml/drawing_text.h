#pragma once

#include <string>

#include "engine/page/drawing.h"

namespace velora::engine {

/// A drawing as one line of text, from which the same drawing can be read.
std::string drawing_to_text(const Drawing& drawing);

}  // namespace velora::engine
