#include "engine/export/html/html_text.h"

#include <unicode/utf8.h>

namespace velora::engine {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void append_ascii(std::string& out, char character)
{
    switch (character) {
        case '&':
            out += "&amp;";
            return;
        case '<':
            out += "&lt;";
            return;
        case '>':
            out += "&gt;";
            return;
        case '"':
            out += "&quot;";
            return;
        default:
            break;
    }
    const bool control =
        (static_cast<unsigned char>(character) < 0x20 && character != '\n' && character != '\t') || character == 0x7F;
    control ? out += kReplacement : out += character;
}

}  // namespace

void html_append(std::string& out, std::string_view utf8)
{
    const auto length = static_cast<int32_t>(utf8.size());
    for (int32_t at = 0; at < length;) {
        const int32_t begin = at;
        if (static_cast<unsigned char>(utf8[static_cast<size_t>(at)]) < 0x80) {
            append_ascii(out, utf8[static_cast<size_t>(at++)]);
            continue;
        }
        UChar32 character = 0;
        U8_NEXT(utf8.data(), at, length, character);
        // C1 controls and non-characters are errors in an HTML document.
        const bool usable = character >= 0xA0 && (character & 0xFFFE) != 0xFFFE;
        out += usable ? utf8.substr(static_cast<size_t>(begin), static_cast<size_t>(at - begin)) : kReplacement;
    }
}

std::string html_escaped(std::string_view utf8)
{
    std::string out;
    out.reserve(utf8.size());
    html_append(out, utf8);
    return out;
}

}  // namespace velora::engine
