#include "engine/barcode/barcode.h"

#include <algorithm>
#include <cctype>

#include "engine/text/measurer.h"

namespace velora::engine {
namespace {

/// A linear barcode that is to be drawn; texts stand below from one module up to another.
struct Linear {
    struct Caption {
        std::string text;
        int from, to;
    };
    Symbol symbol;
    int quiet_left = 10, quiet_right = 10;
    std::vector<Caption> captions;
};

void add_bar(Drawing& drawing, Point corner, float width, float height, Color color)
{
    Shape shape;
    shape.path = {corner, Point{corner.x + width, corner.y}, Point{corner.x + width, corner.y + height},
                  Point{corner.x, corner.y + height}};
    shape.closed = true;
    shape.filled = true;
    shape.fill = color;
    drawing.items.emplace_back(std::move(shape));
}

/// Width of a module: what was asked for where it fits.
float module_width(float asked, float room)
{
    return asked > 0 && asked < room ? asked : room;
}

Linear code128(const BarcodeRequest& request)
{
    Linear linear;
    linear.symbol = code128_symbol(request.code);
    std::string text = request.code;
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::iscntrl(c); }, ' ');
    linear.captions.push_back({text, 0, linear.symbol.width});
    return linear;
}

Linear ean13(const BarcodeRequest& request)
{
    Symbol symbol = ean_symbol(request.code, 13);
    const std::string digits = symbol.text;
    return {std::move(symbol),
            11,
            7,
            {{digits.substr(0, 1), -9, -2}, {digits.substr(1, 6), 3, 45}, {digits.substr(7), 50, 92}}};
}

Linear ean8(const BarcodeRequest& request)
{
    Symbol symbol = ean_symbol(request.code, 8);
    const std::string digits = symbol.text;
    return {std::move(symbol), 7, 7, {{digits.substr(0, 4), 3, 31}, {digits.substr(4), 36, 64}}};
}

/// The bars of a row of modules that are dark side by side.
template <class Bar>
void each_bar(const Symbol& symbol, int y, Bar&& bar)
{
    for (int x = 0; x < symbol.width;) {
        int end = x;
        while (end < symbol.width && symbol.dark(end, y)) ++end;
        if (end > x) bar(x, end);
        x = std::max(end, x + 1);
    }
}

void draw_linear(Drawing& drawing, const Linear& linear, const BarcodeRequest& request, Measurer& measurer)
{
    constexpr float kMostTextShare = 0.4F;
    const auto modules = static_cast<float>(linear.symbol.width + linear.quiet_left + linear.quiet_right);
    const float module = module_width(request.module_width, drawing.width / modules);
    const float left = (drawing.width - module * modules) / 2 + module * static_cast<float>(linear.quiet_left);
    const auto x_of = [&](int at) { return left + module * static_cast<float>(at); };

    Font font = request.font;
    const float ask = measurer.line_height(font);
    const float text_height = request.show_text ? std::min(ask, drawing.height * kMostTextShare) : 0;
    if (ask > 0 && text_height > 0) font.size *= text_height / ask;
    each_bar(linear.symbol, 0, [&](int from, int to) {
        add_bar(drawing, {x_of(from), 0}, x_of(to) - x_of(from), drawing.height - text_height, request.fore);
    });
    if (!request.show_text) return;
    for (const auto& caption : linear.captions) {
        Font fitted = font;
        const float room = x_of(caption.to) - x_of(caption.from);
        const float width = measurer.width(caption.text, font);
        if (width > room && width > 0) fitted.size *= room / width;
        drawing.items.emplace_back(
            Label{{(x_of(caption.from) + x_of(caption.to)) / 2, drawing.height - font.size * 0.2F},
                  caption.text,
                  fitted,
                  request.fore,
                  HorizontalAlign::Center,
                  0});
    }
}

