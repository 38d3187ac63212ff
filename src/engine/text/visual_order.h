#pragma once

#include "engine/text/text_pieces.h"

namespace velora::engine {

/// Cuts a line into pieces in the order in which they stand from left to right.
///
/// @param right_to_left  how the line's paragraph reads
void cut_in_visual_order(std::string_view text, uint32_t begin, uint32_t end, bool right_to_left,
                         std::span<const TextRun> runs, const Font& font, std::vector<TextPiece>& pieces);

/// Tells how the paragraphs of a text read: their first letter decides. Asked for one line after the other.
class ReadingOrder {
public:
    explicit ReadingOrder(std::string_view text) : text_(text) {}

    bool is_right_to_left(const TextLine& line);

private:
    std::string_view text_;
    bool right_to_left_ = false, paragraph_begins_ = true;
};

}  // namespace velora::engine
