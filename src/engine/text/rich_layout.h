#pragma once

#include "engine/text/line_break.h"
#include "engine/text/line_builder.h"
#include "engine/text/shaper.h"
#include "engine/text/text_pieces.h"

namespace velora::engine {

/// Lays out any paragraph: markup, every script, tabs, words that are wider than the line.
class RichLayout {
public:
    RichLayout(FontStore& fonts, Shaper& shaper) : fonts_(fonts), shaper_(shaper) {}

    LayoutResult lay(const TextRequest& request, const ParagraphRange& range, LineBuilder& builder);

private:
    struct State;
    struct Cluster {
        uint32_t begin;
        float advance;
    };

    float width_of(std::string_view text, const TextPiece& piece);
    bool place_word(State& state, uint32_t begin, uint32_t end);
    bool place_by_characters(State& state);
    void clusters_of(std::string_view text, const TextPiece& piece);
    void place_blanks(State& state, uint32_t begin, uint32_t end);
    static bool end_line(State& state, uint32_t next, bool ends_paragraph);

    FontStore& fonts_;
    Shaper& shaper_;
    LineBreaker breaker_;
    std::vector<TextPiece> pieces_;
    std::vector<Cluster> clusters_;
};

}  // namespace velora::engine
