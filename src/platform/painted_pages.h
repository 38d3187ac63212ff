#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velora {

/// A part of a page's picture. Places count in pixels from the upper left corner of the page.
struct PixelArea {
    int x = 0, y = 0, width = 0, height = 0;
    uint32_t* pixels = nullptr;  ///< row by row without gaps, each 0xffRRGGBB
};

/// A text of a page and where its letters stand, in points.
struct PageText {
    struct Letter {
        uint32_t begin = 0, end = 0;  ///< bytes of the text
        float x = 0, y = 0, width = 0, height = 0;
    };
    std::string text;
    int32_t line = 0;  ///< texts of the same line have the same number
    std::vector<Letter> letters;
};

/// Pages that a window can paint part by part, and whose texts it can point at.
class PaintedPages {
public:
    virtual ~PaintedPages() = default;

    /// Whatever lies outside the page stays white.
    virtual void paint(size_t page, double pixels_per_inch, const PixelArea& area) const = 0;
    /// In the order in which the texts of a page are read.
    [[nodiscard]] virtual std::vector<PageText> page_texts(size_t page) const = 0;
    /// Another number each time when a page that was there has come to look different.
    [[nodiscard]] virtual uint32_t revision(size_t /*page*/) const { return 0; }
};

}  // namespace velora
