#include "adapters/engine/picture_canvas.h"

#include <cairo/cairo-ft.h>
#include <cairo/cairo.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <cmath>

#include "engine/export/bitmap.h"
#include "engine/text/face.h"

namespace velora {

using namespace engine;

namespace {

struct Drop {
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
    void operator()(cairo_font_face_t* face) const noexcept { cairo_font_face_destroy(face); }
    void operator()(FT_FaceRec* face) const noexcept { FT_Done_Face(face); }
};

using Surface = std::unique_ptr<cairo_surface_t, Drop>;

constexpr int kLargestSide = 20000;  ///< pixels

int pixels(double points, double pixels_per_inch)
{
    return static_cast<int>(std::clamp(std::ceil(points * pixels_per_inch / 72), 1.0, double{kLargestSide}));
}

Surface surface_of(const Bitmap& bitmap)
{
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, bitmap.width, bitmap.height));
    unsigned char* rows = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; rows && y < bitmap.height; ++y) {
        auto* row = reinterpret_cast<uint32_t*>(rows + ptrdiff_t{y} * stride);
        for (int x = 0; x < bitmap.width; ++x) {
            const size_t at = static_cast<size_t>(y) * static_cast<size_t>(bitmap.width) + static_cast<size_t>(x);
            const uint32_t alpha = bitmap.alphas.empty() ? 255 : bitmap.alphas[at];
            const auto part = [&](size_t index) { return bitmap.colors[at * 3 + index] * alpha / 255; };
            row[x] = alpha << 24 | part(0) << 16 | part(1) << 8 | part(2);
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

}  // namespace

struct PictureCanvas::State {
    State() { FT_Init_FreeType(&library); }
    ~State()
    {
        context.reset();
        faces.clear();
        files.clear();
        FT_Done_FreeType(library);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void color(Color color) const
    {
        cairo_set_source_rgba(context.get(), color.red / 255.0, color.green / 255.0, color.blue / 255.0,
                              color.alpha / 255.0);
    }
    void trace(const Path& path) const;
    cairo_font_face_t* face(const Face& face);

    FT_Library library = nullptr;
    Surface surface;
    std::unique_ptr<cairo_t, Drop> context;
    std::vector<std::unique_ptr<FT_FaceRec, Drop>> files;
    std::map<const Face*, std::unique_ptr<cairo_font_face_t, Drop>> faces;
    std::map<const ImageData*, Surface> pictures;
};

void PictureCanvas::State::trace(const Path& path) const
{
    cairo_t* to = context.get();
    cairo_new_path(to);
    for (const auto& step : path.steps) {
        const auto& at = step.at;
        switch (step.verb) {
            case Path::Verb::Move:
                cairo_move_to(to, at[0], at[1]);
                break;
            case Path::Verb::Line:
                cairo_line_to(to, at[0], at[1]);
                break;
            case Path::Verb::Curve:
                cairo_curve_to(to, at[0], at[1], at[2], at[3], at[4], at[5]);
                break;
            case Path::Verb::Close:
                cairo_close_path(to);
                break;
        }
    }
}

cairo_font_face_t* PictureCanvas::State::face(const Face& face)
{
    auto& known = faces[&face];
    if (!known) {
        FT_Face file = nullptr;
        if (FT_New_Face(library, face.path().c_str(), static_cast<FT_Long>(face.index()), &file) != 0) return nullptr;
        files.emplace_back(file);
        known.reset(cairo_ft_font_face_create_for_ft_face(file, 0));
    }
    return known.get();
}

PictureCanvas::PictureCanvas(double width, double height, double pixels_per_inch) : state_(std::make_unique<State>())
{
    state_->surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels(width, pixels_per_inch),
                                                     pixels(height, pixels_per_inch)));
    state_->context.reset(cairo_create(state_->surface.get()));
    state_->color(kWhite);
    cairo_paint(state_->context.get());
    cairo_scale(state_->context.get(), pixels_per_inch / 72, pixels_per_inch / 72);
}

