#pragma once

#include <memory>

#include "engine/picture/cairo_library.h"

namespace velora::engine {

struct DropSurface {
    void operator()(cairo_surface_t* surface) const noexcept { cairo().surface_destroy(surface); }
};
struct DropContext {
    void operator()(cairo_t* context) const noexcept { cairo().destroy(context); }
};

struct DropFontFace {
    void operator()(cairo_font_face_t* face) const noexcept { cairo().font_face_destroy(face); }
};

using CairoSurface = std::unique_ptr<cairo_surface_t, DropSurface>;
using CairoContext = std::unique_ptr<cairo_t, DropContext>;
using CairoFontFace = std::unique_ptr<cairo_font_face_t, DropFontFace>;

}  // namespace velora::engine
