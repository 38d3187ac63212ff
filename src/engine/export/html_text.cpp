#include "engine/export/html_text.h"

#include <unicode/utf8.h>

#include <array>

#include "values/text.h"

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

constexpr bool is_letter_or_digit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
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

std::string_view html_safe_address(std::string_view address)
{
    // Browsers pass over blanks and control characters in front of and inside a scheme.
    for (const char c : address) {
        if (static_cast<unsigned char>(c) < 0x20) return {};
    }
    address = trimmed(address);
    const size_t colon = address.find(':');
    if (colon == std::string_view::npos || address.find_first_of("/?#") < colon) return address;
    const std::string scheme = lower_ascii(address.substr(0, colon));
    for (const std::string_view safe : {"http", "https", "ftp", "mailto", "tel", "file"}) {
        if (scheme == safe) return address;
    }
    return {};
}

std::string html_identifier(std::string_view name)
{
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string out;
    for (const char c : name) {
        if (is_letter_or_digit(c) || c == '-' || c == '_') {
            out += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            out += {'.', kHex[byte >> 4], kHex[byte & 15]};
        }
    }
    return out;
}

std::string base64(std::string_view bytes)
{
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - i);
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k) {
            group = group << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0);
        }
        for (size_t k = 0; k < 4; ++k) out += k <= count ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    }
    return out;
}

std::string_view image_media_type(std::string_view bytes)
{
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return "image/png";
    if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
    if (bytes.substr(0, 1024).find("<svg") != std::string_view::npos) return "image/svg+xml";
    return {};
}

}  // namespace velora::engine
