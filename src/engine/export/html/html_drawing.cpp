#include "engine/export/html/html_drawing.h"

#include <fmt/format.h>

#include <cmath>
#include <numbers>

#include "engine/export/common/short_number.h"
#include "engine/export/html/html_styles.h"
#include "engine/export/html/html_text.h"

namespace velora::engine {
namespace {

constexpr double kFullTurn = 2 * std::numbers::pi;

Point on_arc(const Shape::Arc& arc, double angle)
{
    return {arc.center.x + arc.radius * static_cast<float>(std::cos(angle)),
            arc.center.y + arc.radius * static_cast<float>(std::sin(angle))};
}

std::string pair(Point point)
{
    return short_number(point.x) + " " + short_number(point.y);
}

std::string arc_to(const Shape::Arc& arc, double from, double to)
{
    const double sweep = to - from;
    return fmt::format("A{0} {0} 0 {1} {2} {3}", short_number(arc.radius), std::abs(sweep) > std::numbers::pi ? 1 : 0,
                       sweep >= 0 ? 1 : 0, pair(on_arc(arc, to)));
}

/// An arc from a point to the same point draws nothing, so a full circle is drawn in halves.
std::string whole_arc(const Shape::Arc& arc)
{
    const double sweep = static_cast<double>(arc.to) - arc.from;
    if (std::abs(sweep) < kFullTurn - 1e-3) return arc_to(arc, arc.from, arc.to);
    const double middle = arc.from + sweep / 2;
    return arc_to(arc, arc.from, middle) + arc_to(arc, middle, arc.to);
}

std::string path_data(const Shape& shape)
{
    std::string data;
    for (const auto& step : shape.path) {
        const char command = data.empty() ? 'M' : 'L';
        if (const auto* point = std::get_if<Point>(&step)) {
            data += command + pair(*point);
        } else {
            const auto& arc = std::get<Shape::Arc>(step);
            data += command + pair(on_arc(arc, arc.from)) + whole_arc(arc);
        }
    }
    return shape.closed ? data + "Z" : data;
}

void append(std::string& out, const Shape& shape)
{
    out += fmt::format("<path d=\"{}\" fill=\"{}\"", path_data(shape),
                       shape.filled ? html_color(shape.fill) : std::string("none"));
    if (shape.stroke.width > 0) {
        out += fmt::format(" stroke=\"{}\" stroke-width=\"{}\"", html_color(shape.stroke.color),
                           short_number(shape.stroke.width));
        const double width = shape.stroke.width;
        if (shape.stroke.style == LineStyle::Dashed)
            out += fmt::format(" stroke-dasharray=\"{}\"", short_number(5 * width));
        if (shape.stroke.style == LineStyle::Dotted)
            out += fmt::format(" stroke-dasharray=\"{}\"", short_number(width));
    }
    out += "/>";
}

std::string_view anchor_name(HorizontalAlign align)
{
    if (align == HorizontalAlign::Center) return "middle";
    return align == HorizontalAlign::Right ? "end" : "start";
}

void append(std::string& out, const Label& label)
{
    const Font& font = label.font;
    out += fmt::format("<text x=\"{}\" y=\"{}\" fill=\"{}\" text-anchor=\"{}\" font-family=\"{}\" font-size=\"{}\"",
                       short_number(label.at.x), short_number(label.at.y), html_color(label.color),
                       anchor_name(label.align), html_font_families(font), short_number(font.size));
    if (font.bold) out += " font-weight=\"bold\"";
    if (font.italic) out += " font-style=\"italic\"";
    if (label.angle != 0) {
        out += fmt::format(" transform=\"rotate({} {})\"", short_number(label.angle * 180 / std::numbers::pi),
                           pair(label.at));
    }
    out += '>';
    html_append(out, label.text);
    out += "</text>";
}

}  // namespace

void html_append_drawing(std::string& out, const Drawing& drawing)
{
    out += fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}pt\" height=\"{1}pt\"",
        short_number(drawing.width), short_number(drawing.height));
    if (!drawing.description.empty()) {
        out += " role=\"img\" aria-label=\"";
        html_append(out, drawing.description);
        out += '"';
    }
    out += '>';
    for (const auto& item : drawing.items) {
        std::visit([&](const auto& part) { append(out, part); }, item);
    }
    out += "</svg>";
}

std::string svg_file(const Drawing& drawing)
{
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    html_append_drawing(out, drawing);
    return out;
}

}  // namespace velora::engine
