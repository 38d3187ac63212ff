#pragma once

#include <string>
#include <string_view>

namespace velora::engine {

/// A picture as all formats can show it.
struct ShownPicture {
    std::string png;
    double density = 1;  ///< pixels for each point of its natural size
};

/// Whether the file is of a kind that is turned into PNG first: GIF, BMP, TIFF, WebP or SVG, told by its content.
bool is_other_picture(std::string_view bytes);

/// Turns such a file into PNG; of several pictures the first, drawings finely enough for paper. The work is done by a
/// process of its own with bounds of time and memory, since such files come from anywhere: one that harms the reader
/// harms nothing else. The last few are remembered.
/// @throws Fault 429 with the reason, for a damaged or too large picture and on a machine without the libraries
ShownPicture shown_picture_of(std::string_view bytes);

/// The same in this process, for tests that look for what harms it.
ShownPicture picture_read_here(std::string_view bytes);

}  // namespace velora::engine
