#include "engine/export/paint/drawing_picture.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cmath>

#include "engine/export/paint/cairo_faces.h"
#include "engine/picture/png_file.h"
#include "engine/text/font_store.h"

namespace velora::engine {
namespace {

constexpr double kPixelsPerPoint = 3;
constexpr float kLargestSide = 4000;  ///< points

void set_color(cairo_t* context, Color color)
{
    cairo().set_source_rgba(context, color.red / 255.0, color.green / 255.0, color.blue / 255.0, color.alpha / 255.0);
}

void trace(cairo_t* context, const Shape& shape)
{
    cairo().new_path(context);
    for (const auto& step : shape.path) {
        if (const auto* point = std::get_if<Point>(&step)) {
            cairo().line_to(context, point->x, point->y);
            continue;
        }
        const auto& arc = std::get<Shape::Arc>(step);
        const auto draw = arc.to >= arc.from ? cairo().arc : cairo().arc_negative;
        draw(context, arc.center.x, arc.center.y, arc.radius, arc.from, arc.to);
    }
    if (shape.closed) cairo().close_path(context);
}

void paint(cairo_t* context, const Shape& shape)
{
    trace(context, shape);
    if (shape.filled) {
        set_color(context, shape.fill);
        cairo().fill_preserve(context);
    }
    if (shape.stroke.width > 0) {
        const double width = shape.stroke.width, dash = shape.stroke.style == LineStyle::Dashed ? 5 * width : width;
        const bool broken = shape.stroke.style == LineStyle::Dashed || shape.stroke.style == LineStyle::Dotted;
        cairo().set_dash(context, &dash, broken ? 1 : 0, 0);
        cairo().set_line_width(context, width);
        set_color(context, shape.stroke.color);
        cairo().stroke(context);
    }
}

void paint(cairo_t* context, const Label& label, cairo_font_face_t* face)
{
    cairo().save(context);
    cairo().set_font_face(context, face);
    cairo().set_font_size(context, label.font.size);
    set_color(context, label.color);
    cairo_text_extents_t extents;
    cairo().text_extents(context, label.text.c_str(), &extents);
    const double in_front = label.align == HorizontalAlign::Center  ? 0.5
                            : label.align == HorizontalAlign::Right ? 1
                                                                    : 0;
    cairo().translate(context, label.at.x, label.at.y);
    cairo().rotate(context, label.angle);
    cairo().move_to(context, -extents.x_advance * in_front, 0);
    cairo().show_text(context, label.text.c_str());
    cairo().restore(context);
}

std::string png_of(cairo_surface_t& surface)
{
    cairo().surface_flush(&surface);
    const auto width = static_cast<uint32_t>(cairo().image_surface_get_width(&surface));
    const auto height = static_cast<uint32_t>(cairo().image_surface_get_height(&surface));
    if (cairo().surface_status(&surface) != CAIRO_STATUS_SUCCESS) return {};
    // Such a surface has four bytes a point and no gap between its rows.
    const auto* points = reinterpret_cast<const uint32_t*>(cairo().image_surface_get_data(&surface));
    return engine::png_of({points, size_t{width} * height}, width, height);
}

}  // namespace

DrawingPictures::DrawingPictures(FontStore& fonts) : fonts_(fonts) {}
DrawingPictures::~DrawingPictures() = default;

std::shared_ptr<const ImageData> DrawingPictures::picture(const Drawing& drawing, const Style& style)
{
    constexpr size_t kKept = 8;
    const Color ground = style.opaque ? style.back : kWhite;
    for (const Painted& known : recent_) {
        if (known.ground == ground && known.drawing == drawing) return known.picture;
    }
    if (recent_.size() == kKept) recent_.pop_front();
    return recent_.emplace_back(Painted{drawing, ground, painted(drawing, ground)}).picture;
}

std::shared_ptr<const ImageData> DrawingPictures::painted(const Drawing& drawing, Color ground)
{
    const bool paintable =
        drawing.width > 0 && drawing.height > 0 && drawing.width <= kLargestSide && drawing.height <= kLargestSide;
    if (!paintable) return nullptr;
    if (!faces_) faces_ = std::make_unique<CairoFaces>(FT_LOAD_DEFAULT);
    const CairoSurface surface(
        cairo().image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(drawing.width * kPixelsPerPoint)),
                                     static_cast<int>(std::ceil(drawing.height * kPixelsPerPoint))));
    const CairoContext context(cairo().create(surface.get()));
    set_color(context.get(), ground);
    cairo().paint(context.get());
    cairo().scale(context.get(), kPixelsPerPoint, kPixelsPerPoint);
    for (const auto& item : drawing.items) {
        if (const auto* label = std::get_if<Label>(&item)) {
            paint(context.get(), *label, faces_->of(fonts_.face(label->font)));
        } else {
            paint(context.get(), std::get<Shape>(item));
        }
    }
    ImageData png;
    png.source = "drawing.png";
    png.bytes = png_of(*surface);
    return png.bytes.empty() ? nullptr : std::make_shared<const ImageData>(std::move(png));
}

}  // namespace velora::engine
