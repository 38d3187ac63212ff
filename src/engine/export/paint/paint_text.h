#pragma once

#include "engine/export/paint/canvas.h"
#include "engine/text/shaper.h"
#include "engine/text/visual_order.h"

namespace velora::engine {

/// Paints the texts of finished pages. Keeps shaped words and buffers for the next text.
class TextPainter {
public:
    explicit TextPainter(FontStore& fonts) : fonts_(fonts), shaper_(fonts) {}

    /// @param area  the element's box on the canvas
    void paint(const Text& text, const Style& style, const Place& place, Canvas& canvas);
    void paint(const Label& label, double x, double y, Canvas& canvas);

private:
    struct LinePlace {
        double x, baseline, width;  ///< of the room for the line
        bool justified, right_to_left;
    };

    struct Piece {
        TextPiece piece;
        size_t first, last;  ///< its glyphs
        float width;
    };

    float collect(std::string_view text, const TextPiece& piece, float position, float tab);
    float collect_plain(std::string_view text, const Face& face, float size);
    void collect_shaped(std::string_view text, const TextPiece& piece);
    void paint_lines(const Text& text, const Style& style, const Place& place, Canvas& canvas);
    void paint_line(std::string_view text, const TextLine& line, const LinePlace& place, const TextDetail* detail,
                    const Style& style, Canvas& canvas);
    void show_piece(std::string_view text, const Piece& shown, const Style& style, double x, double baseline,
                    Canvas& canvas);
    void show_glyphs(std::string_view text, const Piece& shown, Color color, double x, double baseline, Canvas& canvas);
    void stretch_blanks(std::string_view text, float by);

    FontStore& fonts_;
    Shaper shaper_;
    std::vector<TextPiece> cut_;
    std::vector<Piece> pieces_;
    std::vector<CanvasGlyph> glyphs_;
    std::vector<const Face*> faces_;  ///< of each glyph
};

}  // namespace velora::engine
