#include "engine/text/rich_layout.h"

#include <algorithm>
#include <cmath>

#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr float kTolerance = 0.001F;

bool is_blank(char c)
{
    return c == ' ' || c == '\t';
}

uint32_t without_trailing_blanks(std::string_view text, uint32_t begin, uint32_t end)
{
    while (end > begin && is_blank(text[end - 1])) --end;
    return end;
}

}  // namespace

/// The line that is being filled.
struct RichLayout::State {
    const TextRequest& request;
    LineBuilder& builder;
    LineMetrics least;  ///< of an empty line
    uint32_t line_begin, visible_end;
    float position = 0;  ///< behind everything placed, blanks included
    float visible = 0;
    LineMetrics metrics{};
    bool empty = true;
};

float RichLayout::width_of(std::string_view text, const TextPiece& piece)
{
    const auto part = text.substr(piece.begin, piece.end - piece.begin);
    return static_cast<float>(shaper_.shape(part, *piece.font, piece.right_to_left).advance * piece.size());
}

bool RichLayout::end_line(State& state, uint32_t next, bool ends_paragraph)
{
    const LineMetrics& metrics = state.empty ? state.least : state.metrics;
    const bool fits =
        state.builder.add({state.line_begin, state.visible_end, next, state.visible, ends_paragraph}, metrics);
    state.line_begin = state.visible_end = next;
    state.position = state.visible = 0;
    state.metrics = {};
    state.empty = true;
    return fits;
}

/// Splits the glyph advances of a piece by the characters that they belong to, in the order of the text.
void RichLayout::clusters_of(std::string_view text, const TextPiece& piece)
{
    const auto& shaped =
        shaper_.shape(text.substr(piece.begin, piece.end - piece.begin), *piece.font, piece.right_to_left);
    clusters_.clear();
    for (const ShapedGlyph& glyph : shaped.glyphs) {
        clusters_.push_back({piece.begin + glyph.cluster, glyph.advance * piece.size()});
    }
    std::ranges::stable_sort(clusters_, {}, &Cluster::begin);
}

/// Fills lines with the pieces of a word that is wider than a line.
bool RichLayout::place_by_characters(State& state)
{
    for (const TextPiece& piece : pieces_) {
        const LineMetrics metrics = LineMetrics::of(*piece.font, fonts_);
        clusters_of(state.request.text, piece);
        for (size_t i = 0; i < clusters_.size();) {
            size_t next = i;
            float advance = 0;
            while (next < clusters_.size() && clusters_[next].begin == clusters_[i].begin) {
                advance += clusters_[next++].advance;
            }
            const uint32_t begin = clusters_[i].begin;
            const uint32_t end = next < clusters_.size() ? clusters_[next].begin : piece.end;
            const bool blank = end == begin + 1 && is_blank(state.request.text[begin]);  // hangs as between words
            const bool full = state.position + advance > state.builder.available() + kTolerance;
            if (full && !blank && !state.empty && !end_line(state, begin, false)) return false;
            state.position += advance;
            if (!blank) {
                state.visible = state.position;
                state.visible_end = end;
            }
            state.metrics.include(metrics);
            state.empty = false;
            i = next;
        }
    }
    return true;
}

bool RichLayout::place_word(State& state, uint32_t begin, uint32_t end)
{
    if (begin == end) return true;
    cut_into_pieces(state.request.text, begin, end, state.request.runs, state.request.style->font, pieces_);
    const float available = state.builder.available() + kTolerance;
    float width = 0;
    LineMetrics metrics;
    for (const TextPiece& piece : pieces_) {
        width += width_of(state.request.text, piece);
        metrics.include(LineMetrics::of(*piece.font, fonts_));
        if (width > available && piece.end < end && width > state.builder.available() * 2) break;
    }
    if (state.position + width > available && begin > state.line_begin && !end_line(state, begin, false)) return false;
    if (width > state.builder.available() + kTolerance) return place_by_characters(state);
    state.position += width;
    state.visible = state.position;
    state.visible_end = end;
    state.metrics.include(metrics);
    state.empty = false;
    return true;
}

void RichLayout::place_blanks(State& state, uint32_t begin, uint32_t end)
{
    if (begin == end) return;
    const float tab = static_cast<float>(std::max<int16_t>(state.request.style->paragraph.tab_width, 1));
    cut_into_pieces(state.request.text, begin, end, state.request.runs, state.request.style->font, pieces_);
    for (const TextPiece& piece : pieces_) {
        if (piece.tab) {
            state.position = (std::floor(state.position / tab + 0.001F) + 1) * tab;
        } else {
            state.position += width_of(state.request.text, piece);
        }
    }
}

LayoutResult RichLayout::lay(const TextRequest& request, const ParagraphRange& range, LineBuilder& builder)
{
    State state{request, builder, LineMetrics::of(request.style->font, fonts_), range.begin, range.begin};
    const std::string_view paragraph = request.text.substr(range.begin, range.end - range.begin);
    if (!paragraph.empty()) breaker_.start(paragraph);
    for (uint32_t begin = range.begin; begin < range.end;) {
        const uint32_t end = range.begin + breaker_.next();
        const uint32_t visible_end = without_trailing_blanks(request.text, begin, end);
        if (!place_word(state, begin, visible_end)) return LayoutResult::Full;
        place_blanks(state, visible_end, end);
        begin = end;
    }
    return end_line(state, range.next, true) ? LayoutResult::Done : LayoutResult::Full;
}

}  // namespace velora::engine
