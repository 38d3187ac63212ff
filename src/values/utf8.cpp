#include "values/utf8.h"

#include <algorithm>

namespace velora {
namespace {

bool starts_character(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

}  // namespace

void append_utf16(std::string& text, std::u16string_view units)
{
    for (size_t at = 0; at < units.size(); ++at) {
        const char32_t unit = units[at];
        if (is_high_surrogate(unit) && at + 1 < units.size() && is_low_surrogate(units[at + 1])) {
            append_utf8(text, from_surrogates(unit, units[++at]));
        } else {
            append_utf8(text, is_character(unit) ? unit : kReplacement);
        }
    }
}

size_t utf16_size(std::string_view utf8)
{
    size_t units = 0;
    for (const auto [character, size, at] : Utf8Characters(utf8)) units += character > 0xFFFF ? 2 : 1;
    return units;
}

size_t character_count(std::string_view utf8)
{
    return static_cast<size_t>(std::count_if(utf8.begin(), utf8.end(), starts_character));
}

std::string_view cut_to_characters(std::string_view utf8, size_t characters)
{
    if (utf8.size() <= characters) return utf8;
    size_t seen = 0;
    for (size_t at = 0; at < utf8.size(); ++at) {
        if (starts_character(utf8[at]) && seen++ == characters) return utf8.substr(0, at);
    }
    return utf8;
}

std::string_view cut_to_bytes(std::string_view utf8, size_t bytes)
{
    if (utf8.size() <= bytes) return utf8;
    while (bytes > 0 && !starts_character(utf8[bytes])) --bytes;
    return utf8.substr(0, bytes);
}

}  // namespace velora
