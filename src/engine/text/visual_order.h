#pragma once

#include "engine/text/text_pieces.h"

namespace velora::engine {

/// Cuts a line into pieces in the order in which they stand from left to right.
void cut_in_visual_order(std::string_view text, uint32_t begin, uint32_t end, std::span<const TextRun> runs,
                         const Font& font, std::vector<TextPiece>& pieces);

}  // namespace velora::engine
