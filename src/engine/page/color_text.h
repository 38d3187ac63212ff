#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/page/style.h"

namespace velora::engine {

/// Reads "#RGB", "#RRGGBB", "#AARRGGBB", "rgb(r, g, b)", "rgba(r, g, b, a)" with a from 0 to 1, the names of the basic
/// colours in any case, and a whole number. None for anything else.
std::optional<Color> color_from_text(std::string_view text);

/// "#RRGGBB", and for a transparent colour "rgba(r, g, b, a)".
std::string color_text(Color color);

}  // namespace velora::engine
