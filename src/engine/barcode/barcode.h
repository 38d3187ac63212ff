#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "engine/barcode/symbol.h"
#include "engine/page/drawing.h"

namespace velora::engine {

class Measurer;

struct BarcodeRequest {
    std::string type;  ///< as definitions name it: Code128, EAN13, QRCode, DataMatrix, …
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
