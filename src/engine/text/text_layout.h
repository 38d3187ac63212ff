#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

/// A text to be laid out.
struct TextRequest {
    std::string_view text;          ///< UTF-8, plain
    std::span<const TextRun> runs;  ///< markup, offsets into `text`
    const Style* style = nullptr;   ///< font, paragraph; alignment, box and rotation are not looked at
    float width = 0;                ///< of a line: element width without paddings (the height when turned aside)
    float max_height = 0;           ///< lines that end below it are not taken
    uint32_t begin = 0;             ///< goes on from here: what `end` told for the part before
    bool whole_last_word = true;    ///< cut between words; false cuts between characters
};

/// Result; kept by the caller and used again, so that measuring allocates nothing in the steady state.
struct TextLayout {
    std::vector<TextLine> lines;  ///< offsets count from the start of the whole text
    float height = 0;             ///< of all lines; round up for a stretched element
    float width = 0;              ///< of the widest line
    float line_spacing_factor = 0;
    float leading_offset = 0;
    uint32_t end = 0;      ///< first byte that is not shown
    bool complete = true;  ///< everything is shown
};

}  // namespace velora::engine
