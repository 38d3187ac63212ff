#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/expression/definition_error.h"
#include "engine/page/style.h"

/// Attributes that an element takes from a style, each one optional: what is not set is inherited.
namespace velora::engine::model {

/// An expression as it stands in the file; empty when the definition has none.
struct ExpressionText {
    std::string text;
    Position place;

    [[nodiscard]] bool present() const { return !text.empty(); }
};

enum class Mode : uint8_t { Opaque, Transparent };
enum class Markup : uint8_t { None, Styled, Html, Rtf };

struct PenAttributes {
    std::optional<float> width;
    std::optional<LineStyle> style;
    std::optional<Color> color;
};

struct BoxAttributes {
    std::optional<int> padding;  ///< of all sides; a side's own wins
    std::optional<int> top_padding;
    std::optional<int> left_padding;
    std::optional<int> bottom_padding;
    std::optional<int> right_padding;
    PenAttributes pen;  ///< of all sides; a side's own wins
    PenAttributes top;
    PenAttributes left;
    PenAttributes bottom;
    PenAttributes right;
};

struct TabStop {
    int position = 0;
    HorizontalAlign align = HorizontalAlign::Left;
};

struct ParagraphAttributes {
    std::optional<LineSpacing> line_spacing;
    std::optional<float> line_spacing_size;
    std::optional<int> first_line_indent;
    std::optional<int> left_indent;
    std::optional<int> right_indent;
    std::optional<int> spacing_before;
    std::optional<int> spacing_after;
    std::optional<int> tab_stop_width;
    std::vector<TabStop> tab_stops;
};

struct FontAttributes {
    std::optional<std::string> name;
    std::optional<float> size;
    std::optional<bool> bold;
    std::optional<bool> italic;
    std::optional<bool> underline;
    std::optional<bool> strike_through;
};

struct StyleAttributes {
    std::optional<Mode> mode;
    std::optional<Color> forecolor;
    std::optional<Color> backcolor;
    std::optional<int> radius;
    std::optional<ScaleImage> scale_image;
    std::optional<HorizontalAlign> text_align;
    std::optional<VerticalAlign> text_valign;
    std::optional<HorizontalAlign> image_align;
    std::optional<VerticalAlign> image_valign;
    std::optional<Rotation> rotation;
    std::optional<std::string> pattern;
    std::optional<bool> blank_when_null;
    std::optional<Markup> markup;
    FontAttributes font;
    PenAttributes pen;
    BoxAttributes box;
    ParagraphAttributes paragraph;
};

struct ConditionalStyle {
    ExpressionText condition;
    std::string parent;  ///< a condition may name a style of its own
    StyleAttributes attributes;
};

struct Style {
    std::string name;
    std::string parent;  ///< name of the style that it inherits from, empty for none
    bool is_default = false;
    StyleAttributes attributes;
    std::vector<ConditionalStyle> conditions;  ///< of those that hold, an earlier one wins
    Position place;
};

}  // namespace velora::engine::model
