#include "engine/export/rtf/rtf_tables.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

#include "engine/export/common/page_walk.h"
#include "engine/export/common/xml_text.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

void append_character(std::string& out, char32_t character)
{
    each_utf16_unit(character, [&](char16_t unit) { out += fmt::format("\\u{}?", static_cast<int16_t>(unit)); });
}

void append_ascii(std::string& out, char character)
{
    switch (character) {
        case '\\':
        case '{':
        case '}':
            out += '\\';
            out += character;
            return;
        case '\n':
            out += "\\line ";
            return;
        case '\t':
            out += "\\tab ";
            return;
        default:
            // Other control characters have no meaning in a text.
            if (character >= 0x20 && character != 0x7F) out += character;
    }
}

/// The class of the font and what Windows has in its place.
std::string_view replacement_of(std::string_view name)
{
    if (name == "DejaVu Sans") return "Verdana";
    if (name == "DejaVu Sans Mono") return "Courier New";
    return name == "DejaVu Serif" ? "Georgia" : "";
}

std::string_view font_class(std::string_view name)
{
    if (name.find("Mono") != name.npos || name.find("Courier") != name.npos) return "fmodern";
    return name.find("Serif") != name.npos || name.find("Times") != name.npos ? "froman" : "fswiss";
}

}  // namespace

void rtf_append(std::string& out, std::string_view utf8)
{
    for (const auto [character, size, at] : Utf8Characters(utf8)) {
        if (character < 0x80) {
            append_ascii(out, utf8[at]);
        } else {
            append_character(out, character);
        }
    }
}

size_t RtfTables::font(const Font& font)
{
    return fonts_.try_emplace(std::string(font_family_name(font)), fonts_.size()).first->second;
}

size_t RtfTables::color(Color color)
{
    const uint32_t key = uint32_t{color.red} << 16 | uint32_t{color.green} << 8 | color.blue;
    return colors_.try_emplace(key, colors_.size() + 1).first->second;
}

std::string RtfTables::character_format(const Font& wanted, Color ink)
{
    std::string words = "\\f";
    append_number(words, font(wanted));
    words += "\\fs";
    append_number(words, std::lround(wanted.size * 2));
    if (wanted.bold) words += "\\b";
    if (wanted.italic) words += "\\i";
    if (wanted.underline) words += "\\ul";
    if (wanted.strike_through) words += "\\strike";
    words += "\\cf";
    append_number(words, color(ink));
    return words += ' ';
}

void RtfTables::write(std::string& out) const
{
    std::vector<std::string_view> fonts(fonts_.size());
    for (const auto& [name, number] : fonts_) fonts[number] = name;
    out += "{\\fonttbl";
    for (size_t i = 0; i < fonts.size(); ++i) {
        out += fmt::format("{{\\f{}\\{}\\fcharset0\\fprq2 ", i, font_class(fonts[i]));
        if (const auto other = replacement_of(fonts[i]); !other.empty()) out += fmt::format("{{\\*\\falt {}}}", other);
        rtf_append(out, fonts[i]);
        out += ";}";
    }
    std::vector<uint32_t> colors(colors_.size() + 1);
    for (const auto& [key, number] : colors_) colors[number] = key;
    out += "}\n{\\colortbl;";
    for (size_t i = 1; i < colors.size(); ++i) {
        out += fmt::format("\\red{}\\green{}\\blue{};", colors[i] >> 16, colors[i] >> 8 & 0xFF, colors[i] & 0xFF);
    }
    out += "}\n";
}

}  // namespace velora::engine
