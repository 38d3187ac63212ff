#pragma once

#include <string>

#include "engine/page/drawing.h"

namespace velora::engine {

/// Appends the drawing as an inline SVG picture that fills its box.
void html_append_drawing(std::string& out, const Drawing& drawing);

/// The same as a file of its own.
std::string svg_file(const Drawing& drawing);

}  // namespace velora::engine
