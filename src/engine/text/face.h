#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

struct hb_font_t;
struct hb_face_t;

namespace velora::engine {

/// One face of a font file, at no size: measures are in font units.
class Face {
public:
    /// @param plain_latin  the face composes nothing in Latin text, so advances may simply be summed up
    /// @throws Fault 53 when the file cannot be read or holds no such face
    Face(std::filesystem::path path, unsigned index, bool plain_latin);
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    struct Glyph {
        uint16_t id = 0;  ///< 0 when the face lacks the character
        uint16_t advance = 0;
    };
    /// By the character map alone, without shaping.
    [[nodiscard]] Glyph glyph(char32_t character) const
    {
        return character < kKnown ? known_[character] : lookup(character);
    }
    [[nodiscard]] bool has(char32_t character) const { return glyph(character).id != 0; }

    [[nodiscard]] int units_per_em() const { return units_per_em_; }
    [[nodiscard]] int ascent() const { return ascent_; }
    [[nodiscard]] int descent() const { return descent_; }  ///< positive
    [[nodiscard]] int line_gap() const { return line_gap_; }
    [[nodiscard]] int line_height() const { return ascent_ + descent_ + line_gap_; }
    [[nodiscard]] bool plain_latin() const { return plain_latin_; }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] unsigned index() const { return index_; }
    [[nodiscard]] hb_font_t* shaping_font() const { return font_.get(); }
    [[nodiscard]] hb_face_t* shaping_face() const { return face_.get(); }
    [[nodiscard]] std::string postscript_name() const;

private:
    static constexpr char32_t kKnown = 0x250;  // Latin with its extensions
    struct DropFace {
        void operator()(hb_face_t* face) const noexcept;
    };
    struct DropFont {
        void operator()(hb_font_t* font) const noexcept;
    };
    [[nodiscard]] Glyph lookup(char32_t character) const;

    std::filesystem::path path_;
    unsigned index_;
    bool plain_latin_;
    std::unique_ptr<hb_face_t, DropFace> face_;
    std::unique_ptr<hb_font_t, DropFont> font_;
    int units_per_em_ = 0, ascent_ = 0, descent_ = 0, line_gap_ = 0;
    std::array<Glyph, kKnown> known_{};
};

}  // namespace velora::engine