PictureCanvas::~PictureCanvas() = default;

void PictureCanvas::save()
{
    cairo_save(state_->context.get());
}

void PictureCanvas::restore()
{
    cairo_restore(state_->context.get());
}

void PictureCanvas::transform(const Matrix& matrix)
{
    const cairo_matrix_t by{matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f};
    cairo_transform(state_->context.get(), &by);
}

void PictureCanvas::clip(const Area& area)
{
    cairo_new_path(state_->context.get());
    cairo_rectangle(state_->context.get(), area.x, area.y, area.width, area.height);
    cairo_clip(state_->context.get());
}

void PictureCanvas::fill(const Path& path, Color color)
{
    state_->color(color);
    state_->trace(path);
    cairo_fill(state_->context.get());
}

void PictureCanvas::fill(const Area& area, Color color)
{
    state_->color(color);
    cairo_new_path(state_->context.get());
    cairo_rectangle(state_->context.get(), area.x, area.y, area.width, area.height);
    cairo_fill(state_->context.get());
}

void PictureCanvas::stroke(const Path& path, const Stroke& stroke)
{
    const double dash = stroke.style == LineStyle::Dashed ? 5 * stroke.width : stroke.width;
    const bool broken = stroke.style == LineStyle::Dashed || stroke.style == LineStyle::Dotted;
    state_->color(stroke.color);
    state_->trace(path);
    cairo_set_dash(state_->context.get(), &dash, broken ? 1 : 0, 0);
    cairo_set_line_width(state_->context.get(), stroke.width);
    cairo_stroke(state_->context.get());
}

void PictureCanvas::glyphs(const GlyphRun& run)
{
    cairo_font_face_t* face = state_->face(*run.face);
    if (!face) return;
    std::vector<cairo_glyph_t> placed;
    double x = run.x;
    for (const auto& glyph : run.glyphs) {
        placed.push_back({glyph.id, x + static_cast<double>(glyph.dx), run.y - static_cast<double>(glyph.dy)});
        x += static_cast<double>(glyph.advance);
    }
    cairo_set_font_face(state_->context.get(), face);
    cairo_set_font_size(state_->context.get(), run.size);
    state_->color(run.color);
    cairo_show_glyphs(state_->context.get(), placed.data(), static_cast<int>(placed.size()));
}

std::optional<std::pair<int, int>> PictureCanvas::image_size(const std::shared_ptr<const ImageData>& image)
{
    if (!image) return std::nullopt;
    auto known = state_->pictures.find(image.get());
    if (known == state_->pictures.end()) {
        const auto bitmap = read_bitmap(image->bytes);
        known = state_->pictures.emplace(image.get(), bitmap ? surface_of(*bitmap) : nullptr).first;
    }
    if (!known->second) return std::nullopt;
    return std::pair(cairo_image_surface_get_width(known->second.get()),
                     cairo_image_surface_get_height(known->second.get()));
}

void PictureCanvas::image(const std::shared_ptr<const ImageData>& image, const Area& area)
{
    const auto size = image_size(image);
    if (!size || size->first == 0 || size->second == 0) return;
    cairo_t* to = state_->context.get();
    cairo_save(to);
    cairo_translate(to, area.x, area.y);
    cairo_scale(to, area.width / size->first, area.height / size->second);
    cairo_set_source_surface(to, state_->pictures[image.get()].get(), 0, 0);
    cairo_paint(to);
    cairo_restore(to);
}

std::string PictureCanvas::png() const
{
    std::string bytes;
    const auto append = [](void* target, const unsigned char* data, unsigned count) {
        static_cast<std::string*>(target)->append(reinterpret_cast<const char*>(data), count);
        return CAIRO_STATUS_SUCCESS;
    };
    cairo_surface_write_to_png_stream(state_->surface.get(), append, &bytes);
    return bytes;
}

}  // namespace velora
