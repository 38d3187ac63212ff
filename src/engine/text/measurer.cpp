#include "engine/text/measurer.h"

#include "engine/text/face.h"
#include "engine/text/font_store.h"
#include "engine/text/line_builder.h"
#include "engine/text/rich_layout.h"
#include "engine/text/shaper.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

/// The paragraph that starts at `begin`; a line feed, with or without a carriage return, ends it.
ParagraphRange paragraph_at(std::string_view text, uint32_t begin)
{
    const size_t feed = text.find('\n', begin);
    if (feed == std::string_view::npos) {
        const auto end = static_cast<uint32_t>(text.size());
        return {begin, end, end};
    }
    const auto end = static_cast<uint32_t>(feed);
    return {begin, end > begin && text[end - 1] == '\r' ? end - 1 : end, end + 1};
}

}  // namespace

struct Measurer::Caches {
    explicit Caches(FontStore& fonts) : shaper(fonts), rich(fonts, shaper) {}
    Shaper shaper;
    RichLayout rich;
};

Measurer::Measurer(FontStore& fonts) : fonts_(fonts), caches_(std::make_unique<Caches>(fonts)) {}
Measurer::~Measurer() = default;

void Measurer::measure(const TextRequest& request, TextLayout& layout)
{
    layout.lines.clear();
    layout.height = layout.width = layout.line_spacing_factor = layout.leading_offset = 0;
    layout.end = request.begin;
    const Face& face = fonts_.face(request.style->font);
    const LineMetrics metrics = LineMetrics::of(request.style->font, fonts_);
    LineBuilder builder(request, layout);
    LayoutResult result = LayoutResult::Done;
    for (uint32_t at = request.begin; at < request.text.size() && result == LayoutResult::Done;) {
        const ParagraphRange range = paragraph_at(request.text, at);
        builder.begin_paragraph(at == 0 || request.text[at - 1] == '\n');
        result = request.runs.empty() ? lay_plain(request, range, face, builder, metrics) : LayoutResult::Unsuitable;
        if (result == LayoutResult::Unsuitable) result = caches_->rich.lay(request, range, builder);
        at = range.next;
        const bool ends_with_feed = range.next == request.text.size() && range.next > range.end;
        // the empty line behind a line feed at the end takes room where there is some
        if (result == LayoutResult::Done && ends_with_feed) builder.add({at, at, at, 0, true}, metrics);
    }
    layout.complete = result == LayoutResult::Done;
    if (!layout.complete && !request.whole_last_word && !layout.lines.empty()) fill_last_line(request, layout);
}

/// Takes characters of the word that went to the line below, as far as they fit.
void Measurer::fill_last_line(const TextRequest& request, TextLayout& layout)
{
    TextLine& last = layout.lines.back();
    if (last.ends_paragraph) return;
    float width = last.width;
    uint32_t end = layout.end;
    while (end < request.text.size() && request.text[end] != '\n') {
        const uint32_t next = end + utf8_at(request.text, end).size;
        const float longer = this->width(request.text.substr(last.begin, next - last.begin), request.style->font);
        if (longer > request.width) break;
        width = longer;
        end = next;
    }
    if (end == layout.end) return;
    last.end = end;
    last.width = width;
    layout.end = end;
}

float Measurer::width(std::string_view text, const Font& font)
{
    const Face& face = fonts_.face(font);
    int64_t units = 0;
    for (size_t at = 0; at < text.size() && face.plain_latin();) {
        const auto [character, size] = utf8_at(text, at);
        const Face::Glyph glyph = face.glyph(character);
        if (character >= 0x250 || character == 0xAD || glyph.id == 0) break;
        units += glyph.advance;
        at += size;
        if (at == text.size()) {
            return static_cast<float>(static_cast<double>(units) * font.size / face.units_per_em());
        }
    }
    return static_cast<float>(caches_->shaper.shape(text, font).advance * font.size);
}

float Measurer::line_height(const Font& font)
{
    return LineMetrics::of(font, fonts_).height();
}

}  // namespace velora::engine
