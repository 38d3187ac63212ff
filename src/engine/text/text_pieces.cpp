#include "engine/text/text_pieces.h"

#include <algorithm>

#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr float kScriptSize = 2.0F / 3.0F;
constexpr float kSuperRise = 0.33F, kSubRise = -0.16F;
constexpr uint32_t kLongestPiece = 512;  // keeps the work for one line small in a text without blanks

/// Letters decide the direction; signs and blanks keep that of what is before them.
bool is_letter_like(char32_t character)
{
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') || character >= 0xC0;
}

}  // namespace

float TextPiece::size() const
{
    return run == nullptr || run->script == TextRun::Script::Normal ? font->size : font->size * kScriptSize;
}

float TextPiece::rise() const
{
    if (run == nullptr || run->script == TextRun::Script::Normal) return 0;
    return font->size * (run->script == TextRun::Script::Super ? kSuperRise : kSubRise);
}

bool is_right_to_left(char32_t character)
{
    return (character >= 0x590 && character <= 0x8FF) || (character >= 0xFB1D && character <= 0xFDFF) ||
           (character >= 0xFE70 && character <= 0xFEFC) || (character >= 0x10800 && character <= 0x10FFF) ||
           (character >= 0x1E800 && character <= 0x1EFFF);
}

void cut_into_pieces(std::string_view text, uint32_t begin, uint32_t end, std::span<const TextRun> runs,
                     const Font& font, std::vector<TextPiece>& pieces)
{
    pieces.clear();
    auto run = std::ranges::find_if(runs, [&](const TextRun& r) { return r.end > begin; });
    bool right_to_left = false;
    for (uint32_t at = begin; at < end;) {
        while (run != runs.end() && run->end <= at) ++run;
        const TextRun* here = run != runs.end() && run->begin <= at ? &*run : nullptr;
        const auto [character, size] = utf8_at(text, at);
        if (is_right_to_left(character)) {
            right_to_left = true;
        } else if (is_letter_like(character)) {
            right_to_left = false;
        }
        const bool tab = character == '\t';
        const bool goes_on = !pieces.empty() && !tab && !pieces.back().tab && pieces.back().run == here &&
                             pieces.back().right_to_left == right_to_left && at - pieces.back().begin < kLongestPiece;
        if (goes_on) {
            pieces.back().end = at + size;
        } else {
            pieces.push_back({at, at + size, here != nullptr ? here->font.get() : &font, here, right_to_left, tab});
        }
        at += size;
    }
}

}  // namespace velora::engine
