#include "engine/chart/barcode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <set>

#include "engine/chart/qr_data.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

namespace velora::engine {
namespace {

using testing::ElementsAre;

std::string modules(const BarRow& row)
{
    std::string text;
    for (const bool dark : row) text.push_back(dark ? '1' : '0');
    return text;
}

TEST(Code128, ChoosesTheSetsThatNeedTheFewestSymbols)
{
    struct Case {
        const char* why;
        std::string text;
        std::vector<int> expected;
    };
    for (const auto& c : {
             Case{"letters in set B", "Wikipedia", {104, 55, 73, 75, 73, 80, 69, 68, 73, 65, 88, 106}},
             Case{"digits in pairs", "123456", {105, 12, 34, 56, 44, 106}},
             Case{"an odd digit stands before the pairs", "A12345", {104, 33, 17, 99, 23, 45, 53, 106}},
             Case{"few digits between letters stay letters", "A1234B", {104, 33, 17, 18, 19, 20, 34, 88, 106}},
             Case{"a tabulator needs set A", "A\tB", {103, 33, 73, 34, 75, 106}},
         }) {
        auto symbols = code128_symbols(c.text);
        ASSERT_EQ(symbols.size(), c.expected.size()) << c.why;
        int sum = symbols[0];
        for (size_t at = 1; at + 2 < symbols.size(); ++at) sum += static_cast<int>(at) * symbols[at];
        EXPECT_EQ(symbols[symbols.size() - 2], sum % 103) << c.why;
        symbols.erase(symbols.end() - 2);
        auto expected = c.expected;
        expected.erase(expected.end() - 2);
        EXPECT_EQ(symbols, expected) << c.why;
    }
    EXPECT_EQ(code128_symbols("Wikipedia").at(10), 88) << "the published check symbol";
    EXPECT_THROW(code128_symbols("Gr\xc3\xbc\xc3\x9f"), BarcodeError);
    EXPECT_THROW(code128_symbols(""), BarcodeError);
}

TEST(Code128, EverySymbolIsElevenModulesWideWithAnEvenNumberOfDarkOnes)
{
    std::set<std::string> seen;
    for (int symbol = 0; symbol < 106; ++symbol) {
        const auto row = modules(code128_bars({symbol}));
        EXPECT_EQ(row.size(), 11u) << symbol;
        EXPECT_EQ(std::count(row.begin(), row.end(), '1') % 2, 0) << symbol;
        EXPECT_TRUE(seen.insert(row).second) << symbol;
    }
    EXPECT_EQ(modules(code128_bars({104, 106})), "110100100001100011101011");
}

TEST(Ean, TheCheckDigitIsAddedOrChecked)
{
    EXPECT_EQ(ean_digits("400638133393", 13), "4006381333931");
    EXPECT_EQ(ean_digits("4006381333931", 13), "4006381333931");
    EXPECT_EQ(ean_digits("7351353", 8), "73513537");
    for (const auto& [code, length, reason] :
         {std::tuple{"4006381333932", 13, "check digit is 2 and should be 1"},
          std::tuple{"40063813339A", 13, "digits only"}, std::tuple{"123", 13, "takes 12 digits"},
          std::tuple{"", 8, "takes 7 digits"}}) {
        try {
            ean_digits(code, static_cast<size_t>(length));
            ADD_FAILURE() << code;
        } catch (const BarcodeError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(reason)) << code;
        }
    }
}

TEST(Ean, BarsAreThoseOfThePublishedExamples)
{
    EXPECT_EQ(modules(ean_bars("4006381333931")),
              "10100011010100111010111101111010001001011001101010100001010000101000010111010010000101100110101");
    EXPECT_EQ(modules(ean_bars("73513537")), "1010111011011110101100010011001010101000010100111010000101000100101");
}

TEST(QrCode, CapacitiesAreThoseOfTheStandard)
{
    struct Case {
        int version;
        QrLevel level;
        int codewords;
    };
    for (const auto& c : {Case{1, QrLevel::L, 19}, Case{1, QrLevel::H, 9}, Case{5, QrLevel::Q, 62},
                          Case{10, QrLevel::M, 216}, Case{22, QrLevel::H, 442}, Case{40, QrLevel::L, 2956},
                          Case{40, QrLevel::M, 2334}, Case{40, QrLevel::Q, 1666}, Case{40, QrLevel::H, 1276}}) {
        EXPECT_EQ(qr_data_codewords(c.version, c.level), c.codewords) << c.version;
    }
    EXPECT_EQ(qr_version_for(17, QrLevel::L), 1);
    EXPECT_EQ(qr_version_for(18, QrLevel::L), 2);
    EXPECT_EQ(qr_version_for(2953, QrLevel::L), 40);
    EXPECT_THROW(qr_version_for(2954, QrLevel::L), BarcodeError);
}

TEST(QrCode, ErrorCorrectionIsTheRemainderOfTheKnownExample)
{
    EXPECT_THAT(qr_correction({32, 91, 11, 120, 209, 114, 220, 77, 67, 64, 236, 17, 236, 17, 236, 17}, 10),
                ElementsAre(196, 35, 39, 119, 235, 215, 231, 226, 93, 23));
}

TEST(QrCode, WhatItSaysOfItselfIsRight)
{
    for (const auto& [level, bits] :
         {std::pair{QrLevel::L, 1}, std::pair{QrLevel::M, 0}, std::pair{QrLevel::Q, 3}, std::pair{QrLevel::H, 2}}) {
        for (const size_t length : {1u, 100u, 500u, 1200u}) {
            const QrCode code = qr_code(std::string(length, 'x'), level);
            EXPECT_EQ(code.size, qr_version_for(length, level) * 4 + 17);
            int first = 0;  // the two copies of the format, most significant bit first
            int second = 0;
            for (int at = 0; at < 15; ++at) {
                const bool left =
                    at < 6 ? code.dark(at, 8) : (at < 8 ? code.dark(at + 1, 8) : code.dark(8, at == 8 ? 7 : 14 - at));
                const bool right = at < 7 ? code.dark(8, code.size - 1 - at) : code.dark(code.size - 15 + at, 8);
                first = first << 1 | (left ? 1 : 0);
                second = second << 1 | (right ? 1 : 0);
            }
            EXPECT_EQ(first, second);
            EXPECT_EQ((first ^ 0x5412) >> 13, bits);
        }
    }
}

TEST(QrCode, TheSymbolOfATextIsTheOneThatReadersKnow)
{
    const std::vector<std::string> expected{
        // clang-format off
        "#######..###..#######",
        "#.....#..##.#.#.....#",
        "#.###.#.##.#..#.###.#",
        "#.###.#.#.#.#.#.###.#",
        "#.###.#.#.###.#.###.#",
        "#.....#.##..#.#.....#",
        "#######.#.#.#.#######",
        "........#.###........",
        "#.#####.....#.#####..",
        "..##.#..###.#..#.#..#",
        "..#.#.#.##.#.#..###..",
        "..#..#.###.....##.##.",
        "#.##..##.###.#..##...",
        "........#..#####..##.",
        "#######..#..#.##.###.",
        "#.....#.#..######.#.#",
        "#.###.#.#.#.#..#.#.#.",
        "#.###.#.#.#.#...#.#..",
        "#.###.#.##.#.#.#..#..",
        "#.....#........#..#..",
        "#######.##.#.#...#.#."
        // clang-format on
    };
    const QrCode code = qr_code("Q-1042", QrLevel::M);
    ASSERT_EQ(code.size, static_cast<int>(expected.size()));
    for (int y = 0; y < code.size; ++y) {
        std::string row;
        for (int x = 0; x < code.size; ++x) row.push_back(code.dark(x, y) ? '#' : '.');
        EXPECT_EQ(row, expected[static_cast<size_t>(y)]) << y;
    }
}

TEST(Barcodes, FillTheBoxAndKeepTheirQuietZones)
{
    FontStore fonts(std::string(VELORA_SOURCE_DIR) + "/fonts");
    Measurer measurer(fonts);
    struct Case {
        const char* type;
        const char* code;
        float left, right;  ///< share of the box, by the modules of the symbol
    };
    for (const auto& c :
         {Case{"EAN13", "4006381333931", 11 / 113.0F, 7 / 113.0F}, Case{"EAN8", "7351353", 7 / 81.0F, 7 / 81.0F},
          Case{"QRCode", "x", 4 / 29.0F, 4 / 29.0F}, Case{"Code128", "123456", 10 / 88.0F, 10 / 88.0F}}) {
        BarcodeRequest request;
        request.type = c.type;
        request.code = c.code;
        const auto drawing = draw_barcode(request, 100, 100, measurer);
        float left = 100;
        float right = 0;
        bool has_label = false;
        for (const auto& item : drawing->items) {
            if (const auto* shape = std::get_if<Shape>(&item)) {
                left = std::min(left, std::get<Point>(shape->path[0]).x);
                right = std::max(right, std::get<Point>(shape->path[1]).x);
            } else {
                has_label = true;
            }
        }
        EXPECT_NEAR(left, c.left * 100, 0.01) << c.type;
        EXPECT_NEAR(right, 100 - c.right * 100, 0.01) << c.type;
        EXPECT_EQ(has_label, std::string_view(c.type) != "QRCode") << c.type;
    }
}

}  // namespace
}  // namespace velora::engine