/// Rows of modules, in their own proportions in the middle of the box.
void draw_rows(Drawing& drawing, const Symbol& code, int quiet, const BarcodeRequest& request)
{
    const auto height_of = [&](int y) {
        return code.row_heights.empty() ? 1 : code.row_heights[static_cast<size_t>(y)];
    };
    float rows = 0;
    for (int y = 0; y < code.height; ++y) rows += height_of(y);
    const auto margins = static_cast<float>(2 * quiet);
    const float room =
        std::min(drawing.width / (static_cast<float>(code.width) + margins), drawing.height / (rows + margins));
    const float module = module_width(request.module_width, room);
    const Point corner{(drawing.width - static_cast<float>(code.width) * module) / 2,
                       (drawing.height - rows * module) / 2};
    float top = corner.y;
    for (int y = 0; y < code.height; ++y) {
        const float height = height_of(y) * module;
        each_bar(code, y, [&](int from, int to) {
            const Point start{corner.x + static_cast<float>(from) * module, top};
            add_bar(drawing, start, static_cast<float>(to - from) * module, height, request.fore);
        });
        top += height;
    }
}

template <SymbolKind Kind>
Linear linear(const BarcodeRequest& request)
{
    Linear linear;
    linear.symbol = symbol_of(Kind, request.code);
    linear.captions.push_back({linear.symbol.text, 0, linear.symbol.width});
    return linear;
}

/// The names of both families that definitions use.
struct LinearType {
    std::string_view name;
    Linear (*make)(const BarcodeRequest&);
};
// clang-format off
constexpr LinearType kLinear[] = {
    {"Code128", code128}, {"Code128A", code128}, {"Code128B", code128}, {"Code128C", code128},
    {"EAN13", ean13}, {"EAN8", ean8},
    {"EAN128", linear<SymbolKind::Gs1_128>}, {"UCC128", linear<SymbolKind::Gs1_128>},
    {"UPCA", linear<SymbolKind::UpcA>}, {"UPCE", linear<SymbolKind::UpcE>}, {"Bookland", linear<SymbolKind::Isbn>},
    {"Code39", linear<SymbolKind::Code39>}, {"3of9", linear<SymbolKind::Code39>},
    {"USD3", linear<SymbolKind::Code39>}, {"Code39 (Extended)", linear<SymbolKind::Code39Extended>},
    {"Codabar", linear<SymbolKind::Codabar>}, {"NW7", linear<SymbolKind::Codabar>},
    {"Monarch", linear<SymbolKind::Codabar>}, {"2of7", linear<SymbolKind::Codabar>},
    {"USD4", linear<SymbolKind::Codabar>},
    {"Interleaved2Of5", linear<SymbolKind::Interleaved2Of5>}, {"Int2of5", linear<SymbolKind::Interleaved2Of5>},
    {"Std2of5", linear<SymbolKind::Industrial2Of5>},
};
// clang-format on

/// Symbols of rows, with the modules that are to stay free around them.
struct RowsType {
    std::string_view name;
    SymbolKind kind;
    int quiet;
};
constexpr RowsType kRows[] = {{"DataMatrix", SymbolKind::DataMatrix, 1},
                              {"PDF417", SymbolKind::Pdf417, 2},
                              {"POSTNET", SymbolKind::Postnet, 2},
                              {"PostNet", SymbolKind::Postnet, 2},
                              {"RoyalMailCustomer", SymbolKind::RoyalMail, 2},
                              {"USPSIntelligentMail", SymbolKind::IntelligentMail, 2}};
constexpr std::string_view kQrCode = "QRCode";

}  // namespace

bool draws_barcode(std::string_view type)
{
    const auto is_type = [&](const auto& known) { return known.name == type; };
    return type == kQrCode || std::ranges::any_of(kLinear, is_type) || std::ranges::any_of(kRows, is_type);
}

std::shared_ptr<const Drawing> draw_barcode(const BarcodeRequest& request, float width, float height,
                                            Measurer& measurer)
{
    auto drawing = std::make_shared<Drawing>();
    drawing->width = width;
    drawing->height = height;
    if (request.type == kQrCode) draw_rows(*drawing, qr_symbol(request.code, request.level), 4, request);
    for (const RowsType& rows : kRows) {
        if (rows.name == request.type) draw_rows(*drawing, symbol_of(rows.kind, request.code), rows.quiet, request);
    }
    for (const auto& linear : kLinear) {
        if (linear.name == request.type) draw_linear(*drawing, linear.make(request), request, measurer);
    }
    return drawing;
}

}  // namespace velora::engine
