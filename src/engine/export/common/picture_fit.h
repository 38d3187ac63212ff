#pragma once

#include <optional>
#include <string_view>

#include "engine/page/page.h"
#include "engine/page/picture_head.h"

namespace velora::engine {

/// The head of a picture that exporters can show, a PNG or JPEG. None for others and for damaged ones.
std::optional<PictureHead> shown_picture(std::string_view bytes);

/// A rectangle on the page in points.
struct PictureBox {
    float x = 0, y = 0, width = 0, height = 0;
};

inline PictureBox box_of(const Place& place)
{
    return {static_cast<float>(place.x), static_cast<float>(place.y), static_cast<float>(place.width),
            static_cast<float>(place.height)};
}

/// The element without its paddings.
PictureBox picture_area(const Style& style, const Place& place);

/// Whether a format can show a part of a picture. One that cannot shows a picture that would be clipped as a whole.
enum class Cut : uint8_t { Possible, Impossible };

/// Where the picture is drawn inside its element: stretched, or in its own proportions (a point a pixel at most) and
/// aligned.
PictureBox fitted_picture(const Style& style, const Place& place, const ImageData& image, Cut cut = Cut::Impossible);

}  // namespace velora::engine
