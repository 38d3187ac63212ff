#include "engine/export/paint/paint_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/export/common/page_walk.h"
#include "engine/text/face.h"
#include "engine/text/font_store.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr float kTooLong = 0.05F;  // points by which rounding may make a text longer than its box

constexpr uint32_t kMostInCluster = 0xFFFF;  // bytes; more marks than anybody reads

// Shares of the font size.
constexpr double kUnderline = 0.12, kStrike = -0.28, kRuleWidth = 0.06;

Matrix rotated(Rotation rotation, const Place& place)
{
    const double x = place.x, y = place.y, width = place.width, height = place.height;
    switch (rotation) {
        case Rotation::Left:
            return {0, -1, 1, 0, x, y + height};
        case Rotation::Right:
            return {0, 1, -1, 0, x + width, y};
        case Rotation::UpsideDown:
            return {-1, 0, 0, -1, x + width, y + height};
        case Rotation::None:
            break;
    }
    return {1, 0, 0, 1, x, y};
}

double vertical_offset(const Style& style, double room, double height)
{
    if (style.vertical == VerticalAlign::Middle) return (room - height) / 2;
    return style.vertical == VerticalAlign::Bottom ? room - height : 0;
}

/// Tells each cluster's first glyph how much text the cluster shows: up to where the next one in the text begins.
void give_text(std::span<CanvasGlyph> glyphs, std::string_view text, bool right_to_left)
{
    uint32_t behind = 0, cluster = static_cast<uint32_t>(text.size());
    for (size_t i = 0; i < glyphs.size(); ++i) {  // from the end of the text to its beginning
        const size_t at = right_to_left ? i : glyphs.size() - 1 - i;
        CanvasGlyph& glyph = glyphs[at];
        if (glyph.cluster != cluster) behind = std::exchange(cluster, glyph.cluster);
        if (at == 0 || glyphs[at - 1].cluster != cluster) {
            glyph.cluster_size = static_cast<uint16_t>(std::min(behind - cluster, kMostInCluster));
        }
    }
}

double aligned(HorizontalAlign align, double room, double width)
{
    if (align == HorizontalAlign::Center) return (room - width) / 2;
    return align == HorizontalAlign::Right ? room - width : 0;
}

