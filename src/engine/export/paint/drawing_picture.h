#pragma once

#include <deque>
#include <memory>

#include "engine/page/page.h"

namespace velora::engine {

class CairoFaces;
class FontStore;

/// Turns vector drawings into pictures, for formats that hold no vectors.
class DrawingPictures {
public:
    explicit DrawingPictures(FontStore& fonts);
    ~DrawingPictures();

    /// A PNG of three pixels a point. The ground is that of the element, white for none: a clear one makes word
    /// processors blend the whole page. Null for a drawing without size, or one too large to paint.
    std::shared_ptr<const ImageData> picture(const Drawing& drawing, const Style& style);

private:
    [[nodiscard]] std::shared_ptr<const ImageData> painted(const Drawing& drawing, Color ground);

    FontStore& fonts_;
    /// The last ones: what stands on every page is painted, and stored in a workbook, once.
    struct Painted {
        Drawing drawing;
        Color ground;
        std::shared_ptr<const ImageData> picture;
    };
    std::deque<Painted> recent_;
    std::unique_ptr<CairoFaces> faces_;
};

}  // namespace velora::engine
