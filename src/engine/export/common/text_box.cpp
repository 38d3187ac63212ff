#include "engine/export/common/text_box.h"

#include <algorithm>

#include "engine/export/common/page_walk.h"

namespace velora::engine {

float line_height(const Text& text, const Style& style)
{
    if (text.detail && !text.detail->lines.empty()) return text.detail->lines.back().height;
    return measured_height(text, style);
}

PictureBox text_box(const Style& style, const Place& place, float text_height, float slack)
{
    const TextArea area = text_area(style, place);
    const float free = std::max(0.0F, area.height - area.top - area.bottom - text_height);
    const float down = style.vertical == VerticalAlign::Middle   ? free / 2
                       : style.vertical == VerticalAlign::Bottom ? free
                                                                 : 0;
    PictureBox lines{area.left, area.top + down, std::max(1.0F, area.width - area.left - area.right),
                     text_height + slack};
    if (style.horizontal == HorizontalAlign::Right) lines.x -= slack;
    if (style.horizontal == HorizontalAlign::Center) lines.x -= slack / 2;
    if (style.horizontal != HorizontalAlign::Justified) lines.width += slack;
    const auto x = static_cast<float>(place.x), y = static_cast<float>(place.y);
    switch (style.rotation) {
        case Rotation::Left:
            return {x + lines.y, y + area.width - lines.x - lines.width, lines.height, lines.width};
        case Rotation::Right:
            return {x + area.height - lines.y - lines.height, y + lines.x, lines.height, lines.width};
        case Rotation::UpsideDown:
            return {x + area.width - lines.x - lines.width, y + area.height - lines.y - lines.height, lines.width,
                    lines.height};
        case Rotation::None:
            break;
    }
    return {x + lines.x, y + lines.y, lines.width, lines.height};
}

}  // namespace velora::engine
