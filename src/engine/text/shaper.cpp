#include "engine/text/shaper.h"

#include <hb.h>

#include "engine/text/face.h"
#include "engine/text/font_store.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr size_t kLongestCached = 64;  // bytes; words and short phrases
constexpr size_t kMostCached = 50000;  // texts; then the cache starts anew

bool is_control(char32_t character)
{
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

/// Characters that show nothing of their own and stay with the face of what is before them.
bool joins_previous(char32_t character)
{
    const auto category = hb_unicode_general_category(hb_unicode_funcs_get_default(), character);
    return category == HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK ||
           category == HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK || category == HB_UNICODE_GENERAL_CATEGORY_FORMAT;
}

uint32_t script_of(char32_t character)
{
    const hb_script_t script = hb_unicode_script(hb_unicode_funcs_get_default(), character);
    const bool common = script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED || script == HB_SCRIPT_UNKNOWN;
    return common ? 0 : static_cast<uint32_t>(script);
}

}  // namespace

void Shaper::FreeBuffer::operator()(hb_buffer_t* buffer) const noexcept
{
    hb_buffer_destroy(buffer);
}

Shaper::Shaper(FontStore& fonts) : fonts_(fonts), buffer_(hb_buffer_create()) {}
Shaper::~Shaper() = default;

/// Splits the text where the face or the script changes and where control characters are left out.
void Shaper::itemize(std::string_view text, const Font& font, const Face& primary)
{
    items_.clear();
    for (uint32_t at = 0; at < text.size();) {
        const auto [character, size] = utf8_at(text, at);
        const uint32_t begin = at;
        at += size;
        if (is_control(character)) continue;
        const bool adjoins = !items_.empty() && items_.back().end == begin;
        if (adjoins && joins_previous(character)) {
            items_.back().end = at;
            continue;
        }
        const Face* face = primary.has(character) ? &primary : fonts_.fallback(character, font);
        if (face == nullptr) face = &primary;
        const uint32_t script = script_of(character);
        if (adjoins && items_.back().face == face && (script == 0 || script == items_.back().script)) {
            items_.back().end = at;
        } else if (adjoins && items_.back().face == face && items_.back().script == 0) {
            items_.back().end = at;
            items_.back().script = script;
        } else {
            items_.push_back({face, script, begin, at});
        }
    }
}

void Shaper::shape_item(std::string_view text, const Item& item, bool right_to_left, ShapedText& shaped)
{
    hb_buffer_t* buffer = buffer_.get();
    hb_buffer_clear_contents(buffer);
    hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), item.begin,
                       static_cast<int>(item.end - item.begin));
    hb_buffer_set_direction(buffer, right_to_left ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer, item.script != 0 ? static_cast<hb_script_t>(item.script) : HB_SCRIPT_LATIN);
    hb_buffer_set_language(buffer, hb_language_from_string("en", 2));
    constexpr hb_feature_t kPlain[] = {{HB_TAG('k', 'e', 'r', 'n'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
                                       {HB_TAG('l', 'i', 'g', 'a'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
                                       {HB_TAG('c', 'l', 'i', 'g'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END}};
    hb_shape(item.face->shaping_font(), buffer, kPlain, std::size(kPlain));

    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
    const float em = static_cast<float>(item.face->units_per_em());
    for (unsigned i = 0; i < count; ++i) {
        const auto natural = hb_font_get_glyph_h_advance(item.face->shaping_font(), infos[i].codepoint);
        shaped.glyphs.push_back({item.face, static_cast<uint16_t>(infos[i].codepoint), infos[i].cluster,
                                 static_cast<float>(positions[i].x_advance) / em, static_cast<float>(natural) / em,
                                 static_cast<float>(positions[i].x_offset) / em,
                                 static_cast<float>(positions[i].y_offset) / em});
        shaped.advance += static_cast<double>(positions[i].x_advance) / em;
    }
}

void Shaper::shape_all(std::string_view text, const Font& font, const Face& primary, bool right_to_left,
                       ShapedText& shaped)
{
    itemize(text, font, primary);
    if (right_to_left) std::reverse(items_.begin(), items_.end());
    for (const Item& item : items_) shape_item(text, item, right_to_left, shaped);
}

const ShapedText& Shaper::shape(std::string_view text, const Font& font, bool right_to_left)
{
    const Face& primary = fonts_.face(font);
    if (text.size() > kLongestCached) {
        long_text_.glyphs.clear();
        long_text_.advance = 0;
        shape_all(text, font, primary, right_to_left, long_text_);
        return long_text_;
    }
    if (cached_ >= kMostCached) {
        for (auto& direction : caches_) direction.clear();
        cached_ = 0;
    }
    Cache& cache = caches_[right_to_left ? 1 : 0][&primary];
    const auto known = cache.find(text);
    if (known != cache.end()) return known->second;
    ++cached_;
    ShapedText& shaped = cache[std::string(text)];
    shape_all(text, font, primary, right_to_left, shaped);
    return shaped;
}

}  // namespace velora::engine
