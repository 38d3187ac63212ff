#include "engine/export/xls/xls_styles.h"

#include <cmath>

#include "engine/export/common/page_walk.h"

namespace velora::engine {
namespace {

constexpr uint16_t kFont = 0x0031, kFormat = 0x041E, kXf = 0x00E0, kStyle = 0x0293, kPalette = 0x0092;
constexpr uint8_t kFirstColor = 8;
constexpr size_t kPaletteSize = 56;
constexpr uint16_t kFirstFormat = 164;
constexpr uint16_t kStyleFormats = 15;  ///< formats of styles that stand before the cells' ones
constexpr size_t kMostCells = 4000;
constexpr size_t kMostFonts = 500;
constexpr size_t kLongestFontName = 31;

int distance(Color a, Color b)
{
    const int red = a.red - b.red, green = a.green - b.green, blue = a.blue - b.blue;
    return 3 * red * red + 6 * green * green + blue * blue;
}

/// Formats that every workbook has without saying so.
const std::map<std::string_view, uint16_t> kBuiltIn = {{"General", 0},  {"0", 1},  {"0.00", 2},   {"#,##0", 3},
                                                       {"#,##0.00", 4}, {"0%", 9}, {"0.00%", 10}, {"@", 49}};

/// The kind of the font, by which a missing one is replaced.
uint8_t family_of(std::u16string_view name)
{
    constexpr uint8_t kRoman = 1, kSwiss = 2, kFixedPitch = 3;
    if (name.find(u"Mono") != name.npos || name.find(u"Courier") != name.npos) return kFixedPitch;
    return name.find(u"Serif") != name.npos || name.find(u"Times") != name.npos ? kRoman : kSwiss;
}

void write_xf(XlsRecords& stream, const XlsLooks& looks, const XlsGround& ground, bool is_style)
{
    XlsPayload xf;
    xf.u16(looks.font).u16(looks.format).u16(is_style ? 0xFFF5 : 0x0001);
    xf.u8(looks.horizontal | (looks.wrap ? 8U : 0U) | static_cast<uint32_t>(looks.vertical) << 4);
    xf.u8(looks.rotation).u8(looks.shrink ? 0x10 : 0).u8(is_style ? 0x00 : 0xFC);
    xf.u32(uint32_t{ground.left.line} | uint32_t{ground.right.line} << 4 | uint32_t{ground.top.line} << 8 |
           uint32_t{ground.bottom.line} << 12 | uint32_t{ground.left.color} << 16 | uint32_t{ground.right.color} << 23);
    const uint32_t solid = ground.fill != 0 ? 1 : 0;
    xf.u32(uint32_t{ground.top.color} | uint32_t{ground.bottom.color} << 7 | solid << 26);
    xf.u16((ground.fill != 0 ? ground.fill : 64U) | 65U << 7);
    stream.add(kXf, xf);
}

}  // namespace

XlsStyles::XlsStyles() : palette_{kBlack, kWhite}
{
    // Column widths are told in digits of the workbook's normal font. Whatever face of fixed pitch stands in for this
    // one where it is missing has digits of the same width, so the page keeps its width everywhere.
    font_of({"Courier New", 200, 0, 0});
    XlsLooks plain;
    plain.font = font(Font{}, kBlack);
    cells_.push_back({plain, XlsGround{}});
    cell_numbers_.emplace(cells_.front(), kPlainCell);
}

uint16_t XlsStyles::font(const Font& font, Color ink)
{
    const double twips = std::clamp(std::round(static_cast<double>(font.size) * 20), 20.0, 8180.0);
    const int traits = (font.bold ? kBold : 0) | (font.italic ? kItalic : 0) | (font.underline ? kUnderline : 0) |
                       (font.strike_through ? kStrike : 0);
    return font_of(
        {std::string(font_family_name(font)), static_cast<uint16_t>(twips), static_cast<uint8_t>(traits), color(ink)});
}

std::u16string XlsStyles::FontKey::written_name() const
{
    return xls_utf16(name).substr(0, kLongestFontName);
}

uint16_t XlsStyles::font_of(const FontKey& key)
{
    if (const auto known = font_numbers_.find(key); known != font_numbers_.end()) return known->second;
    if (fonts_.size() >= kMostFonts) return 0;
    fonts_.push_back(key);
    // Number 4 is left out in the format.
    const size_t position = fonts_.size() - 1;
    const auto number = static_cast<uint16_t>(position < 4 ? position : position + 1);
    font_numbers_.emplace(key, number);
    return number;
}

uint16_t XlsStyles::format(const std::string& code)
{
    if (const auto built_in = kBuiltIn.find(code); built_in != kBuiltIn.end()) return built_in->second;
    const auto next = static_cast<uint16_t>(kFirstFormat + formats_.size());
    return formats_.try_emplace(code, next).first->second;
}

uint8_t XlsStyles::color(Color color)
{
    const auto nearest = std::min_element(palette_.begin(), palette_.end(),
                                          [&](Color a, Color b) { return distance(a, color) < distance(b, color); });
    if (distance(*nearest, color) == 0 || palette_.size() == kPaletteSize) {
        return static_cast<uint8_t>(kFirstColor + (nearest - palette_.begin()));
    }
    palette_.push_back(color);
    return static_cast<uint8_t>(kFirstColor + palette_.size() - 1);
}

XlsBorder XlsStyles::border(const Pen& pen)
{
    constexpr uint8_t kThin = 1, kMedium = 2, kDashed = 3, kDotted = 4, kThick = 5, kDouble = 6, kHair = 7,
                      kMediumDashed = 8;
    if (pen.width <= 0) return {};
    const auto line = [&] {
        switch (pen.style) {
            case LineStyle::Dashed:
                return pen.width > 1.25F ? kMediumDashed : kDashed;
            case LineStyle::Dotted:
                return kDotted;
            case LineStyle::Double:
                return kDouble;
            case LineStyle::Solid:
                break;
        }
        if (pen.width < 0.3F) return kHair;
        if (pen.width <= 1.25F) return kThin;
        return pen.width <= 2.25F ? kMedium : kThick;
    }();
    return {line, color(pen.color)};
}

uint16_t XlsStyles::cell(const XlsLooks& looks, const XlsGround& ground)
{
    const CellKey key{looks, ground};
    if (const auto known = cell_numbers_.find(key); known != cell_numbers_.end()) return known->second;
    if (cells_.size() >= kMostCells) return kPlainCell;
    cells_.push_back(key);
    const auto number = static_cast<uint16_t>(kStyleFormats + cells_.size() - 1);
    cell_numbers_.emplace(key, number);
    return number;
}

void XlsStyles::write_fonts(XlsRecords& stream) const
{
    // Readers expect the four fonts in front of the number that is left out.
    for (size_t i = 0; i < std::max<size_t>(4, fonts_.size()); ++i) {
        const FontKey& font = fonts_[i < fonts_.size() ? i : 0];
        const std::u16string name = font.written_name();
        XlsPayload payload;
        payload.u16(font.twips)
            .u16(((font.traits & kItalic) != 0 ? 2U : 0U) | ((font.traits & kStrike) != 0 ? 8U : 0U));
        payload.u16(font.color == 0 ? 0x7FFF : font.color).u16((font.traits & kBold) != 0 ? 700 : 400).u16(0);
        payload.u8((font.traits & kUnderline) != 0 ? 1 : 0).u8(family_of(name)).u8(0).u8(0).short_text(name);
        stream.add(kFont, payload);
    }
}

void XlsStyles::write_formats(XlsRecords& stream) const
{
    for (const auto& [code, number] : formats_) {
        XlsPayload payload;
        payload.u16(number).text(xls_utf16(code));
        stream.add(kFormat, payload);
    }
}

void XlsStyles::write_cells(XlsRecords& stream) const
{
    for (uint16_t i = 0; i < kStyleFormats; ++i) write_xf(stream, {}, {}, true);
    for (const auto& [looks, ground] : cells_) write_xf(stream, looks, ground, false);
    XlsPayload normal;
    normal.u16(0x8000).u8(0).u8(0xFF);
    stream.add(kStyle, normal);
}

void XlsStyles::write_palette(XlsRecords& stream) const
{
    XlsPayload payload;
    payload.u16(kPaletteSize);
    for (size_t i = 0; i < kPaletteSize; ++i) {
        const Color color = i < palette_.size() ? palette_[i] : kWhite;
        payload.u8(color.red).u8(color.green).u8(color.blue).u8(0);
    }
    stream.add(kPalette, payload);
}

}  // namespace velora::engine
