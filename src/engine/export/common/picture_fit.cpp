#include "engine/export/common/picture_fit.h"

#include <algorithm>

namespace velora::engine {
namespace {

uint32_t byte_at(std::string_view bytes, size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

uint32_t big_endian(std::string_view bytes, size_t at, size_t count)
{
    uint32_t value = 0;
    for (size_t i = 0; i < count; ++i) value = value << 8 | byte_at(bytes, at + i);
    return value;
}

/// Walks over the segments up to the frame header, which holds the size.
std::optional<PictureSize> jpeg_size(std::string_view bytes)
{
    for (size_t at = 2; at + 9 <= bytes.size();) {
        if (byte_at(bytes, at) != 0xFF) return std::nullopt;
        const uint32_t marker = byte_at(bytes, at + 1);
        const bool is_frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (is_frame) return PictureSize{big_endian(bytes, at + 7, 2), big_endian(bytes, at + 5, 2)};
        at += 2 + big_endian(bytes, at + 2, 2);
    }
    return std::nullopt;
}

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

std::optional<PictureSize> picture_size(std::string_view bytes)
{
    std::optional<PictureSize> size;
    if (bytes.starts_with("\x89PNG\r\n\x1A\n") && bytes.size() >= 24) {
        size = PictureSize{big_endian(bytes, 16, 4), big_endian(bytes, 20, 4)};
    } else if (bytes.starts_with("\xFF\xD8\xFF")) {
        size = jpeg_size(bytes);
    }
    return size && size->width > 0 && size->height > 0 ? size : std::nullopt;
}

PictureBox picture_area(const Style& style, const Place& place)
{
    const Box& box = style.box;
    return {static_cast<float>(place.x + box.left_padding), static_cast<float>(place.y + box.top_padding),
            static_cast<float>(std::max(1, place.width - box.left_padding - box.right_padding)),
            static_cast<float>(std::max(1, place.height - box.top_padding - box.bottom_padding))};
}

PictureBox fitted_picture(const Style& style, const Place& place, std::string_view bytes, Cut cut)
{
    const PictureBox area = picture_area(style, place);
    const auto size = picture_size(bytes);
    if (!size || style.scale == ScaleImage::FillFrame) return area;
    const auto width = static_cast<float>(size->width), height = static_cast<float>(size->height);
    float scale = std::min(area.width / width, area.height / height);
    if (style.scale != ScaleImage::RetainShape) scale = std::min(scale, 1.0F);
    if (style.scale == ScaleImage::Clip && cut == Cut::Possible) scale = 1;
    const float free_across = area.width - width * scale, free_down = area.height - height * scale;
    return {area.x + free_across * share_in_front(style.horizontal), area.y + free_down * share_above(style.vertical),
            width * scale, height * scale};
}

}  // namespace velora::engine
