#pragma once

#include <string>
#include <string_view>

#include "engine/export/common/office_parts.h"
#include "engine/export/common/picture_fit.h"

namespace velora::engine {

/// Writes drawings that lie at a fixed place of the page behind its texts, each above the ones before.
class DocxShapes {
public:
    DocxShapes(OfficeRelations& relations, OfficePictures& pictures) : relations_(relations), pictures_(pictures) {}

    /// @param form  the format's name for it: "rect", "roundRect", "ellipse"
    void closed(std::string& out, std::string_view form, const PictureBox& box, const Color* fill, const Pen& pen);
    void line(std::string& out, Point from, Point to, const Pen& pen);
    /// @param words  what the picture says, for those who do not see it
    void picture(std::string& out, const PictureBox& box, const std::shared_ptr<const ImageData>& data,
                 std::string_view words);

private:
    void open(std::string& out, const PictureBox& box, std::string_view words);
    void shape(std::string& out, std::string_view form, const PictureBox& box, const Color* fill, const Pen& pen,
               bool flipped);

    OfficeRelations& relations_;
    OfficePictures& pictures_;
    uint32_t order_ = 0;
};

}  // namespace velora::engine
