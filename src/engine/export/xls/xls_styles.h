#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/export/xls/xls_records.h"
#include "engine/page/style.h"

namespace velora::engine {

/// A border as a workbook knows it: one of 13 line kinds (0: none) and a colour of the palette.
struct XlsBorder {
    uint8_t line = 0, color = 0;
    auto operator<=>(const XlsBorder&) const = default;
};

/// Fill and borders of a cell. Fill 0 is none.
struct XlsGround {
    uint8_t fill = 0;
    XlsBorder left, right, top, bottom;
    auto operator<=>(const XlsGround&) const = default;
};

/// How the text of a cell looks.
struct XlsLooks {
    uint16_t font = 0, format = 0;
    uint8_t horizontal = 0, vertical = 2, rotation = 0;
    bool wrap = false;
    bool shrink = false;  ///< to the cell's width: a number that does not fit would show as "###"
    auto operator<=>(const XlsLooks&) const = default;
};

/// Fonts, number formats, colours and cell formats of a workbook, each kept once and within the format's limits.
class XlsStyles {
public:
    static constexpr uint16_t kPlainCell = 15;
    static constexpr uint16_t kGeneral = 0;
    static constexpr uint16_t kShortDate = 14;
    static constexpr uint16_t kShortDateTime = 22;

    XlsStyles();

    uint16_t font(const Font& font, Color color);
    /// Number of a format code such as "#,##0.00".
    uint16_t format(const std::string& code);
    /// Number in the palette: 56 colours are kept exactly, later ones get the nearest.
    uint8_t color(Color color);
    XlsBorder border(const Pen& pen);
    /// Number of the cell format for the looks on the ground.
    uint16_t cell(const XlsLooks& looks, const XlsGround& ground);

    struct FontKey {
        std::string name;
        uint16_t twips;
        uint8_t traits, color;
        auto operator<=>(const FontKey&) const = default;
        [[nodiscard]] std::u16string written_name() const;  ///< as far as a workbook takes it
    };
    using CellKey = std::pair<XlsLooks, XlsGround>;

    /// Traits of a font, added up.
    static constexpr uint8_t kBold = 1, kItalic = 2, kUnderline = 4, kStrike = 8;

    // What a workbook in another form writes. Fonts from number 4 on stand a place further in front here.
    [[nodiscard]] const std::vector<FontKey>& fonts() const { return fonts_; }
    [[nodiscard]] const std::map<std::string, uint16_t>& formats() const { return formats_; }
    [[nodiscard]] const std::vector<CellKey>& cells() const { return cells_; }  ///< from number kPlainCell on
    [[nodiscard]] Color color_of(uint8_t number) const { return palette_[number - 8U]; }

    void write_fonts(XlsRecords& stream) const;
    void write_formats(XlsRecords& stream) const;
    void write_cells(XlsRecords& stream) const;
    void write_palette(XlsRecords& stream) const;

private:
    uint16_t font_of(const FontKey& key);

    std::map<FontKey, uint16_t> font_numbers_;
    std::vector<FontKey> fonts_;
    std::map<std::string, uint16_t> formats_;
    std::map<CellKey, uint16_t> cell_numbers_;
    std::vector<CellKey> cells_;
    std::vector<Color> palette_;
};

}  // namespace velora::engine
