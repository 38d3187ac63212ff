#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/page/drawing.h"

namespace velora::engine {

/// A drawing as one line of text, from which the same drawing can be read.
std::string drawing_to_text(const Drawing& drawing);
/// None for text that `drawing_to_text` did not write.
std::optional<Drawing> drawing_from_text(std::string_view text);

}  // namespace velora::engine
