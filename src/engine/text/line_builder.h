#pragma once

#include "engine/text/text_layout.h"

namespace velora::engine {

class Face;
class FontStore;

/// Vertical measures of a line in points.
struct LineMetrics {
    float ascent = 0, descent = 0, gap = 0;

    static LineMetrics of(const Font& font, FontStore& fonts);
    void include(const LineMetrics& other);
    [[nodiscard]] float height() const { return ascent + descent + gap; }
};

/// Collects lines into a layout: adds spacing and indents, and stops where the height ends.
class LineBuilder {
public:
    LineBuilder(const TextRequest& request, TextLayout& layout) : request_(request), layout_(layout) {}

    void begin_paragraph(bool from_its_start) { first_line_ = from_its_start; }
    /// Width for the next line.
    [[nodiscard]] float available() const;

    struct Stretch {
        uint32_t begin, end;  ///< the visible bytes
        uint32_t next;        ///< where the text goes on
        float width;
        bool ends_paragraph;
    };
    /// False when the line does not fit any more; the layout then ends before it.
    bool add(const Stretch& stretch, const LineMetrics& metrics);

    struct Mark {
        size_t lines;
        float height, width;
        uint32_t end;
        bool first_line;
    };
    [[nodiscard]] Mark mark() const;
    void back_to(const Mark& mark);

private:
    const TextRequest& request_;
    TextLayout& layout_;
    bool first_line_ = true;
};

enum class LayoutResult : uint8_t { Done, Full, Unsuitable };

/// Part of the request's text that is one paragraph; `next` is where the following one begins.
struct ParagraphRange {
    uint32_t begin, end, next;
};

/// Lays out a paragraph of simple Latin text in one font by summing advances.
/// Unsuitable, with nothing added, for anything that needs shaping or the full breaking rules.
LayoutResult lay_plain(const TextRequest& request, const ParagraphRange& range, const Face& face, LineBuilder& builder,
                       const LineMetrics& metrics);

}  // namespace velora::engine
