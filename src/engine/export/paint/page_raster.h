#pragma once

#include <cstdint>
#include <memory>

#include "engine/page/page.h"

namespace velora::engine {

class FontStore;

/// Paints parts of pages into memory, for a window. Faces, pictures and shaped words are kept from one to the next.
class PageRaster {
public:
    explicit PageRaster(FontStore& fonts);
    ~PageRaster();

    /// @param resolution  pixels for an inch
    /// @param x, y        the part's corner on the page, in pixels
    /// @param pixels      `width` times `height`, row by row, each 0xffRRGGBB
    void paint(const Page& page, double resolution, int x, int y, int width, int height, uint32_t* pixels);

private:
    struct Kept;
    std::unique_ptr<Kept> kept_;
};

}  // namespace velora::engine
