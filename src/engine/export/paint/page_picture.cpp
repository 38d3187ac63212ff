#include "engine/export/paint/page_picture.h"

#include <cmath>

#include "engine/export/paint/cairo_canvas.h"
#include "engine/export/paint/cairo_handles.h"
#include "engine/export/paint/paint.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

constexpr double kMostPixels = 64.0 * 1024 * 1024;

cairo_status_t append(void* closure, const unsigned char* data, unsigned length)
{
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

}  // namespace

std::string page_picture(const Document& document, const Page& page, double resolution, FontStore& fonts)
{
    const double scale = resolution / 72;
    const double width = std::ceil(document.page_width * scale), height = std::ceil(document.page_height * scale);
    if (!(width >= 1 && height >= 1 && width * height <= kMostPixels)) throw fault::overflow("page picture");
    const CairoSurface surface(
        cairo().image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width), static_cast<int>(height)));
    const CairoContext context(cairo().create(surface.get()));
    cairo().set_source_rgb(context.get(), 1, 1, 1);
    cairo().paint(context.get());
    cairo().scale(context.get(), scale, scale);
    CairoCache cache;
    CairoCanvas canvas(context.get(), cache);
    Painter(fonts).paint(page, canvas);
    std::string png;
    cairo().surface_write_to_png_stream(surface.get(), append, &png);
    return png;
}

}  // namespace velora::engine
