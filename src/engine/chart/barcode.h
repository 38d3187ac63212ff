#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/page/drawing.h"

namespace velora::engine {

class Measurer;

/// A text that a barcode cannot hold; says why.
class BarcodeError : public std::exception {
public:
    explicit BarcodeError(std::string reason) : reason_(std::move(reason)) {}
    [[nodiscard]] const char* what() const noexcept override { return reason_.c_str(); }

private:
    std::string reason_;
};

/// Bars and gaps of a linear barcode in modules, from left to right; true is dark.
using BarRow = std::vector<bool>;

/// Symbol numbers of Code 128 (ISO/IEC 15417) with start, check and stop, in the fewest symbols that the rules of its
/// annex give. @throws BarcodeError for what is no ASCII text
std::vector<int> code128_symbols(std::string_view text);
BarRow code128_bars(const std::vector<int>& symbols);

/// The digits of an EAN-13 or EAN-8 (ISO/IEC 15420) with the check digit, which may be left out in `code`.
/// @param length  13 or 8
/// @throws BarcodeError for other characters, another length and a wrong check digit
std::string ean_digits(std::string_view code, size_t length);
BarRow ean_bars(std::string_view digits);

enum class QrLevel : uint8_t { L, M, Q, H };

/// A QR code (ISO/IEC 18004): a square of modules, row by row; true is dark.
struct QrCode {
    int size = 0;
    std::vector<bool> modules;

    [[nodiscard]] bool dark(int x, int y) const { return modules[static_cast<size_t>(y * size + x)]; }
};

/// The smallest version that holds the bytes; the mask with the least penalty.
/// @throws BarcodeError when the text is too long
QrCode qr_code(std::string_view bytes, QrLevel level);

struct BarcodeRequest {
    std::string type;  ///< Code128, EAN13, EAN8, QRCode
    std::string code;
    bool show_text = true;
    float module_width = 0;  ///< points; 0, or more than fits: as wide as fits
    QrLevel level = QrLevel::L;
    Font font;
    Color fore = kBlack;
};

/// Whether barcodes of that type are drawn.
bool draws_barcode(std::string_view type);

/// Draws a barcode with its quiet zones into a box of the given size in points.
/// @throws BarcodeError when the code cannot be written in the type
std::shared_ptr<const Drawing> draw_barcode(const BarcodeRequest& request, float width, float height,
                                            Measurer& measurer);

}  // namespace velora::engine
