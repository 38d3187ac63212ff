#include "engine/page/picture_head.h"

#include <limits>

namespace velora::engine {
namespace {

uint32_t byte_at(std::string_view bytes, size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

uint32_t big_endian(std::string_view bytes, size_t at, size_t count)
{
    uint32_t value = 0;
    for (size_t index = 0; index < count; ++index) value = value << 8 | byte_at(bytes, at + index);
    return value;
}

std::optional<PictureHead> head(PictureKind kind, uint32_t width, uint32_t height, uint32_t components = 3)
{
    constexpr uint32_t kMost = std::numeric_limits<int>::max();
    if (width == 0 || height == 0 || width > kMost || height > kMost) return std::nullopt;
    return PictureHead{kind, static_cast<int>(width), static_cast<int>(height), static_cast<int>(components)};
}

/// Walks over the segments up to the frame header, which holds the size.
std::optional<PictureHead> jpeg_head(std::string_view bytes)
{
    for (size_t at = 2; at + 9 < bytes.size() && byte_at(bytes, at) == 0xFF;) {
        const uint32_t marker = byte_at(bytes, at + 1);
        const bool is_frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (is_frame) {
            return head(PictureKind::Jpeg, big_endian(bytes, at + 7, 2), big_endian(bytes, at + 5, 2),
                        byte_at(bytes, at + 9));
        }
        at += marker == 0xFF ? 1 : 2 + big_endian(bytes, at + 2, 2);  // any number of bytes may fill up
    }
    return std::nullopt;
}

}  // namespace

std::optional<PictureHead> picture_head(std::string_view bytes)
{
    if (bytes.starts_with("\x89PNG\r\n\x1A\n") && bytes.size() >= 24) {
        return head(PictureKind::Png, big_endian(bytes, 16, 4), big_endian(bytes, 20, 4));
    }
    if (bytes.starts_with("\xFF\xD8\xFF")) return jpeg_head(bytes);
    if (bytes.starts_with("GIF8") && bytes.size() >= 10) {
        const auto little_endian = [&](size_t at) { return byte_at(bytes, at) | byte_at(bytes, at + 1) << 8; };
        return head(PictureKind::Gif, little_endian(6), little_endian(8));
    }
    return std::nullopt;
}

std::string_view image_media_type(std::string_view bytes)
{
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return "image/png";
    if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
    if (bytes.substr(0, 1024).find("<svg") != std::string_view::npos) return "image/svg+xml";
    return {};
}

}  // namespace velora::engine
