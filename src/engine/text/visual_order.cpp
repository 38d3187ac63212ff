#include "engine/text/visual_order.h"

#include <unicode/ubidi.h>
#include <unicode/uchar.h>

#include <algorithm>

#include "values/utf8.h"

namespace velora::engine {
namespace {

bool has_right_to_left(std::string_view text, uint32_t begin, uint32_t end)
{
    while (begin < end) {
        const auto [character, size] = utf8_at(text, begin);
        if (is_right_to_left(character)) return true;
        begin += size;
    }
    return false;
}

struct Utf16Text {
    std::u16string units;
    std::vector<uint32_t> offsets;  ///< byte of each unit, and the end
};

Utf16Text to_utf16(std::string_view text, uint32_t begin, uint32_t end)
{
    Utf16Text result;
    for (uint32_t at = begin; at < end;) {
        const auto [character, size] = utf8_at(text, at);
        each_utf16_unit(character, [&](char16_t unit) {
            result.units += unit;
            result.offsets.push_back(at);
        });
        at += size;
    }
    result.offsets.push_back(end);
    return result;
}

/// By the first character from `at` on that has a direction.
bool begins_right_to_left(std::string_view text, uint32_t at)
{
    while (at < text.size() && text[at] != '\n') {
        const auto [character, size] = utf8_at(text, at);
        at += size;
        const bool has_none = character < 'A';  // most texts are figures, and are many
        if (has_none) continue;
        const UCharDirection direction = u_charDirection(static_cast<UChar32>(character));
        if (direction == U_LEFT_TO_RIGHT) return false;
        if (direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC) return true;
    }
    return false;
}

struct CloseBidi {
    void operator()(UBiDi* bidi) const noexcept { ubidi_close(bidi); }
};

}  // namespace

void cut_in_visual_order(std::string_view text, uint32_t begin, uint32_t end, bool right_to_left,
                         std::span<const TextRun> runs, const Font& font, std::vector<TextPiece>& pieces)
{
    if (!right_to_left && !has_right_to_left(text, begin, end)) {
        cut_into_pieces(text, begin, end, runs, font, pieces);
        return;
    }
    const Utf16Text line = to_utf16(text, begin, end);
    const std::unique_ptr<UBiDi, CloseBidi> bidi(ubidi_open());
    UErrorCode error = U_ZERO_ERROR;
    ubidi_setPara(bidi.get(), line.units.data(), static_cast<int32_t>(line.units.size()),
                  right_to_left ? UBIDI_RTL : UBIDI_LTR, nullptr, &error);
    const int32_t count = ubidi_countRuns(bidi.get(), &error);
    pieces.clear();
    std::vector<TextPiece> in_text_order;
    for (int32_t i = 0; i < count && U_SUCCESS(error); ++i) {
        int32_t start = 0, length = 0;
        const bool reversed = ubidi_getVisualRun(bidi.get(), i, &start, &length) == UBIDI_RTL;
        const auto first = static_cast<size_t>(start), behind = static_cast<size_t>(start + length);
        cut_into_pieces(text, line.offsets[first], line.offsets[behind], runs, font, in_text_order);
        for (TextPiece& piece : in_text_order) piece.right_to_left = reversed;
        if (reversed) std::ranges::reverse(in_text_order);
        pieces.insert(pieces.end(), in_text_order.begin(), in_text_order.end());
    }
}

bool ReadingOrder::is_right_to_left(const TextLine& line)
{
    if (paragraph_begins_) right_to_left_ = begins_right_to_left(text_, line.begin);
    paragraph_begins_ = line.ends_paragraph;
    return right_to_left_;
}

}  // namespace velora::engine
