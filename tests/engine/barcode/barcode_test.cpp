#include "engine/barcode/barcode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <cmath>

#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

namespace velora::engine {
namespace {

std::string row(const Symbol& symbol, int y = 0)
{
    std::string text;
    for (int x = 0; x < symbol.width; ++x) text.push_back(symbol.dark(x, y) ? '1' : '0');
    return text;
}

TEST(Code128, IsAsWideAsTheFewestSymbolsAsk)
{
    constexpr int kSymbol = 11;
    constexpr int kStop = 13;
    struct Case {
        const char* why;
        const char* text;
        int symbols;  ///< with start and check, without stop
    };
    for (const auto& c :
         {Case{"letters in one set", "Wikipedia", 11}, Case{"digits in pairs", "123456", 5},
          Case{"an odd digit stands beside the pairs", "A12345", 7}, Case{"few digits between letters", "A1234B", 8},
          Case{"a tabulator needs set A", "A\tB", 5}}) {
        EXPECT_EQ(code128_symbol(c.text).width, c.symbols * kSymbol + kStop) << c.why;
    }
    // start C, 12, 34, check 82, stop
    EXPECT_EQ(row(code128_symbol("1234")),
              "11010011100101100111001000101100010010011110"
              "1100011101011");
    EXPECT_THROW(code128_symbol("Gr\xc3\xbc\xc3\x9f"), BarcodeError);
    EXPECT_THROW(code128_symbol(""), BarcodeError);
    EXPECT_THROW(code128_symbol(std::string(20000, '1')), BarcodeError);
}

TEST(Ean, TheCheckDigitIsAddedOrChecked)
{
    EXPECT_EQ(ean_symbol("400638133393", 13).text, "4006381333931");
    EXPECT_EQ(ean_symbol("4006381333931", 13).text, "4006381333931");
    EXPECT_EQ(ean_symbol("7351353", 8).text, "73513537");
    for (const auto& [code, length, reason] :
         {std::tuple{"4006381333932", 13, "check digit '2', expecting '1'"},
          std::tuple{"40063813339A", 13, "digits only"}, std::tuple{"123", 13, "takes 12 digits"},
          std::tuple{"12345678901+2", 13, "digits only"}, std::tuple{"123456789012", 8, "takes 7 digits"},
          std::tuple{"", 8, "takes 7 digits"}}) {
        try {
            ean_symbol(code, static_cast<size_t>(length));
            ADD_FAILURE() << code;
        } catch (const BarcodeError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(reason)) << code;
        }
    }
}

TEST(Ean, BarsAreThoseOfThePublishedExamples)
{
    EXPECT_EQ(row(ean_symbol("4006381333931", 13)),
              "10100011010100111010111101111010001001011001101010100001010000101000010111010010000101100110101");
    EXPECT_EQ(row(ean_symbol("73513537", 8)), "1010111011011110101100010011001010101000010100111010000101000100101");
}

/// The fifteen bits beside the upper left finder, most significant first, without their mask.
int format_bits(const Symbol& code)
{
    constexpr int kMask = 0x5412;
    int bits = 0;
    for (int at = 0; at < 15; ++at) {
        const bool dark =
            at < 6 ? code.dark(at, 8) : (at < 8 ? code.dark(at + 1, 8) : code.dark(8, at == 8 ? 7 : 14 - at));
        bits = bits << 1 | (dark ? 1 : 0);
    }
    return bits ^ kMask;
}

TEST(QrCode, HasTheLevelAndTheSmallestVersionThatHoldsTheText)
{
    struct Case {
        QrLevel level;
        int bits;
        size_t fits;  ///< the most small letters in version 1
    };
    for (const auto& c :
         {Case{QrLevel::L, 1, 17}, Case{QrLevel::M, 0, 14}, Case{QrLevel::Q, 3, 11}, Case{QrLevel::H, 2, 7}}) {
        const Symbol small = qr_symbol(std::string(c.fits, 'x'), c.level);
        EXPECT_EQ(small.width, 21) << c.fits;
        EXPECT_EQ(small.height, 21) << c.fits;
        EXPECT_EQ(format_bits(small) >> 13, c.bits) << c.fits;
        EXPECT_EQ(qr_symbol(std::string(c.fits + 1, 'x'), c.level).width, 25) << c.fits;
    }
    EXPECT_EQ(qr_symbol(std::string(2953, 'x'), QrLevel::L).width, 177);
    EXPECT_THROW(qr_symbol(std::string(2954, 'x'), QrLevel::L), BarcodeError);
    EXPECT_EQ(qr_symbol(std::string(15, 'x') + "\xc3\xbc", QrLevel::L).width, 25)
        << "17 bytes and the name of their encoding";
    EXPECT_THROW(qr_symbol("\xff\xfe", QrLevel::L), BarcodeError);
}

TEST(Barcodes, FillTheBoxAndKeepTheirQuietZones)
{
    FontStore fonts(std::string(VELORA_SOURCE_DIR) + "/fonts");
    Measurer measurer(fonts);
    struct Case {
        const char* type;
        const char* code;
        float left, right;  ///< share of the box, by the modules of the symbol
        std::vector<std::string> labels;
    };
    for (const auto& c : {Case{"EAN13", "400638133393", 11 / 113.0F, 7 / 113.0F, {"4", "006381", "333931"}},
                          Case{"EAN8", "7351353", 7 / 81.0F, 7 / 81.0F, {"7351", "3537"}},
                          Case{"QRCode", "x", 4 / 29.0F, 4 / 29.0F, {}},
                          Case{"Code128", "123456", 10 / 88.0F, 10 / 88.0F, {"123456"}}}) {
        BarcodeRequest request;
        request.type = c.type;
        request.code = c.code;
        const auto drawing = draw_barcode(request, 100, 100, measurer);
        float left = 100;
        float right = 0;
        std::vector<std::string> labels;
        for (const auto& item : drawing->items) {
            if (const auto* shape = std::get_if<Shape>(&item)) {
                left = std::min(left, std::get<Point>(shape->path[0]).x);
                right = std::max(right, std::get<Point>(shape->path[1]).x);
            } else {
                labels.push_back(std::get<Label>(item).text);
            }
        }
        EXPECT_NEAR(left, c.left * 100, 0.01) << c.type;
        EXPECT_NEAR(right, 100 - c.right * 100, 0.01) << c.type;
        EXPECT_EQ(labels, c.labels) << c.type;
    }
}

TEST(Barcodes, FurtherKindsHaveTheModulesOfTheirStandards)
{
    struct Case {
        const char* why;
        SymbolKind kind;
        const char* code;
        int width, height;
        const char* text;
    };
    for (const auto& c :
         {Case{"12 modules a letter and one between, framed", SymbolKind::Code39, "AB1", 64, 1, "*AB1*"},
          Case{"the frame is added", SymbolKind::Codabar, "123", 52, 1, "A123A"},
          Case{"the frame that is given stays", SymbolKind::Codabar, "B123B", 52, 1, "B123B"},
          Case{"95 modules", SymbolKind::UpcA, "01234567890", 95, 1, "012345678905"},
          Case{"with its check digit", SymbolKind::UpcA, "012345678905", 95, 1, "012345678905"},
          Case{"ten by ten holds six digits", SymbolKind::DataMatrix, "123456", 10, 10, ""},
          Case{"digits in pairs", SymbolKind::Interleaved2Of5, "1234", 45, 1, "1234"}}) {
        const Symbol symbol = symbol_of(c.kind, c.code);
        EXPECT_EQ(symbol.width, c.width) << c.why;
        EXPECT_EQ(symbol.height, c.height) << c.why;
        EXPECT_EQ(symbol.text, c.text) << c.why;
    }
    EXPECT_NE(symbol_of(SymbolKind::Gs1_128, "(01)09501101530003").text.find("(01)"), std::string::npos);
    for (const auto& [kind, code] : {std::pair{SymbolKind::UpcA, "123"},
                                     {SymbolKind::UpcA, "012345678904"},
                                     {SymbolKind::Code39, "\xC3\xA4"},
                                     {SymbolKind::Gs1_128, "(01)1"},
                                     {SymbolKind::DataMatrix, ""}}) {
        EXPECT_THROW((void)symbol_of(kind, code), BarcodeError) << code;
    }
}

TEST(Barcodes, RowsKeepTheirProportionsAndStandInTheMiddle)
{
    FontStore fonts(std::string(VELORA_SOURCE_DIR) + "/fonts");
    Measurer measurer(fonts);
    for (const char* type : {"DataMatrix", "PDF417", "RoyalMailCustomer"}) {
        BarcodeRequest request;
        request.type = type;
        request.code = "LE28HS9Z";
        const auto drawing = draw_barcode(request, 300, 100, measurer);
        float left = 300, right = 0, top = 100, bottom = 0;
        for (const auto& item : drawing->items) {
            const auto& path = std::get<Shape>(item).path;
            left = std::min(left, std::get<Point>(path[0]).x);
            top = std::min(top, std::get<Point>(path[0]).y);
            right = std::max(right, std::get<Point>(path[2]).x);
            bottom = std::max(bottom, std::get<Point>(path[2]).y);
        }
        EXPECT_NEAR(left, 300 - right, 0.01) << type;
        EXPECT_NEAR(top, 100 - bottom, 0.01) << type;
        EXPECT_GT(top, 0) << type << ": quiet zone";
        EXPECT_EQ(request.type == "DataMatrix", std::abs(right - left - bottom + top) < 0.01) << "a square";
    }
}

}  // namespace
}  // namespace velora::engine
