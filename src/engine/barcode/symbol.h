#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace velora::engine {

/// A text that a barcode cannot hold; says why.
class BarcodeError : public std::exception {
public:
    explicit BarcodeError(std::string reason) : reason_(std::move(reason)) {}
    [[nodiscard]] const char* what() const noexcept override { return reason_.c_str(); }

private:
    std::string reason_;
};

enum class QrLevel : uint8_t { L, M, Q, H };

/// The modules of a barcode without its quiet zone, row by row; a linear one has a single row.
struct Symbol {
    int width = 0, height = 0;
    std::vector<bool> modules;
    std::string text;                  ///< what stands below a linear symbol, with the check digit
    std::vector<float> row_heights{};  ///< in modules; empty: each is one high, or that of a linear one

    [[nodiscard]] bool dark(int x, int y) const { return modules[static_cast<size_t>(y * width + x)]; }
};

/// Code 128 (ISO/IEC 15417) of a text in ASCII. @throws BarcodeError for any other
Symbol code128_symbol(std::string_view text);

/// EAN-13 or EAN-8 (ISO/IEC 15420); the check digit may be left out in `code`.
/// @param length  13 or 8
/// @throws BarcodeError for other characters, another length and a wrong check digit
Symbol ean_symbol(std::string_view code, size_t length);

/// A QR code (ISO/IEC 18004) in the smallest version that holds the text. A text beyond ASCII names its encoding, so
/// that readers need not guess. @throws BarcodeError when the text is too long
Symbol qr_symbol(std::string_view text, QrLevel level);

/// Kinds that need no rule of ours in front of the library.
enum class SymbolKind : uint8_t {
    Code39,
    Code39Extended,
    Codabar,
    Gs1_128,  ///< application identifiers in parentheses
    Interleaved2Of5,
    Industrial2Of5,
    UpcA,
    UpcE,
    Isbn,
    DataMatrix,
    Pdf417,
    Postnet,
    RoyalMail,
    IntelligentMail
};

/// @throws BarcodeError with what the kind says against the text
Symbol symbol_of(SymbolKind kind, std::string_view text);

}  // namespace velora::engine
