#pragma once

#include "engine/page/page.h"

namespace velora::engine {

/// A quote of `pages` pages as the filler would place it: letterhead with a picture, a line table with wrapped
/// descriptions, amounts and dates as typed values, rules, a totals box, turned and linked texts.
PageList sample_quote(int pages = 2);

/// Puts a text on one line into a page; the height of the line is the font's.
Element text_element(const Place& place, const Style* style, std::string text, Value value = {});

}  // namespace velora::engine
