#include "engine/export/paint/page_raster.h"

#include "engine/export/paint/cairo_canvas.h"
#include "engine/export/paint/cairo_handles.h"
#include "engine/export/paint/paint.h"
#include "values/fault.h"

namespace velora::engine {

struct PageRaster::Kept {
    explicit Kept(FontStore& fonts) : painter(fonts) {}
    Painter painter;
    CairoCache cache;
};

PageRaster::PageRaster(FontStore& fonts) : kept_(std::make_unique<Kept>(fonts)) {}

PageRaster::~PageRaster() = default;

void PageRaster::paint(const Page& page, double resolution, int x, int y, int width, int height, uint32_t* pixels)
{
    constexpr int kBytes = 4;
    constexpr double kPointsPerInch = 72;
    const CairoSurface surface(cairo().image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels), CAIRO_FORMAT_RGB24, width, height, width * kBytes));
    if (cairo().surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw fault::overflow("page picture");
    const CairoContext context(cairo().create(surface.get()));
    cairo().set_source_rgb(context.get(), 1, 1, 1);
    cairo().paint(context.get());
    cairo().translate(context.get(), -x, -y);
    cairo().scale(context.get(), resolution / kPointsPerInch, resolution / kPointsPerInch);
    CairoCanvas canvas(context.get(), kept_->cache);
    kept_->painter.paint(page, canvas);
    cairo().surface_flush(surface.get());
}

}  // namespace velora::engine
