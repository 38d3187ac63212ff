#pragma once

#include <optional>
#include <string_view>

#include "engine/page/drawing.h"

namespace velora::engine {

/// The drawing that the page XML holds as text. None for a text that `drawing_to_text` did not write.
std::optional<Drawing> drawing_from_text(std::string_view text);

}  // namespace velora::engine
