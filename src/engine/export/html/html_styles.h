#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "engine/page/page.h"

namespace velora::engine {

/// The classes of an HTML file: each set of declarations once, under a short name.
class HtmlStyles {
public:
    /// Ground, borders, font and alignment of a text.
    const std::string& text(const Style& style);
    /// Ground and borders of another element.
    std::string ground(const Style& style);
    /// The lines of a text: their height, the paddings and the turn of the text.
    const std::string& lines(const Style& style, float line_height);
    /// A marked-up part of a text.
    const std::string& run(const TextRun& run);
    /// A picture as ground of a box, so that a picture shown on every page is stored once.
    const std::string& image(const std::shared_ptr<const ImageData>& data);

    /// The rules of all classes handed out.
    void write(std::string& out) const;

private:
    const std::string& class_of(const std::string& declarations);

    std::map<std::string, std::string, std::less<>> names_;  ///< by declarations
    std::unordered_map<const Style*, const std::string*> texts_;
    std::map<std::pair<const Style*, float>, const std::string*> lines_;
    std::unordered_map<const ImageData*, const std::string*> images_;
    std::vector<std::shared_ptr<const ImageData>> kept_images_;  ///< so that no address is used for two pictures
};

std::string html_color(Color color);
std::string html_font_families(const Font& font);

/// A box with its borders: they stand centred on the element's edges, so the box is a little larger than the element.
std::string html_box_geometry(const Style& style, const Place& place);

/// Whether the lines of the text need an element of their own inside the box.
bool html_needs_inner(const Style& style);

}  // namespace velora::engine
