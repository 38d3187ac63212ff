#include "engine/export/paint/paint.h"

#include <cmath>

#include "engine/export/common/page_walk.h"

namespace velora::engine {
namespace {

Area area_of(const Place& place)
{
    return {double(place.x), double(place.y), double(place.width), double(place.height)};
}

Area grown(const Area& area, double by)
{
    return {area.x - by, area.y - by, area.width + 2 * by, area.height + 2 * by};
}

void stroke_line(Canvas& canvas, double x1, double y1, double x2, double y2, const Stroke& stroke)
{
    Path path;
    path.move(x1, y1);
    path.line(x2, y2);
    canvas.stroke(path, stroke);
}

/// A straight line with a pen; a double one is two lines of a third each.
void draw_line(Canvas& canvas, double x1, double y1, double x2, double y2, const Pen& pen)
{
    if (pen.width <= 0) return;
    if (pen.style != LineStyle::Double) {
        stroke_line(canvas, x1, y1, x2, y2, {pen.width, pen.color, pen.style});
        return;
    }
    const double length = std::hypot(x2 - x1, y2 - y1);
    if (length == 0) return;
    const double shift = pen.width / 3.0 / length;
    const double dx = (y2 - y1) * shift, dy = (x1 - x2) * shift;
    for (const double side : {-1.0, 1.0}) {
        stroke_line(canvas, x1 + side * dx, y1 + side * dy, x2 + side * dx, y2 + side * dy,
                    {pen.width / 3.0, pen.color, LineStyle::Solid});
    }
}

/// Outlines a closed figure that `trace` draws around an area.
template <class Trace>
void draw_outline(Canvas& canvas, const Area& area, const Pen& pen, const Trace& trace)
{
    if (pen.width <= 0) return;
    const auto stroke = [&](double by, double width, LineStyle style) {
        Path path;
        trace(path, grown(area, by));
        canvas.stroke(path, {width, pen.color, style});
    };
    if (pen.style != LineStyle::Double) return stroke(0, pen.width, pen.style);
    const double third = pen.width / 3.0;
    stroke(third, third, LineStyle::Solid);
    stroke(-third, third, LineStyle::Solid);
}

void draw_box(Canvas& canvas, const Box& box, const Place& place)
{
    const Area a = area_of(place);
    const double right = a.x + a.width, bottom = a.y + a.height;
    const bool alike = box.top == box.left && box.top == box.right && box.top == box.bottom;
    if (alike) {
        draw_outline(canvas, a, box.top, [](Path& path, const Area& area) { path.rectangle(area); });
        return;
    }
    // Each side reaches over the corner by half of the pen that meets it there.
    const double l = box.left.width / 2.0, r = box.right.width / 2.0, t = box.top.width / 2.0,
                 b = box.bottom.width / 2.0;
    draw_line(canvas, a.x - l, a.y, right + r, a.y, box.top);
    draw_line(canvas, a.x - l, bottom, right + r, bottom, box.bottom);
    draw_line(canvas, a.x, a.y - t, a.x, bottom + b, box.left);
    draw_line(canvas, right, a.y - t, right, bottom + b, box.right);
}

void fill_ground(Canvas& canvas, const Style& style, const Place& place)
{
    if (style.opaque && style.back.alpha > 0) canvas.fill(area_of(place), style.back);
}

/// Where a picture of the given size goes; `clipped` when it may stand over the inner area.
Area picture_area(const Style& style, const Area& inner, double width, double height, bool& clipped)
{
    clipped = style.scale == ScaleImage::Clip;
    if (style.scale == ScaleImage::FillFrame) return inner;
    if (!clipped) {
        double factor = std::min(inner.width / width, inner.height / height);
        if (style.scale != ScaleImage::RetainShape) factor = std::min(factor, 1.0);
        width *= factor;
        height *= factor;
    }
    const auto share = [](auto align, auto middle, auto end) {
        return align == middle ? 0.5 : align == end ? 1.0 : 0.0;
    };
    return {inner.x + (inner.width - width) * share(style.horizontal, HorizontalAlign::Center, HorizontalAlign::Right),
            inner.y + (inner.height - height) * share(style.vertical, VerticalAlign::Middle, VerticalAlign::Bottom),
            width, height};
}

Path path_of(const Shape& shape, double x, double y)
{
    Path path;
    for (const auto& step : shape.path) {
        if (const auto* point = std::get_if<Point>(&step)) {
            path.steps.push_back(
                {path.steps.empty() ? Path::Verb::Move : Path::Verb::Line, {x + point->x, y + point->y}});
        } else {
            const auto& arc = std::get<Shape::Arc>(step);
            path.arc(x + arc.center.x, y + arc.center.y, arc.radius, arc.radius, arc.from, arc.to);
        }
    }
    if (shape.closed) path.close();
    return path;
}

}  // namespace

void Painter::paint(const Page& page, Canvas& canvas)
{
    paint(page.elements, 0, 0, canvas);
}

void Painter::paint(const std::vector<Element>& elements, int32_t x, int32_t y, Canvas& canvas)
{
    for (const Element& element : elements) {
        const Place place = place_on_page(element.place, x, y);
        canvas.next_element();
        std::visit([&](const auto& content) { paint_content(content, *element.style, place, canvas); },
                   element.content);
    }
}

void Painter::paint_content(const Text& text, const Style& style, const Place& place, Canvas& canvas)
{
    fill_ground(canvas, style, place);
    texts_.paint(text, style, place, canvas);
    draw_box(canvas, style.box, place);
    if (!text.detail) return;
    if (text.detail->link.kind != Link::Kind::None) canvas.link(area_of(place), text.detail->link);
    if (!(text.detail->anchor == Anchor{})) canvas.anchor(area_of(place), text.detail->anchor, text.shown());
}

void Painter::paint_content(const Image& image, const Style& style, const Place& place, Canvas& canvas)
{
    fill_ground(canvas, style, place);
    const Box& box = style.box;
    const Area inner{double(place.x + box.left_padding), double(place.y + box.top_padding),
                     double(place.width - box.left_padding - box.right_padding),
                     double(place.height - box.top_padding - box.bottom_padding)};
    const auto size = image.data ? canvas.image_size(image.data) : std::nullopt;
    if (size && inner.width > 0 && inner.height > 0) {
        bool clipped = false;
        const Area area =
            picture_area(style, inner, size->first / image.data->density, size->second / image.data->density, clipped);
        if (clipped) {
            canvas.save();
            canvas.clip(inner);
        }
        canvas.image(image.data, area);
        if (clipped) canvas.restore();
    }
    draw_box(canvas, box, place);
    if (image.link) canvas.link(area_of(place), *image.link);
    if (image.anchor) canvas.anchor(area_of(place), *image.anchor, image.anchor->name);
}

void Painter::paint_content(const Frame& frame, const Style& style, const Place& place, Canvas& canvas)
{
    fill_ground(canvas, style, place);
    paint(frame.children, place.x + style.box.left_padding, place.y + style.box.top_padding, canvas);
    draw_box(canvas, style.box, place);
}

void Painter::paint_content(const Graphic& graphic, const Style& style, const Place& place, Canvas& canvas)
{
    fill_ground(canvas, style, place);
    static const Drawing kNothing;
    for (const auto& item : (graphic.drawing ? *graphic.drawing : kNothing).items) {
        if (const auto* label = std::get_if<Label>(&item)) {
            texts_.paint(*label, place.x, place.y, canvas);
            continue;
        }
        const auto& shape = std::get<Shape>(item);
        const Path path = path_of(shape, place.x, place.y);
        if (shape.filled) canvas.fill(path, shape.fill);
        if (shape.stroke.width > 0) canvas.stroke(path, {shape.stroke.width, shape.stroke.color, shape.stroke.style});
    }
    draw_box(canvas, style.box, place);
}

void Painter::paint_content(const Line&, const Style& style, const Place& place, Canvas& canvas)
{
    const Area a = area_of(place);
    switch (line_way(place)) {
        case LineWay::Level:
            return draw_line(canvas, a.x, a.y + a.height / 2, a.x + a.width, a.y + a.height / 2, style.pen);
        case LineWay::Upright:
            return draw_line(canvas, a.x + a.width / 2, a.y, a.x + a.width / 2, a.y + a.height, style.pen);
        case LineWay::Across:
            break;
    }
    const double from = style.line_bottom_up ? a.y + a.height : a.y;
    const double to = style.line_bottom_up ? a.y : a.y + a.height;
    draw_line(canvas, a.x, from, a.x + a.width, to, style.pen);
}

void Painter::paint_content(const Rectangle&, const Style& style, const Place& place, Canvas& canvas)
{
    const auto trace = [&](Path& path, const Area& area) { path.rounded(area, style.radius); };
    if (style.opaque) {
        Path path;
        trace(path, area_of(place));
        canvas.fill(path, style.back);
    }
    draw_outline(canvas, area_of(place), style.pen, trace);
}

void Painter::paint_content(const Ellipse&, const Style& style, const Place& place, Canvas& canvas)
{
    const auto trace = [](Path& path, const Area& area) { path.ellipse(area); };
    if (style.opaque) {
        Path path;
        trace(path, area_of(place));
        canvas.fill(path, style.back);
    }
    draw_outline(canvas, area_of(place), style.pen, trace);
}

}  // namespace velora::engine
