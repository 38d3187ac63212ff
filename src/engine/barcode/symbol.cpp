#include "engine/barcode/symbol.h"

#include <zint.h>

#include <algorithm>
#include <memory>

namespace velora::engine {
namespace {

struct Delete {
    void operator()(zint_symbol* symbol) const noexcept { ZBarcode_Delete(symbol); }
};
using Handle = std::unique_ptr<zint_symbol, Delete>;

Handle make(int symbology)
{
    Handle handle(ZBarcode_Create());
    if (!handle) throw std::bad_alloc();
    handle->symbology = symbology;
    return handle;
}

/// What the library says of a fault, without its number: "Error 261: Input too long" is "Input too long".
std::string reason_of(const zint_symbol& symbol)
{
    const std::string told = symbol.errtxt;
    const size_t colon = told.find(": ");
    return colon == std::string::npos ? told : told.substr(colon + 2);
}

Symbol encode(zint_symbol& symbol, std::string_view text)
{
    if (text.empty()) throw BarcodeError("the code is empty");
    constexpr size_t kLongest = 8000;  // more than any symbol holds
    if (text.size() > kLongest) throw BarcodeError("the code is too long");
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    if (ZBarcode_Encode(&symbol, bytes, static_cast<int>(text.size())) >= ZINT_ERROR) {
        throw BarcodeError(reason_of(symbol));
    }
    Symbol made{symbol.width, symbol.rows, {}, reinterpret_cast<const char*>(symbol.text)};
    if (made.height > 1) made.row_heights.assign(symbol.row_height, symbol.row_height + made.height);
    constexpr float kStackedRow = 3;  // where the height is free: what scanners ask for at least
    std::ranges::replace(made.row_heights, 0.0F, kStackedRow);
    made.modules.reserve(static_cast<size_t>(made.width * made.height));
    for (int y = 0; y < made.height; ++y) {
        for (int x = 0; x < made.width; ++x) {
            made.modules.push_back((symbol.encoded_data[y][x / 8] >> (x % 8) & 1) != 0);
        }
    }
    return made;
}

bool is_ascii(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 128; });
}

constexpr int number_of(SymbolKind kind)
{
    switch (kind) {
        case SymbolKind::Code39:
            return BARCODE_CODE39;
        case SymbolKind::Code39Extended:
            return BARCODE_EXCODE39;
        case SymbolKind::Codabar:
            return BARCODE_CODABAR;
        case SymbolKind::Gs1_128:
            return BARCODE_GS1_128;
        case SymbolKind::Interleaved2Of5:
            return BARCODE_C25INTER;
        case SymbolKind::Industrial2Of5:
            return BARCODE_C25IND;
        case SymbolKind::UpcA:
            return BARCODE_UPCA;
        case SymbolKind::UpcE:
            return BARCODE_UPCE;
        case SymbolKind::Isbn:
            return BARCODE_ISBNX;
        case SymbolKind::DataMatrix:
            return BARCODE_DATAMATRIX;
        case SymbolKind::Pdf417:
            return BARCODE_PDF417;
        case SymbolKind::Postnet:
            return BARCODE_POSTNET;
        case SymbolKind::RoyalMail:
            return BARCODE_RM4SCC;
        case SymbolKind::IntelligentMail:
            break;
    }
    return BARCODE_USPS_IMAIL;
}

/// Codabar stands between two letters, which definitions may leave out.
std::string framed_codabar(std::string_view text)
{
    constexpr std::string_view kFrame = "ABCDabcd";
    const bool framed = text.size() > 1 && kFrame.find(text.front()) != std::string_view::npos &&
                        kFrame.find(text.back()) != std::string_view::npos;
    return framed ? std::string(text) : "A" + std::string(text) + "A";
}

}  // namespace

Symbol code128_symbol(std::string_view text)
{
    if (!is_ascii(text)) throw BarcodeError("Code 128 holds letters without accents, digits and signs");
    return encode(*make(BARCODE_CODE128), text);
}

Symbol ean_symbol(std::string_view code, size_t length)
{
    const std::string name = "EAN-" + std::to_string(length);
    if (!std::ranges::all_of(code, [](char c) { return c >= '0' && c <= '9'; })) {
        throw BarcodeError(name + " holds digits only");
    }
    // The library would fill up a shorter code with noughts.
    if (code.size() != length && code.size() != length - 1) {
        throw BarcodeError(name + " takes " + std::to_string(length - 1) + " digits, or " + std::to_string(length) +
                           " with the check digit");
    }
    return encode(*make(code.size() == length ? BARCODE_EANX_CHK : BARCODE_EANX), code);
}

Symbol qr_symbol(std::string_view text, QrLevel level)
{
    constexpr int kUtf8 = 26;  // the number of that encoding among those that a symbol can name
    const Handle symbol = make(BARCODE_QRCODE);
    symbol->option_1 = static_cast<int>(level) + 1;
    symbol->input_mode = UNICODE_MODE;
    if (!is_ascii(text)) symbol->eci = kUtf8;
    return encode(*symbol, text);
}

Symbol symbol_of(SymbolKind kind, std::string_view text)
{
    const Handle symbol = make(number_of(kind));
    if (text.empty()) throw BarcodeError("the code is empty");
    if (kind == SymbolKind::Codabar) return encode(*symbol, framed_codabar(text));
    if (kind == SymbolKind::Gs1_128) symbol->input_mode = GS1_MODE | GS1PARENS_MODE;
    if (kind == SymbolKind::DataMatrix) symbol->option_3 = DM_SQUARE;
    if (kind == SymbolKind::UpcA && text.size() == 12) symbol->symbology = BARCODE_UPCA_CHK;
    // The library would fill up a shorter code with noughts.
    if (kind == SymbolKind::UpcA && text.size() != 12 && text.size() != 11) {
        throw BarcodeError("UPC-A takes 11 digits, or 12 with the check digit");
    }
    return encode(*symbol, text);
}

}  // namespace velora::engine
