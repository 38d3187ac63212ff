#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velora::engine {

enum class PictureKind : uint8_t { Png, Jpeg, Gif };

/// What the first bytes of a picture's file tell.
struct PictureHead {
    PictureKind kind;
    int width, height;   ///< pixels, both above 0
    int components = 3;  ///< of a JPEG: 1 grey, 3 colour, 4 inks
};

/// None for every other file and for one whose head is damaged.
std::optional<PictureHead> picture_head(std::string_view bytes);

/// "image/png", "image/jpeg", "image/svg+xml", told by the content; empty when it is none of them, which no format
/// shows.
std::string_view image_media_type(std::string_view bytes);

}  // namespace velora::engine
