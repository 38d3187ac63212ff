#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora::engine {

inline constexpr char32_t kReplacement = 0xFFFD;

/// The character at `at` and how many bytes it takes. Bytes that are no UTF-8 count as one U+FFFD each.
struct Utf8Character {
    char32_t character;
    uint32_t size;
};

inline Utf8Character utf8_at(std::string_view text, size_t at)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) return {lead, 1};
    const uint32_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4 || at + size > text.size()) return {kReplacement, 1};
    char32_t character = lead & (0xFFU >> (size + 1));
    for (uint32_t i = 1; i < size; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return {kReplacement, 1};
        character = character << 6 | (byte(at + i) & 0x3F);
    }
    const bool wrong = character < kSmallest[size] || character > 0x10FFFF || (character & 0xFFFFF800) == 0xD800;
    return wrong ? Utf8Character{kReplacement, 1} : Utf8Character{character, size};
}

inline void append_utf8(std::string& text, char32_t character)
{
    const auto add = [&](char32_t bits) { text += static_cast<char>(bits); };
    if (character < 0x80) return add(character);
    if (character < 0x800) {
        add(0xC0 | character >> 6);
    } else {
        if (character < 0x10000) {
            add(0xE0 | character >> 12);
        } else {
            add(0xF0 | character >> 18);
            add(0x80 | (character >> 12 & 0x3F));
        }
        add(0x80 | (character >> 6 & 0x3F));
    }
    add(0x80 | (character & 0x3F));
}

}  // namespace velora::engine
