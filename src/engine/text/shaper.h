#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/page/style.h"

struct hb_buffer_t;

namespace velora::engine {

class Face;
class FontStore;

/// A glyph in its face. Lengths are ems: times the font size they are points.
struct ShapedGlyph {
    const Face* face;
    uint16_t id;
    uint32_t cluster;  ///< byte offset of the text that it shows
    float advance;
    float natural;             ///< the advance that the face itself gives the glyph
    float x_offset, y_offset;  ///< y grows upwards
};

/// Glyphs in visual order, from left to right.
struct ShapedText {
    std::vector<ShapedGlyph> glyphs;
    double advance = 0;  ///< of all, in ems
};

/// Turns text into glyphs, and keeps what it did for short texts.
///
/// No kerning and no optional ligatures: the designers' preview sets text without, and lines have to break alike.
class Shaper {
public:
    explicit Shaper(FontStore& fonts);
    ~Shaper();
    Shaper(const Shaper&) = delete;
    Shaper& operator=(const Shaper&) = delete;

    /// Text of one direction and without line breaks. Control characters are left out.
    /// The result holds until the next call.
    const ShapedText& shape(std::string_view text, const Font& font, bool right_to_left = false);

private:
    struct Item {
        const Face* face;
        uint32_t script;
        uint32_t begin, end;
    };
    struct FreeBuffer {
        void operator()(hb_buffer_t* buffer) const noexcept;
    };
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    using Cache = std::unordered_map<std::string, ShapedText, Hash, std::equal_to<>>;

    void itemize(std::string_view text, const Font& font, const Face& primary);
    void shape_item(std::string_view text, const Item& item, bool right_to_left, ShapedText& shaped);
    void shape_all(std::string_view text, const Font& font, const Face& primary, bool right_to_left,
                   ShapedText& shaped);

    FontStore& fonts_;
    std::unique_ptr<hb_buffer_t, FreeBuffer> buffer_;
    std::vector<Item> items_;
    std::unordered_map<const Face*, Cache> caches_[2];
    size_t cached_ = 0;
    ShapedText long_text_;
};

}  // namespace velora::engine
