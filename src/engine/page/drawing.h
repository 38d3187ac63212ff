#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "engine/page/style.h"

namespace velora::engine {

struct Point {
    float x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

/// A path of straight lines and arcs, filled, stroked or both.
struct Shape {
    struct Arc {  ///< part of a circle, angles in radians clockwise from three o'clock
        Point center;
        float radius = 0, from = 0, to = 0;
        bool operator==(const Arc&) const = default;
    };
    std::vector<std::variant<Point, Arc>> path;  ///< joined by straight lines
    bool closed = false;
    bool filled = false;
    Color fill = kBlack;
    Pen stroke;  ///< width 0: none
    bool operator==(const Shape&) const = default;
};

/// A text on one line; `at` is the base line's left end, middle or right end, as `align` says.
struct Label {
    Point at;
    std::string text;
    Font font;
    Color color = kBlack;
    HorizontalAlign align = HorizontalAlign::Left;
    float angle = 0;  ///< radians, clockwise, around `at`
    bool operator==(const Label&) const = default;
};

/// A vector drawing of the given size in points; y grows downwards. The items are painted in order.
struct Drawing {
    float width = 0, height = 0;
    std::vector<std::variant<Shape, Label>> items;
    std::string description{};  ///< what it shows, for those who cannot see it
    /// Whether it looks the same.
    bool operator==(const Drawing& other) const
    {
        return width == other.width && height == other.height && items == other.items;
    }
};

}  // namespace velora::engine
