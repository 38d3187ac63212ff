#include "engine/export/common/link_address.h"

#include "values/characters.h"
#include "values/hex.h"
#include "values/text.h"

namespace velora::engine {

std::string_view safe_address(std::string_view address)
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

std::string anchor_identifier(std::string_view name)
{
    std::string out;
    for (const char c : name) {
        if (is_letter_or_digit(c) || c == '-' || c == '_') {
            out += c;
        } else {
            out += '.';
            append_hex(out, static_cast<unsigned char>(c));
        }
    }
    return out;
}

}  // namespace velora::engine
