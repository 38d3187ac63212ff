#include "engine/export/common/picture_fit.h"

#include <algorithm>

namespace velora::engine {
namespace {

float share_in_front(HorizontalAlign align)
{
    if (align == HorizontalAlign::Center) return 0.5F;
    return align == HorizontalAlign::Right ? 1.0F : 0.0F;
}

float share_above(VerticalAlign align)
{
    if (align == VerticalAlign::Middle) return 0.5F;
    return align == VerticalAlign::Bottom ? 1.0F : 0.0F;
}

}  // namespace

std::optional<PictureHead> shown_picture(std::string_view bytes)
{
    const auto head = picture_head(bytes);
    return head && head->kind != PictureKind::Gif ? head : std::nullopt;
}

PictureBox picture_area(const Style& style, const Place& place)
{
    const Box& box = style.box;
    return {static_cast<float>(place.x + box.left_padding), static_cast<float>(place.y + box.top_padding),
            static_cast<float>(std::max(1, place.width - box.left_padding - box.right_padding)),
            static_cast<float>(std::max(1, place.height - box.top_padding - box.bottom_padding))};
}

PictureBox fitted_picture(const Style& style, const Place& place, const ImageData& image, Cut cut)
{
    const PictureBox area = picture_area(style, place);
    const auto size = shown_picture(image.bytes);
    if (!size || style.scale == ScaleImage::FillFrame) return area;
    const auto width = static_cast<float>(size->width / image.density);
    const auto height = static_cast<float>(size->height / image.density);
    float scale = std::min(area.width / width, area.height / height);
    if (style.scale != ScaleImage::RetainShape) scale = std::min(scale, 1.0F);
    if (style.scale == ScaleImage::Clip && cut == Cut::Possible) scale = 1;
    const float free_across = area.width - width * scale, free_down = area.height - height * scale;
    return {area.x + free_across * share_in_front(style.horizontal), area.y + free_down * share_above(style.vertical),
            width * scale, height * scale};
}

}  // namespace velora::engine
