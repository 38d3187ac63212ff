#include "engine/export/rtf/rtf_shapes.h"

#include <fmt/format.h>

#include <cmath>

#include "engine/export/common/xml_text.h"
#include "engine/export/rtf/rtf_tables.h"

namespace velora::engine {
namespace {

long twips(float points)
{
    return std::lround(points * 20);
}
long emu(float points)
{
    return std::lround(points * 12700);
}

void property(std::string& out, std::string_view name, std::string_view value)
{
    out.append("{\\sp{\\sn ").append(name).append("}{\\sv ").append(value).append("}}");
}
void property(std::string& out, std::string_view name, long value)
{
    std::string digits;
    append_number(digits, value);
    property(out, name, digits);
}

/// A control word with its number.
void word(std::string& out, std::string_view name, long value)
{
    out += name;
    append_number(out, value);
}

// What does not change is written as it stands: a page of a list has hundreds of these.
constexpr std::string_view kPlacedByPage = "{\\sp{\\sn posrelh}{\\sv 1}}{\\sp{\\sn posrelv}{\\sv 1}}";
constexpr std::string_view kBareBox =
    "{\\sp{\\sn fFilled}{\\sv 0}}{\\sp{\\sn fLine}{\\sv 0}}{\\sp{\\sn dxTextLeft}{\\sv 0}}"
    "{\\sp{\\sn dyTextTop}{\\sv 0}}{\\sp{\\sn dxTextRight}{\\sv 0}}{\\sp{\\sn dyTextBottom}{\\sv 0}}";

long color_number(Color color)
{
    return color.red | color.green << 8 | color.blue << 16;
}

void stroke(std::string& out, const Pen& pen)
{
    if (pen.width <= 0) return property(out, "fLine", 0);
    property(out, "fLine", 1);
    property(out, "lineColor", color_number(pen.color));
    property(out, "lineWidth", emu(pen.width));
    constexpr long kDash = 6, kDot = 2, kDouble = 1;
    if (pen.style == LineStyle::Dashed) property(out, "lineDashing", kDash);
    if (pen.style == LineStyle::Dotted) property(out, "lineDashing", kDot);
    if (pen.style == LineStyle::Double) property(out, "lineStyle", kDouble);
}

void append_hex(std::string& out, std::string_view bytes)
{
    constexpr std::string_view kHex = "0123456789abcdef";
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i % 64 == 0) out += '\n';
        const auto byte = static_cast<unsigned char>(bytes[i]);
        out += {kHex[byte >> 4], kHex[byte & 15]};
    }
}

}  // namespace

void RtfShapes::open(std::string& out, Kind kind, const RtfBox& box)
{
    ++order_;
    out += "{\\shp{\\*\\shpinst";
    word(out, "\\shpleft", twips(box.x));
    word(out, "\\shptop", twips(box.y));
    word(out, "\\shpright", twips(box.x + box.width));
    word(out, "\\shpbottom", twips(box.y + box.height));
    out += "\\shpfhdr0\\shpbxpage\\shpbxignore\\shpbypage\\shpbyignore\\shpwr3\\shpwrk0\\shpfblwtxt0";
    word(out, "\\shpz", order_);
    property(out, "shapeType", static_cast<long>(kind));
    out += kPlacedByPage;
}

void RtfShapes::closed(std::string& out, Kind kind, const RtfBox& box, const Color* fill, const Pen& pen, float radius)
{
    if (fill == nullptr && pen.width <= 0) return;
    open(out, kind, box);
    property(out, "fFilled", fill != nullptr ? 1 : 0);
    if (fill != nullptr) property(out, "fillColor", color_number(*fill));
    if (kind == Kind::RoundRectangle) {
        const float share = radius / std::max(1.0F, std::min(box.width, box.height));
        property(out, "adjustValue", std::lround(std::min(share, 0.5F) * 21600));
    }
    stroke(out, pen);
    out += "}}\n";
}

void RtfShapes::line(std::string& out, Point from, Point to, const Pen& pen)
{
    if (pen.width <= 0) return;
    const float left = std::min(from.x, to.x), top = std::min(from.y, to.y);
    open(out, Kind::Line, {left, top, std::abs(to.x - from.x), std::abs(to.y - from.y)});
    if ((to.x - from.x) * (to.y - from.y) < 0) property(out, "fFlipV", 1);
    stroke(out, pen);
    out += "}}\n";
}

void RtfShapes::picture(std::string& out, const RtfBox& box, std::string_view bytes, std::string_view description)
{
    const bool is_png = bytes.starts_with("\x89PNG");
    open(out, Kind::Picture, box);
    out += fmt::format("{{\\sp{{\\sn pib}}{{\\sv {{\\pict\\{}\\picwgoal{}\\pichgoal{}", is_png ? "pngblip" : "jpegblip",
                       twips(box.width), twips(box.height));
    append_hex(out, bytes);
    out += "}}}";
    if (!description.empty()) {
        std::string words;
        rtf_append(words, description);
        property(out, "wzDescription", words);
    }
    property(out, "fLine", 0);
    out += "}}\n";
}

void RtfShapes::text(std::string& out, const RtfBox& box, Rotation rotation, std::string_view text)
{
    open(out, Kind::TextBox, box);
    out += kBareBox;
    constexpr long kBottomToTop = 2, kTopToBottom = 3, kHalfTurn = 180L << 16;
    if (rotation == Rotation::Left) property(out, "txflTextFlow", kBottomToTop);
    if (rotation == Rotation::Right) property(out, "txflTextFlow", kTopToBottom);
    if (rotation == Rotation::UpsideDown) property(out, "rotation", kHalfTurn);
    out += "{\\shptxt ";
    out += text;
    out += "}}}\n";
}

}  // namespace velora::engine
