#pragma once

#include "engine/export/common/picture_fit.h"
#include "engine/page/page.h"

namespace velora::engine {

/// Points from a line's base to the next one's.
float line_height(const Text& text, const Style& style);

/// Where a word processor is given the lines of a text: down from where the first one starts, a little larger than
/// they are.
PictureBox text_box(const Style& style, const Place& place, float text_height);

}  // namespace velora::engine