/// Blanks at the end of a line do not count when it stands at the right or in the middle.
uint32_t visible_end(std::string_view line, HorizontalAlign align)
{
    const bool to_the_left = align == HorizontalAlign::Left || align == HorizontalAlign::Justified;
    const size_t last = line.find_last_not_of(to_the_left ? "\n" : " \n");
    return static_cast<uint32_t>(last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace

/// Glyphs of plain Latin text, straight from the face. Gives up, with a negative width, at anything else.
float TextPainter::collect_plain(std::string_view text, const Face& face, float size)
{
    const size_t first = glyphs_.size();
    const float scale = size / static_cast<float>(face.units_per_em());
    int64_t units = 0;
    for (uint32_t at = 0; at < text.size();) {
        const auto [character, bytes] = utf8_at(text, at);
        const Face::Glyph glyph = face.glyph(character);
        if (character >= 0x250 || character < ' ' || character == 0xAD || glyph.id == 0) {
            glyphs_.resize(first);
            return -1;
        }
        const float advance = static_cast<float>(glyph.advance) * scale;
        glyphs_.push_back({glyph.id, static_cast<uint16_t>(bytes), at, advance, advance});
        units += glyph.advance;
        at += bytes;
    }
    faces_.resize(glyphs_.size(), &face);
    return static_cast<float>(units) * scale;
}

void TextPainter::collect_shaped(std::string_view text, const TextPiece& piece)
{
    const std::string_view part = text.substr(piece.begin, piece.end - piece.begin);
    const auto& shaped = shaper_.shape(part, *piece.font, piece.right_to_left).glyphs;
    const float size = piece.size();
    const size_t first = glyphs_.size();
    for (const ShapedGlyph& glyph : shaped) {
        glyphs_.push_back({glyph.id, 0, glyph.cluster, glyph.advance * size, glyph.natural * size,
                           glyph.x_offset * size, glyph.y_offset * size});
        faces_.push_back(glyph.face);
    }
    const std::span<CanvasGlyph> added = std::span(glyphs_).subspan(first);
    give_text(added, part, piece.right_to_left);
    for (CanvasGlyph& glyph : added) glyph.cluster += piece.begin;
}

/// Adds the glyphs of a piece and returns its width.
float TextPainter::collect(std::string_view text, const TextPiece& piece, float position, float tab)
{
    if (piece.tab) {
        return (std::floor(position / tab + 0.001F) + 1) * tab - position;
    }
    const size_t first = glyphs_.size();
    collect_shaped(text, piece);
    float width = 0;
    for (size_t i = first; i < glyphs_.size(); ++i) width += glyphs_[i].advance;
    return width;
}

void TextPainter::stretch_blanks(std::string_view text, float by)
{
    const auto is_blank = [&](const CanvasGlyph& g) { return g.cluster_size == 1 && text[g.cluster] == ' '; };
    const auto blanks = std::ranges::count_if(glyphs_, is_blank);
    if (blanks == 0) return;
    const float each = by / static_cast<float>(blanks);
    for (Piece& piece : pieces_) {
        for (size_t i = piece.first; i < piece.last; ++i) {
            if (!is_blank(glyphs_[i])) continue;
            glyphs_[i].advance += each;
            piece.width += each;
        }
    }
}

/// Shows the glyphs of a piece, one run for each face.
void TextPainter::show_glyphs(std::string_view text, const Piece& shown, Color color, double x, double baseline,
                              Canvas& canvas)
{
    for (size_t first = shown.first; first < shown.last;) {
        size_t last = first;
        double width = 0;
        while (last < shown.last && faces_[last] == faces_[first]) width += glyphs_[last++].advance;
        const auto glyphs = std::span<const CanvasGlyph>(glyphs_).subspan(first, last - first);
        canvas.glyphs({faces_[first], shown.piece.size(), color, x, baseline, text, glyphs, shown.piece.right_to_left});
        x += width;
        first = last;
    }
}

void TextPainter::show_piece(std::string_view text, const Piece& shown, const Style& style, double x, double baseline,
                             Canvas& canvas)
{
    const TextPiece& piece = shown.piece;
    const Color color = piece.run != nullptr ? piece.run->fore : style.fore;
    const double size = piece.size();
    const double y = baseline - piece.rise();
    if (piece.run != nullptr && piece.run->back) {
        const Face& face = fonts_.face(*piece.font);
        const double scale = size / face.units_per_em();
        canvas.fill(Area{x, y - face.ascent() * scale, shown.width, (face.ascent() + face.descent()) * scale},
                    *piece.run->back);
    }
    show_glyphs(text, shown, color, x, y, canvas);
    const auto rule = [&](double offset) {
        canvas.fill(Area{x, y + (offset - kRuleWidth / 2) * size, shown.width, kRuleWidth * size}, color);
    };
    if (piece.font->underline) rule(kUnderline);
    if (piece.font->strike_through) rule(kStrike);
    if (piece.run != nullptr && !piece.run->link.empty()) {
        canvas.link({x, y - size, shown.width, size * 1.25}, {Link::Kind::Reference, piece.run->link, {}, 0, {}});
    }
}

void TextPainter::paint_line(std::string_view text, const TextLine& line, const LinePlace& place,
                             const TextDetail* detail, const Style& style, Canvas& canvas)
{
    glyphs_.clear();
    faces_.clear();
    pieces_.clear();
    const std::string_view visible = text.substr(line.begin, line.end - line.begin);
    const bool marked = detail != nullptr && !detail->runs.empty();
    const Face& face = fonts_.face(style.font);
    const bool plain = !marked && !place.right_to_left && face.plain_latin();
    float width = plain ? collect_plain(visible, face, style.font.size) : -1;
    if (width >= 0) {
        for (CanvasGlyph& glyph : glyphs_) glyph.cluster += line.begin;
        pieces_.push_back({{line.begin, line.end, &style.font, nullptr, false, false}, 0, glyphs_.size(), width});
    } else {
        width = 0;
        const auto runs = detail != nullptr ? std::span<const TextRun>(detail->runs) : std::span<const TextRun>();
        cut_in_visual_order(text, line.begin, line.end, place.right_to_left, runs, style.font, cut_);
        for (const TextPiece& piece : cut_) {
            const size_t first = glyphs_.size();
            const float piece_width = collect(text, piece, width, std::max<float>(style.paragraph.tab_width, 1));
            pieces_.push_back({piece, first, glyphs_.size(), piece_width});
            width += piece_width;
        }
    }
    double x = place.x;
    if (place.justified && width < place.width) {
        stretch_blanks(text, static_cast<float>(place.width) - width);
    } else {
        x += aligned(style.horizontal, place.width, width);
    }
    for (const Piece& piece : pieces_) {
        show_piece(text, piece, style, x, place.baseline, canvas);
        x += piece.width;
    }
}

void TextPainter::paint_lines(const Text& text, const Style& style, const Place& place, Canvas& canvas)
{
    const TextDetail* detail = text.detail.get();
    const bool turned = style.rotation != Rotation::None;
    const TextArea area = text_area(style, place);
    const double room = area.width - area.left - area.right;
    const double height = area.height - area.top - area.bottom;
    const double left = (turned ? 0 : place.x) + area.left;
    ReadingOrder order(text.text);
    double y = (turned ? 0 : place.y) + area.top + vertical_offset(style, height, text.text_height);
    if (detail == nullptr || detail->lines.empty()) {
        // The height tells where the line ends, with the spacing before it.
        const Face& face = fonts_.face(style.font);
        const double scale = style.font.size / face.units_per_em();
        const TextLine all{0, visible_end(text.shown(), style.horizontal), 0, 0, 0, 0, true};
        const double line = text.text_height > 0 ? text.text_height : face.line_height() * scale;
        const double ascent = line - face.descent() * scale;
        paint_line(text.text, all, {left, y + ascent, room, false, order.is_right_to_left(all)}, detail, style, canvas);
        return;
    }
    const Paragraph& paragraph = style.paragraph;
    for (const TextLine& line : detail->lines) {
        const bool justified = style.horizontal == HorizontalAlign::Justified && !line.ends_paragraph;
        const double width = room - line.indent - paragraph.right_indent;
        paint_line(text.text, line,
                   {left + line.indent, y + line.ascent, width, justified, order.is_right_to_left(line)}, detail, style,
                   canvas);
        y += line.height;
    }
}

void TextPainter::paint(const Text& text, const Style& style, const Place& place, Canvas& canvas)
{
    if (text.text.empty()) return;
    const TextArea area = text_area(style, place);
    const bool turned = style.rotation != Rotation::None;
    const bool too_high = text.text_height > area.height - area.top - area.bottom + kTooLong;
    bool too_wide = false;
    if (text.detail) {
        for (const TextLine& line : text.detail->lines) too_wide |= line.width > area.width - area.left + kTooLong;
    }
    const bool saved = turned || too_high || too_wide;
    if (saved) canvas.save();
    if (too_high || too_wide) {
        canvas.clip({double(place.x), double(place.y), double(place.width), double(place.height)});
    }
    if (turned) canvas.transform(rotated(style.rotation, place));
    paint_lines(text, style, place, canvas);
    if (saved) canvas.restore();
}

void TextPainter::paint(const Label& label, double x, double y, Canvas& canvas)
{
    Style style;
    style.font = label.font;
    style.fore = label.color;
    style.horizontal = label.align;
    canvas.save();
    const double sine = std::sin(label.angle), cosine = std::cos(label.angle);
    canvas.transform({cosine, sine, -sine, cosine, x + label.at.x, y + label.at.y});
    const TextLine all{0, static_cast<uint32_t>(label.text.size()), 0, 0, 0, 0, true};
    paint_line(label.text, all, {0, 0, 0, false, ReadingOrder(label.text).is_right_to_left(all)}, nullptr, style,
               canvas);
    canvas.restore();
}

}  // namespace velora::engine
