#pragma once

#include <string>
#include <string_view>

#include "engine/export/common/picture_fit.h"
#include "engine/page/page.h"

namespace velora::engine {

using RtfBox = PictureBox;

/// Writes drawing objects that stand at a fixed place of the page, each above the ones before.
class RtfShapes {
public:
    enum class Kind : uint8_t {
        Rectangle = 1,
        RoundRectangle = 2,
        Ellipse = 3,
        Line = 20,
        Picture = 75,
        TextBox = 202
    };

    /// Filled with `fill` when given, outlined with `pen` when it has a width.
    void closed(std::string& out, Kind kind, const RtfBox& box, const Color* fill, const Pen& pen, float radius = 0);
    void line(std::string& out, Point from, Point to, const Pen& pen);
    /// The picture is stretched over the box.
    void picture(std::string& out, const RtfBox& box, std::string_view bytes, std::string_view description = {});
    /// A text box without fill and border; `text` is rich text made of paragraphs.
    void text(std::string& out, const RtfBox& box, Rotation rotation, std::string_view text);

private:
    void open(std::string& out, Kind kind, const RtfBox& box);
    uint32_t order_ = 0;
};

}  // namespace velora::engine
