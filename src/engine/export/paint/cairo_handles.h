#pragma once

#include <cairo.h>

#include <memory>

namespace velora::engine {

struct DropSurface {
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
};
struct DropContext {
    void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
};

using CairoSurface = std::unique_ptr<cairo_surface_t, DropSurface>;
using CairoContext = std::unique_ptr<cairo_t, DropContext>;

}  // namespace velora::engine
