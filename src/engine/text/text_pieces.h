#pragma once

#include <functional>
#include <span>

#include "engine/page/page.h"

namespace velora::engine {

/// A stretch of text with one look.
struct TextPiece {
    uint32_t begin = 0, end = 0;
    const Font* font = nullptr;
    const TextRun* run = nullptr;  ///< null where the element's own style holds
    bool right_to_left = false;
    bool tab = false;  ///< the piece is one tab

    /// Font size after raising or lowering has made it smaller.
    [[nodiscard]] float size() const;
    /// Points by which the base line is raised.
    [[nodiscard]] float rise() const;
};

/// Cuts bytes from `begin` up to `end` where the look or the direction changes, in the order of the text.
void cut_into_pieces(std::string_view text, uint32_t begin, uint32_t end, std::span<const TextRun> runs,
                     const Font& font, std::vector<TextPiece>& pieces);

/// Whether the character belongs to a script that is written from right to left.
bool is_right_to_left(char32_t character);

}  // namespace velora::engine
