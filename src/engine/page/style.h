#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace velora::engine {

/// An opaque colour by its three parts, or with an alpha below 255 a transparent one.
struct Color {
    uint8_t red = 0, green = 0, blue = 0, alpha = 255;
    bool operator==(const Color&) const = default;
};

inline constexpr Color kBlack{0, 0, 0, 255};
inline constexpr Color kWhite{255, 255, 255, 255};

enum class LineStyle : uint8_t { Solid, Dashed, Dotted, Double };
enum class HorizontalAlign : uint8_t { Left, Center, Right, Justified };
enum class VerticalAlign : uint8_t { Top, Middle, Bottom, Justified };
/// Left: the text reads from bottom to top. Right: from top to bottom.
enum class Rotation : uint8_t { None, Left, Right, UpsideDown };
enum class ScaleImage : uint8_t { Clip, FillFrame, RetainShape, RealHeight, RealSize };
enum class LineSpacing : uint8_t { Single, OneAndHalf, Double, AtLeast, Fixed, Proportional };

/// Width 0 draws nothing.
struct Pen {
    float width = 0;
    LineStyle style = LineStyle::Solid;
    Color color = kBlack;
    bool operator==(const Pen&) const = default;
};

/// Borders and paddings of a text, an image or a frame.
struct Box {
    Pen top, left, bottom, right;
    int16_t top_padding = 0, left_padding = 0, bottom_padding = 0, right_padding = 0;
    bool operator==(const Box&) const = default;
};

struct Font {
    std::string family = "SansSerif";
    float size = 10;  ///< in points
    bool bold = false, italic = false, underline = false, strike_through = false;
    bool operator==(const Font&) const = default;
};

/// How the lines of a text stand. Lengths are points.
struct Paragraph {
    LineSpacing spacing = LineSpacing::Single;
    float spacing_size = 1;  ///< points for AtLeast and Fixed, a factor for Proportional
    int16_t first_line_indent = 0, left_indent = 0, right_indent = 0;
    int16_t spacing_before = 0, spacing_after = 0;
    int16_t tab_width = 40;
    bool operator==(const Paragraph&) const = default;
};

/// Everything about the looks of an element. Immutable once it is in a sheet, and shared by the elements.
struct Style {
    Font font;
    Color fore = kBlack;
    Color back = kWhite;
    bool opaque = false;  ///< whether the ground is filled with `back`
    HorizontalAlign horizontal = HorizontalAlign::Left;
    VerticalAlign vertical = VerticalAlign::Top;
    Rotation rotation = Rotation::None;
    ScaleImage scale = ScaleImage::RetainShape;
    int16_t radius = 0;           ///< of a rectangle's corners
    bool line_bottom_up = false;  ///< a line runs from the lower left to the upper right corner
    Pen pen{1, LineStyle::Solid, kBlack};
    Box box;
    Paragraph paragraph;
    std::string pattern;  ///< number or date pattern of a typed value, in the notation of definitions
    bool operator==(const Style&) const = default;
};

/// Keeps each different style once. The addresses hold as long as the sheet lives, also while it grows.
class StyleSheet {
public:
    const Style* intern(const Style& style);
    [[nodiscard]] size_t size() const { return styles_.size(); }
    [[nodiscard]] const Style& at(size_t index) const { return styles_.at(index); }
    /// Position of a style that `intern` gave.
    [[nodiscard]] size_t index(const Style* style) const { return positions_.at(style); }

private:
    std::deque<Style> styles_;
    std::unordered_map<const Style*, size_t> positions_;
    std::unordered_map<size_t, std::vector<const Style*>> by_hash_;
};

}  // namespace velora::engine
