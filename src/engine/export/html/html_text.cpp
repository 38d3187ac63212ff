#include "engine/export/html/html_text.h"

#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr std::string_view kReplacementText = "\xEF\xBF\xBD";

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
    if (control) {
        out += kReplacementText;
    } else {
        out += character;
    }
}

}  // namespace

void html_append(std::string& out, std::string_view utf8)
{
    for (const auto [character, size, at] : Utf8Characters(utf8)) {
        if (character < 0x80) {
            append_ascii(out, utf8[at]);
            continue;
        }
        // C1 controls and non-characters are errors in an HTML document.
        const bool is_usable = size > 1 && character >= 0xA0 && (character & 0xFFFE) != 0xFFFE;
        out += is_usable ? utf8.substr(at, size) : kReplacementText;
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
