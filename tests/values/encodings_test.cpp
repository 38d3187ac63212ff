#include "values/base64.h"
#include "values/hex.h"
#include "values/utf8.h"

namespace velora {
namespace {

TEST(Utf8, EveryCharacterComesBackFromItsBytesAndItsUnits)
{
    for (uint32_t code = 0; code <= 0x110000; ++code) {
        ASSERT_EQ(is_character(code), code < 0xD800 || (code > 0xDFFF && code < 0x110000)) << code;
        if (!is_character(code)) continue;
        std::string bytes, from_units;
        append_utf8(bytes, code);
        const auto [character, size] = utf8_at(bytes, 0);
        ASSERT_EQ(uint32_t{character}, code);
        ASSERT_EQ(size, bytes.size());
        std::u16string units;
        each_utf16_unit(code, [&](char16_t unit) { units += unit; });
        append_utf16(from_units, units);
        ASSERT_EQ(from_units, bytes) << code;
        ASSERT_EQ(utf16_size(bytes), units.size()) << code;
        ASSERT_EQ(units.size(), code > 0xFFFF ? 2U : 1U);
    }
}

TEST(Utf8, WhatIsNoUtf8IsOneReplacementForEachByte)
{
    struct Case {
        const char* why;
        std::string bytes;
        size_t replacements;
    };
    for (const auto& c :
         {Case{"a byte that only goes on", "\x80", 1}, Case{"a longer form than needed", "\xC0\xAF", 2},
          Case{"longer still", "\xE0\x80\xAF", 3}, Case{"half of a pair", "\xED\xA0\x80", 3},
          Case{"beyond the last character", "\xF4\x90\x80\x80", 4}, Case{"a lead that is none", "\xF8", 1},
          Case{"an end in the middle", "\xE2\x82", 2}, Case{"the last character stands", "\xF4\x8F\xBF\xBF", 0}}) {
        size_t replacements = 0;
        std::string covered;
        const std::string text = "a" + c.bytes + "z";
        for (const auto [character, size, at] : Utf8Characters(text)) {
            replacements += character == kReplacement ? 1 : 0;
            covered += std::string(size, '.');
            EXPECT_EQ(at + size, covered.size()) << c.why;
        }
        EXPECT_EQ(replacements, c.replacements) << c.why;
        EXPECT_EQ(covered.size(), c.bytes.size() + 2) << c.why;
    }
}

TEST(Utf8, HalfAPairAloneIsAReplacement)
{
    struct Case {
        const char* why;
        std::u16string units;
        const char* text;
    };
    for (const auto& c :
         {Case{"a pair", {0xD83D, 0xDE00}, "\U0001F600"}, Case{"the first pair", {0xD800, 0xDC00}, "\U00010000"},
          Case{"the last pair", {0xDBFF, 0xDFFF}, "\U0010FFFF"}, Case{"the wrong way round", {0xDE00, 0xD83D}, "��"},
          Case{"a half at the end", {u'a', 0xD83D}, "a�"}, Case{"a half before a letter", {0xD83D, u'a'}, "�a"},
          Case{"a half before a pair", {0xD83D, 0xD83D, 0xDE00}, "�\U0001F600"}}) {
        std::string text;
        append_utf16(text, c.units);
        EXPECT_EQ(text, c.text) << c.why;
    }
}

TEST(Utf8, ACutNeverEndsInsideACharacter)
{
    const std::string text = "aä€\U0001F600z";  // 1, 2, 3, 4 and 1 bytes
    const size_t ends[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
    for (size_t bytes = 0; bytes < std::size(ends); ++bytes) {
        EXPECT_EQ(cut_to_bytes(text, bytes).size(), ends[bytes]) << bytes;
    }
    EXPECT_EQ(cut_to_bytes("\x80\x80\x80", 2), "") << "no character begins there";
    EXPECT_EQ(cut_to_characters(text, 4), "aä€\U0001F600");
    EXPECT_EQ(cut_to_characters("\x80\x80", 1), "\x80\x80") << "bytes that start no character count for none";
    EXPECT_EQ(character_count(text), 5U);
}

TEST(Base64, BytesOfEveryLengthComeBack)
{
    EXPECT_EQ(to_base64(""), "");
    EXPECT_EQ(to_base64("f"), "Zg==");
    EXPECT_EQ(to_base64("fo"), "Zm8=");
    EXPECT_EQ(to_base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(to_base64("\xFF\xFE\xFD\xFB"), "//79+w==");
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte * 7);
        ASSERT_EQ(from_base64(to_base64(bytes)), bytes) << byte;
    }
}

TEST(Base64, LineEndsAndMissingPaddingAreReadAndAnythingElseIsRefused)
{
    for (const char* text : {"Zm9vYg==", " Zm9v\r\n\tYg == ", "Zm9vYg", "Zm9vYg==and more"}) {
        EXPECT_EQ(from_base64(text), "foob") << text;
    }
    for (const char* text : {"Zm9v-g==", "Zm9v_g==", "Zm\xC3\xA4", "Zm9v.", "\x80"}) {
        EXPECT_EQ(from_base64(text), std::nullopt) << text;
    }
}

TEST(Hex, DigitsAreReadInBothCasesAndWrittenInCapitals)
{
    for (int value = 0; value < 16; ++value) {
        EXPECT_EQ(hex_value("0123456789ABCDEF"[value]), value);
        EXPECT_EQ(hex_value("0123456789abcdef"[value]), value);
    }
    for (const char c : {'g', 'G', '/', ':', '@', '`', ' ', '\0', '\xC1'}) EXPECT_EQ(hex_value(c), -1) << c;
    std::string text;
    append_hex(text, 0xA7);
    append_hex(text, 0x12BEEF, 4);
    append_hex(text, 5, 3);
    EXPECT_EQ(text, "A7BEEF005");
}

}  // namespace
}  // namespace velora
