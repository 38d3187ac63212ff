#include "engine/export/paint/cairo_canvas.h"

#include <cstring>

#include "engine/export/paint/bitmap.h"
#include "engine/export/paint/cairo_faces.h"
#include "engine/text/face.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

/// Cairo's own form of a picture: 32 bits for each point, colours times alpha.
CairoSurface surface_of(const Bitmap& bitmap)
{
    CairoSurface surface(cairo().image_surface_create(CAIRO_FORMAT_ARGB32, bitmap.width, bitmap.height));
    if (cairo().surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    const int stride = cairo().image_surface_get_stride(surface.get());
    unsigned char* rows = cairo().image_surface_get_data(surface.get());
    size_t at = 0;
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x, ++at) {
            const uint32_t alpha = bitmap.alphas.empty() ? 255 : bitmap.alphas[at];
            const auto part = [&](size_t i) { return bitmap.colors[at * 3 + i] * alpha / 255; };
            const uint32_t point = alpha << 24 | part(0) << 16 | part(1) << 8 | part(2);
            std::memcpy(rows + static_cast<ptrdiff_t>(y) * stride + x * 4, &point, 4);
        }
    }
    cairo().surface_mark_dirty(surface.get());
    return surface;
}

}  // namespace

struct CairoCache::State {
    CairoFaces faces{FT_LOAD_NO_HINTING};
    std::map<std::shared_ptr<const ImageData>, CairoSurface> pictures;

    cairo_surface_t* picture(const std::shared_ptr<const ImageData>& data)
    {
        const auto known = pictures.find(data);
        if (known != pictures.end()) return known->second.get();
        const auto bitmap = read_bitmap(data->bytes);
        return pictures.emplace(data, bitmap ? surface_of(*bitmap) : nullptr).first->second.get();
    }
};

CairoCache::CairoCache() : state_(std::make_unique<State>()) {}
CairoCache::~CairoCache() = default;

void CairoCanvas::save()
{
    cairo().save(context_);
}

void CairoCanvas::restore()
{
    cairo().restore(context_);
}

void CairoCanvas::transform(const Matrix& matrix)
{
    const cairo_matrix_t same{matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f};
    cairo().transform(context_, &same);
}

void CairoCanvas::clip(const Area& area)
{
    cairo().rectangle(context_, area.x, area.y, area.width, area.height);
    cairo().clip(context_);
}

void CairoCanvas::set_color(Color color)
{
    cairo().set_source_rgba(context_, color.red / 255.0, color.green / 255.0, color.blue / 255.0, color.alpha / 255.0);
}

void CairoCanvas::trace(const Path& path)
{
    cairo().new_path(context_);
    for (const auto& [verb, at] : path.steps) {
        switch (verb) {
            case Path::Verb::Move:
                cairo().move_to(context_, at[0], at[1]);
                break;
            case Path::Verb::Line:
                cairo().line_to(context_, at[0], at[1]);
                break;
            case Path::Verb::Curve:
                cairo().curve_to(context_, at[0], at[1], at[2], at[3], at[4], at[5]);
                break;
            case Path::Verb::Close:
                cairo().close_path(context_);
        }
    }
}

void CairoCanvas::fill(const Path& path, Color color)
{
    set_color(color);
    trace(path);
    cairo().fill(context_);
}

void CairoCanvas::fill(const Area& area, Color color)
{
    set_color(color);
    cairo().rectangle(context_, area.x, area.y, area.width, area.height);
    cairo().fill(context_);
}

void CairoCanvas::stroke(const Path& path, const Stroke& stroke)
{
    set_color(stroke.color);
    cairo().set_line_width(context_, stroke.width);
    const double on = stroke.style == LineStyle::Dashed ? 5 * stroke.width : stroke.width;
    const double dashes[] = {on, stroke.style == LineStyle::Dashed ? 3 * stroke.width : stroke.width};
    const bool broken = stroke.style == LineStyle::Dashed || stroke.style == LineStyle::Dotted;
    cairo().set_dash(context_, dashes, broken ? 2 : 0, 0);
    trace(path);
    cairo().stroke(context_);
}

void CairoCanvas::glyphs(const GlyphRun& run)
{
    set_color(run.color);
    cairo().set_font_face(context_, cache_.state_->faces.of(*run.face));
    cairo().set_font_size(context_, run.size);
    std::vector<cairo_glyph_t> placed;
    placed.reserve(run.glyphs.size());
    double x = run.x;
    for (const CanvasGlyph& glyph : run.glyphs) {
        placed.push_back({glyph.id, x + glyph.dx, run.y - glyph.dy});
        x += glyph.advance;
    }
    cairo().show_glyphs(context_, placed.data(), static_cast<int>(placed.size()));
}

std::optional<std::pair<int, int>> CairoCanvas::image_size(const std::shared_ptr<const ImageData>& image)
{
    cairo_surface_t* picture = cache_.state_->picture(image);
    if (picture == nullptr) return std::nullopt;
    return std::pair{cairo().image_surface_get_width(picture), cairo().image_surface_get_height(picture)};
}

void CairoCanvas::image(const std::shared_ptr<const ImageData>& image, const Area& area)
{
    cairo_surface_t* picture = cache_.state_->picture(image);
    if (picture == nullptr) return;
    cairo().save(context_);
    cairo().translate(context_, area.x, area.y);
    cairo().scale(context_, area.width / cairo().image_surface_get_width(picture),
                  area.height / cairo().image_surface_get_height(picture));
    cairo().set_source_surface(context_, picture, 0, 0);
    cairo().pattern_set_extend(cairo().get_source(context_), CAIRO_EXTEND_PAD);  // else the edges fade out
    cairo().rectangle(context_, 0, 0, cairo().image_surface_get_width(picture),
                      cairo().image_surface_get_height(picture));
    cairo().fill(context_);
    cairo().restore(context_);
}

}  // namespace velora::engine
