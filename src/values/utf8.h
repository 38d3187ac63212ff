#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace velora {

inline constexpr char32_t kReplacement = 0xFFFD;  ///< stands for what is no character

constexpr bool is_high_surrogate(char32_t unit)
{
    return (unit & 0xFFFFFC00) == 0xD800;
}

constexpr bool is_low_surrogate(char32_t unit)
{
    return (unit & 0xFFFFFC00) == 0xDC00;
}

/// The character of a surrogate pair.
constexpr char32_t from_surrogates(char32_t high, char32_t low)
{
    return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
}

/// Whether it may stand in a text: within Unicode and no half of a surrogate pair.
constexpr bool is_character(char32_t code)
{
    return code <= 0x10FFFF && (code & 0xFFFFF800) != 0xD800;
}

/// Hands the one or two UTF-16 units of a character to `take`.
template <class Take>
constexpr void each_utf16_unit(char32_t character, Take take)
{
    if (character <= 0xFFFF) return take(static_cast<char16_t>(character));
    take(static_cast<char16_t>(0xD7C0 + (character >> 10)));
    take(static_cast<char16_t>(0xDC00 + (character & 0x3FF)));
}

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
    if (lead < 0xC0 || lead > 0xF4 || at + size > text.size()) return {kReplacement, 1};
    char32_t character = lead & (0xFFU >> (size + 1));
    for (uint32_t i = 1; i < size; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return {kReplacement, 1};
        character = character << 6 | (byte(at + i) & 0x3F);
    }
    const bool is_wrong = character < kSmallest[size] || !is_character(character);
    return is_wrong ? Utf8Character{kReplacement, 1} : Utf8Character{character, size};
}

/// The characters of a text with their places: `for (const auto [character, size, at] : Utf8Characters(text))`.
class Utf8Characters {
public:
    struct Item {
        char32_t character;
        uint32_t size;  ///< bytes
        size_t at;      ///< first byte
    };

    class Iterator {
    public:
        Iterator(std::string_view text, size_t at) : text_(text), at_(at) { read(); }
        Item operator*() const { return {now_.character, now_.size, at_}; }
        Iterator& operator++()
        {
            at_ += now_.size;
            read();
            return *this;
        }
        bool operator!=(std::default_sentinel_t) const { return at_ < text_.size(); }

    private:
        void read()
        {
            if (at_ < text_.size()) now_ = utf8_at(text_, at_);
        }

        std::string_view text_;
        size_t at_;
        Utf8Character now_{};
    };

    explicit Utf8Characters(std::string_view text) : text_(text) {}
    [[nodiscard]] Iterator begin() const { return {text_, 0}; }
    [[nodiscard]] static std::default_sentinel_t end() { return {}; }

private:
    std::string_view text_;
};

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

/// Appends UTF-16 units as UTF-8; half of a surrogate pair alone becomes U+FFFD.
void append_utf16(std::string& text, std::u16string_view units);

/// Number of UTF-16 units that the text takes; what is no UTF-8 counts one for each byte.
size_t utf16_size(std::string_view utf8);

/// Number of characters (code points) in UTF-8 text.
size_t character_count(std::string_view utf8);

/// The longest front part of at most `characters` characters; never ends inside one.
std::string_view cut_to_characters(std::string_view utf8, size_t characters);

/// The longest front part of at most `bytes` bytes; never ends inside a character.
std::string_view cut_to_bytes(std::string_view utf8, size_t bytes);

}  // namespace velora
