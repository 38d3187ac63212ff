#include "engine/export/common/xml_text.h"

#include "values/utf8.h"

namespace velora::engine {
namespace {

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

}  // namespace velora::engine
