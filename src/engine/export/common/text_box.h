#pragma once

#include "engine/export/common/picture_fit.h"
#include "engine/page/page.h"

namespace velora::engine {

/// Points from a line's base to the next one's.
float line_height(const Text& text, const Style& style);

/// Points by which a word processor is given more room than a text measures, so that its rounding cuts nothing off.
inline constexpr float kTextSlack = 4;

/// Where a word processor is given the lines of a text: down from where the first one starts.
/// @param slack  points of room beside and below the lines, for boxes that may lie over their neighbours
PictureBox text_box(const Style& style, const Place& place, float text_height, float slack);

}  // namespace velora::engine
