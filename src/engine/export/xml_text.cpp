#include "engine/export/xml_text.h"

#include <cstdint>

#include "engine/text/utf8.h"

namespace velora::engine {
namespace {

constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void append_character(std::string& xml, std::string_view bytes, char32_t character)
{
    switch (character) {
        case '&':
            xml += "&amp;";
            break;
        case '<':
            xml += "&lt;";
            break;
        case '>':
            xml += "&gt;";
            break;
        case '"':
            xml += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':  // attributes and line ends are normalised when read, references are not
            xml += "&#" + std::to_string(static_cast<unsigned>(character)) + ";";
            break;
        default:
            if (character < 0x20 || character == 0xFFFE || character == 0xFFFF ||
                (character == kReplacement && bytes.size() == 1)) {
                // One sign for each byte, so that offsets into the text stay right.
                xml.append(bytes.size(), '?');
            } else {
                xml += bytes;
            }
    }
}

}  // namespace

void append_xml_text(std::string& xml, std::string_view text)
{
    for (size_t at = 0; at < text.size();) {
        const auto [character, size] = utf8_at(text, at);
        append_character(xml, text.substr(at, size), character);
        at += size;
    }
}

void append_attribute(std::string& xml, const char* name, std::string_view value)
{
    xml += ' ';
    xml += name;
    xml += "=\"";
    append_xml_text(xml, value);
    xml += '"';
}

std::string from_base64(std::string_view text)
{
    std::string bytes;
    uint32_t bits = 0;
    int filled = 0;
    for (const char c : text) {
        const size_t value = kBase64.find(c);
        if (value == std::string_view::npos) continue;
        bits = bits << 6 | static_cast<uint32_t>(value);
        filled += 6;
        if (filled < 8) continue;
        filled -= 8;
        bytes += static_cast<char>(bits >> filled & 0xFF);
    }
    return bytes;
}

}  // namespace velora::engine
