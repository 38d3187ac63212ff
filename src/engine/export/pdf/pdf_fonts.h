#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "engine/export/pdf/pdf_file.h"
#include "engine/text/face.h"

namespace velora::engine {

/// The codes that a face's glyphs have in the file. Each pair of glyph and text has its own, so that what is copied
/// from the pages is what stood in the report.
class PdfFont {
public:
    PdfFont(const Face& face, std::string name, PdfId id);

    [[nodiscard]] const Face* face() const { return &face_; }
    [[nodiscard]] const std::string& name() const { return name_; }  ///< in the resources
    [[nodiscard]] PdfId id() const { return id_; }

    struct Code {
        uint16_t number;  ///< of two bytes
        bool tells;       ///< readers learn the text from it
    };
    /// The code for a glyph that shows `text`.
    Code code(uint16_t glyph, std::string_view text)
    {
        if (text.size() == 1) {
            const uint16_t known = ascii_[static_cast<uint8_t>(text[0]) & 127];
            if (known != 0 && shown_[known].glyph == glyph) return {known, true};
        }
        return find_code(glyph, text);
    }

    /// The code of something that shows `text` without ink and width. Only for a font that has such.
    uint16_t blank(std::string_view text);
    [[nodiscard]] bool has_blanks() const { return !outlines_by_code_ && face_.has(' '); }

    /// Archives refuse a letter that the face does not have, and a blank that is not as wide as the face says.
    [[nodiscard]] bool suits_archives() const { return !any_missing_ && blanks_.empty(); }

    /// Writes the subset of the face and everything about it.
    void write(PdfFile& file) const;

private:
    struct Shown {
        uint16_t glyph = 0;
        std::string text;
        bool has_width = true;
    };
    [[nodiscard]] bool has_room_for_more() const;
    uint16_t add(Shown shown);
    Code find_code(uint16_t glyph, std::string_view text);
    Code remembered(uint16_t code, std::string_view text);
    [[nodiscard]] std::string widths() const;
    [[nodiscard]] std::string unicode_map() const;
    [[nodiscard]] std::string descriptor(const std::string& base, PdfId program) const;

    const Face& face_;
    std::string name_;
    PdfId id_;
    bool outlines_by_code_;     ///< a face with PostScript outlines: codes are glyph numbers
    std::vector<Shown> shown_;  ///< by code
    bool any_missing_ = false;
    std::array<uint16_t, 128> ascii_{};
    std::unordered_map<uint16_t, std::vector<uint16_t>> codes_;  ///< of each glyph
    std::unordered_map<std::string, uint16_t> blanks_;
};

/// The fonts of one file.
class PdfFonts {
public:
    explicit PdfFonts(PdfFile& file) : file_(file) {}

    PdfFont& font(const Face& face);
    [[nodiscard]] bool suit_archives() const
    {
        return std::ranges::all_of(fonts_, [](const auto& font) { return font.second->suits_archives(); });
    }
    /// Writes all fonts; returns the entries for the resources.
    std::string write() const;

private:
    PdfFile& file_;
    std::vector<std::pair<const Face*, std::unique_ptr<PdfFont>>> fonts_;
};

}  // namespace velora::engine
