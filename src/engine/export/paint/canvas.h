#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

class Face;

/// x' = a x + c y + e, y' = b x + d y + f
struct Matrix {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    /// First `inner`, then this.
    [[nodiscard]] Matrix operator*(const Matrix& inner) const
    {
        return {a * inner.a + c * inner.b, b * inner.a + d * inner.b,     a * inner.c + c * inner.d,
                b * inner.c + d * inner.d, a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
    }
    [[nodiscard]] std::pair<double, double> apply(double x, double y) const
    {
        return {a * x + c * y + e, b * x + d * y + f};
    }
    [[nodiscard]] bool upright() const { return b == 0 && c == 0; }
};

struct Area {
    double x = 0, y = 0, width = 0, height = 0;
};

struct Path {
    enum class Verb : uint8_t { Move, Line, Curve, Close };
    struct Step {
        Verb verb;
        std::array<double, 6> at;  ///< Move, Line: x, y; Curve: two control points and the end
    };
    std::vector<Step> steps;

    void move(double x, double y) { steps.push_back({Verb::Move, {x, y}}); }
    void line(double x, double y) { steps.push_back({Verb::Line, {x, y}}); }
    void curve(double x1, double y1, double x2, double y2, double x, double y)
    {
        steps.push_back({Verb::Curve, {x1, y1, x2, y2, x, y}});
    }
    void close() { steps.push_back({Verb::Close, {}}); }
    void arc(double x, double y, double x_radius, double y_radius, double from, double to);  ///< joined by a line
    void rectangle(const Area& area);
    void rounded(const Area& area, double radius);
    void ellipse(const Area& area);
};

struct Stroke {
    double width = 1;
    Color color = kBlack;
    LineStyle style = LineStyle::Solid;  ///< Double is for the painter to take apart
};

struct CanvasGlyph {
    uint16_t id;
    uint16_t cluster_size;  ///< bytes of the text that the glyph shows; 0 for a further glyph of the same
    uint32_t cluster;       ///< where they start
    float advance;          ///< points to the next glyph
    float natural;          ///< what the face itself says
    float dx = 0, dy = 0;   ///< shift in points, y upwards
};

/// Glyphs of one face on one base line.
struct GlyphRun {
    const Face* face;
    double size;
    Color color;
    double x, y;  ///< of the base line's left end
    std::string_view text;
    std::span<const CanvasGlyph> glyphs;
    bool right_to_left;  ///< the text runs against the order of the glyphs
};

/// Something that pages are painted on. Lengths are points; the origin is the upper left corner of the page.
class Canvas {
public:
    virtual ~Canvas() = default;

    /// What comes next is the element's that stands next in painting order, frames before what they hold.
    virtual void next_element() {}
    virtual void save() = 0;
    virtual void restore() = 0;
    virtual void transform(const Matrix& matrix) = 0;
    virtual void clip(const Area& area) = 0;

    virtual void fill(const Path& path, Color color) = 0;
    virtual void fill(const Area& area, Color color) = 0;
    virtual void stroke(const Path& path, const Stroke& stroke) = 0;
    virtual void glyphs(const GlyphRun& run) = 0;
    /// Size in pixels of a picture, or none when it cannot be shown.
    virtual std::optional<std::pair<int, int>> image_size(const std::shared_ptr<const ImageData>& image) = 0;
    virtual void image(const std::shared_ptr<const ImageData>& image, const Area& area) = 0;

    virtual void link(const Area&, const Link&) {}
    virtual void anchor(const Area&, const Anchor&, std::string_view /*label*/) {}
};

}  // namespace velora::engine
