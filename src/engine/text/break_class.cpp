#include <algorithm>
#include <array>

#include "engine/text/line_break.h"

namespace velora::engine {
namespace {

struct Range {
    char32_t first, last;
    BreakClass kind;
};

using enum BreakClass;

// Above U+024F, in order. What no range names is Other.
constexpr auto kRanges = std::to_array<Range>({
    {0x250, 0x2FF, Letter},      {0x300, 0x36F, Mark},        {0x370, 0x482, Letter},      {0x483, 0x489, Mark},
    {0x48A, 0x589, Letter},      {0x1E00, 0x1FFF, Letter},    {0x2000, 0x2006, Blank},     {0x2007, 0x2007, Glue},
    {0x2008, 0x200A, Blank},     {0x200B, 0x200B, Blank},     {0x200C, 0x200F, Mark},      {0x2010, 0x2010, Hyphen},
    {0x2011, 0x2011, Glue},      {0x2012, 0x2015, Hyphen},    {0x2016, 0x2017, Letter},    {0x2018, 0x2018, Open},
    {0x2019, 0x2019, Close},     {0x201A, 0x201C, Open},      {0x201D, 0x201D, Close},     {0x201E, 0x201F, Open},
    {0x2020, 0x2027, Letter},    {0x202A, 0x202E, Mark},      {0x202F, 0x202F, Glue},      {0x2030, 0x2034, Close},
    {0x2035, 0x2038, Letter},    {0x2039, 0x2039, Open},      {0x203A, 0x203A, Close},     {0x203B, 0x2044, Letter},
    {0x2045, 0x2045, Open},      {0x2046, 0x2046, Close},     {0x2047, 0x205E, Letter},    {0x205F, 0x205F, Blank},
    {0x2060, 0x206F, Mark},      {0x2070, 0x209F, Letter},    {0x20A0, 0x20BF, Open},      {0x20D0, 0x20F0, Mark},
    {0x2100, 0x2102, Letter},    {0x2103, 0x2103, Close},     {0x2104, 0x2104, Letter},    {0x2105, 0x2105, Close},
    {0x2106, 0x2108, Letter},    {0x2109, 0x2109, Close},     {0x210A, 0x22FF, Letter},    {0x2460, 0x26FF, Letter},
    {0x3000, 0x3000, Blank},     {0x3001, 0x3002, Close},     {0x3003, 0x3004, Letter},    {0x3005, 0x3005, Close},
    {0x3006, 0x3007, Letter},    {0x3008, 0x3008, Open},      {0x3009, 0x3009, Close},     {0x300A, 0x300A, Open},
    {0x300B, 0x300B, Close},     {0x300C, 0x300C, Open},      {0x300D, 0x300D, Close},     {0x300E, 0x300E, Open},
    {0x300F, 0x300F, Close},     {0x3010, 0x3010, Open},      {0x3011, 0x3011, Close},     {0x3012, 0x3013, Letter},
    {0x3041, 0x3041, Close},     {0x3042, 0x3042, Ideograph}, {0x3043, 0x3043, Close},     {0x3044, 0x3044, Ideograph},
    {0x3045, 0x3045, Close},     {0x3046, 0x3046, Ideograph}, {0x3047, 0x3047, Close},     {0x3048, 0x3048, Ideograph},
    {0x3049, 0x3049, Close},     {0x304A, 0x3062, Ideograph}, {0x3063, 0x3063, Close},     {0x3064, 0x3082, Ideograph},
    {0x3083, 0x3083, Close},     {0x3084, 0x3084, Ideograph}, {0x3085, 0x3085, Close},     {0x3086, 0x3086, Ideograph},
    {0x3087, 0x3087, Close},     {0x3088, 0x308D, Ideograph}, {0x308E, 0x308E, Close},     {0x308F, 0x3094, Ideograph},
    {0x309B, 0x309E, Close},     {0x30A1, 0x30A1, Close},     {0x30A2, 0x30A2, Ideograph}, {0x30A3, 0x30A3, Close},
    {0x30A4, 0x30A4, Ideograph}, {0x30A5, 0x30A5, Close},     {0x30A6, 0x30A6, Ideograph}, {0x30A7, 0x30A7, Close},
    {0x30A8, 0x30A8, Ideograph}, {0x30A9, 0x30A9, Close},     {0x30AA, 0x30C2, Ideograph}, {0x30C3, 0x30C3, Close},
    {0x30C4, 0x30E2, Ideograph}, {0x30E3, 0x30E3, Close},     {0x30E4, 0x30E4, Ideograph}, {0x30E5, 0x30E5, Close},
    {0x30E6, 0x30E6, Ideograph}, {0x30E7, 0x30E7, Close},     {0x30E8, 0x30ED, Ideograph}, {0x30EE, 0x30EE, Close},
    {0x30EF, 0x30F4, Ideograph}, {0x30F5, 0x30F6, Close},     {0x30F7, 0x30FA, Ideograph}, {0x30FB, 0x30FB, Letter},
    {0x30FC, 0x30FE, Close},     {0x4E00, 0x9FA5, Ideograph}, {0xAC00, 0xD7A3, Ideograph}, {0xF900, 0xFA6A, Ideograph},
    {0xFEFF, 0xFEFF, Glue},      {0xFF01, 0xFF01, Close},     {0xFF08, 0xFF08, Open},      {0xFF09, 0xFF09, Close},
    {0xFF0C, 0xFF0C, Close},     {0xFF0E, 0xFF0E, Close},     {0xFF1A, 0xFF1B, Close},     {0xFF1F, 0xFF1F, Close},
    {0xFFFD, 0xFFFD, Letter},
});
static_assert(std::ranges::is_sorted(kRanges, {}, &Range::first));

constexpr auto make_latin()
{
    std::array<BreakClass, 0x250> classes{};  // letters
    const auto set = [&](std::u32string_view characters, BreakClass kind) {
        for (const char32_t c : characters) classes[c] = kind;
    };
    for (char32_t c = 0; c <= ' '; ++c) classes[c] = Blank;
    for (char32_t c = 0x7F; c < 0xA0; ++c) classes[c] = Blank;
    set(U"\u0003\t\n\f\r", Feed);
    set(U"0123456789", Digit);
    set(U".,", Point);
    set(U"!%):;?]}\u00A2\u00B0\u00BB", Close);
    set(U"\"", Quote);
    set(U"([{\u00A3\u00A4\u00A5\u00AB", Open);
    set(U"$'", Currency);
    set(U"-\u00AD", Hyphen);
    set(U"\u00A0", Glue);
    return classes;
}

constexpr auto kLatin = make_latin();

}  // namespace

BreakClass break_class(std::string_view text, uint32_t at, char32_t character)
{
    if (character == '(' && at + 1 < text.size() && text[at + 1] == ')') return Close;
    if (character < kLatin.size()) return kLatin[character];
    const auto range = std::ranges::lower_bound(kRanges, character, {}, &Range::last);
    return range != kRanges.end() && range->first <= character ? range->kind : Other;
}

}  // namespace velora::engine
