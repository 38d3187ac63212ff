#pragma once

#include <unordered_map>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

class FontStore;

/// A letter of a page's text and its box on the page, in points.
struct LetterPlace {
    uint32_t begin = 0, end = 0;  ///< bytes of the text
    float x = 0, y = 0, width = 0, height = 0;
};

/// Where the letters of a page stand, by the text that they belong to, exactly as they are painted.
std::unordered_map<const Text*, std::vector<LetterPlace>> letter_places(const Page& page, FontStore& fonts);

}  // namespace velora::engine
