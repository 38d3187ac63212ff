#pragma once

#include <algorithm>
#include <type_traits>

#include "engine/page/page.h"

namespace velora::engine {

/// Points from the page's corner, beyond any paper: sums of places stay numbers when a definition's do not.
inline constexpr int32_t kFarthest = 100'000'000;

/// The place as it counts from the page's corner, for an element in a frame whose inner corner stands at x, y.
inline Place place_on_page(const Place& place, int32_t x, int32_t y)
{
    const auto near = [](int64_t length) {
        return static_cast<int32_t>(std::clamp<int64_t>(length, -kFarthest, kFarthest));
    };
    return {near(int64_t{place.x} + x), near(int64_t{place.y} + y), near(place.width), near(place.height)};
}

/// Calls `visit(element, place)` for every element in painting order, frames before what they hold. The place counts
/// from the page's corner.
template <class Visit>
void walk_elements(const std::vector<Element>& elements, const Visit& visit, int32_t x = 0, int32_t y = 0)
{
    for (const Element& element : elements) {
        const Place place = place_on_page(element.place, x, y);
        visit(element, place);
        if (const auto* frame = std::get_if<Frame>(&element.content)) {
            const Box& box = element.style->box;
            walk_elements(frame->children, visit, place.x + box.left_padding, place.y + box.top_padding);
        }
    }
}

/// The measured height of a text's line; a text that was never measured gets that of the shipped face.
inline float measured_height(const Text& text, const Style& style)
{
    constexpr float kOfShippedFace = 1.1640625F;
    return text.text_height > 0 ? text.text_height : style.font.size * kOfShippedFace;
}

/// The upright area in which a text's lines stand, before its rotation is applied: paddings as the lines see them.
struct TextArea {
    float width = 0, height = 0;  ///< of the whole box, exchanged when the text is turned aside
    float left = 0, top = 0, right = 0, bottom = 0;
};

inline TextArea text_area(const Style& style, const Place& place)
{
    const auto width = static_cast<float>(place.width);
    const auto height = static_cast<float>(place.height);
    const auto left = static_cast<float>(style.box.left_padding), right = static_cast<float>(style.box.right_padding);
    const auto top = static_cast<float>(style.box.top_padding), bottom = static_cast<float>(style.box.bottom_padding);
    switch (style.rotation) {
        case Rotation::Left:
            return {height, width, bottom, left, top, right};
        case Rotation::Right:
            return {height, width, top, right, bottom, left};
        case Rotation::UpsideDown:
            return {width, height, right, bottom, left, top};
        case Rotation::None:
            break;
    }
    return {width, height, left, top, right, bottom};
}

/// The way of a line element: upright or level when it is no thicker than a point, else across its box.
enum class LineWay : uint8_t { Level, Upright, Across };
inline LineWay line_way(const Place& place)
{
    if (place.height <= 1) return LineWay::Level;
    return place.width <= 1 ? LineWay::Upright : LineWay::Across;
}

/// Name under which other programs know the font: the logical names stand for the shipped faces.
inline std::string_view font_family_name(const Font& font)
{
    if (font.family.empty() || font.family == "SansSerif" || font.family == "Dialog") return "DejaVu Sans";
    if (font.family == "Serif") return "DejaVu Serif";
    if (font.family == "Monospaced" || font.family == "DialogInput") return "DejaVu Sans Mono";
    return font.family;
}

}  // namespace velora::engine
