#pragma once

#include <string>
#include <vector>

#include "engine/page/style.h"

namespace velora::engine {

/// One line of a text where it stands on the page. Lengths are points.
struct GridLine {
    double y;            ///< of its middle
    double left, right;  ///< between which it is aligned
    HorizontalAlign align;
    std::u32string text;
};

/// The lines on a grid of characters, a row a line of text. What stands side by side or below each other on the page
/// does so on the grid. Every line is there as a whole: columns move apart and rows down where characters need more
/// room than the print did.
std::string text_rows(std::vector<GridLine> lines);

}  // namespace velora::engine
