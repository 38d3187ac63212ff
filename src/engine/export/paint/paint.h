#pragma once

#include "engine/export/paint/canvas.h"
#include "engine/export/paint/paint_text.h"

namespace velora::engine {

/// Paints finished pages: the one description of how elements look, for PDF, pictures, the viewer and the printer.
class Painter {
public:
    explicit Painter(FontStore& fonts) : texts_(fonts) {}

    void paint(const Page& page, Canvas& canvas);

private:
    void paint(const std::vector<Element>& elements, int32_t x, int32_t y, Canvas& canvas);
    void paint_content(const Text& text, const Style& style, const Place& place, Canvas& canvas);
    void paint_content(const Image& image, const Style& style, const Place& place, Canvas& canvas);
    void paint_content(const Frame& frame, const Style& style, const Place& place, Canvas& canvas);
    void paint_content(const Graphic& graphic, const Style& style, const Place& place, Canvas& canvas);
    void paint_content(const Line&, const Style& style, const Place& place, Canvas& canvas);
    void paint_content(const Rectangle&, const Style& style, const Place& place, Canvas& canvas);
    void paint_content(const Ellipse&, const Style& style, const Place& place, Canvas& canvas);

    TextPainter texts_;
};

}  // namespace velora::engine
