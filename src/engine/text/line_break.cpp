#include "engine/text/line_break.h"

#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <array>

namespace velora::engine {
namespace {

constexpr std::array<BreakClass, 128> make_classes()
{
    std::array<BreakClass, 128> classes{};
    for (auto& entry : classes) entry = BreakClass::Other;
    for (size_t c = '!'; c < 127; ++c) classes[c] = BreakClass::Letter;
    for (size_t c = '0'; c <= '9'; ++c) classes[c] = BreakClass::Digit;
    const auto set = [&](std::string_view characters, BreakClass value) {
        for (const char c : characters) classes[static_cast<size_t>(c)] = value;
    };
    set(" ", BreakClass::Space);
    set(",.:;", BreakClass::Infix);
    set("-", BreakClass::Hyphen);
    set("/", BreakClass::Slash);
    set("([{", BreakClass::Open);
    set("}", BreakClass::Close);
    set(")]", BreakClass::Paren);
    set("!?", BreakClass::Exclaim);
    set("\"'", BreakClass::Quote);
    set("$+\\", BreakClass::Prefix);
    set("%", BreakClass::Postfix);
    set("|", BreakClass::Bar);
    return classes;
}

constexpr auto kClasses = make_classes();

// Row: left, column: right. n no, y yes, u unknown. Columns as in BreakClass, up to Bar.
// clang-format off
constexpr std::array<std::string_view, 13> kPairs = {
    // A D I H S O C P E Q x % B
    "nnnnnnnnnnnnn",  // Letter
    "nnnnnnnnnnnnn",  // Digit
    "nnnnnunnnnuun",  // Infix
    "ynnnnunnnnuun",  // Hyphen
    "ynnnnunnnnuun",  // Slash
    "nnnnnnnnnnnnn",  // Open
    "uunnnunnnnuun",  // Close
    "nnnnnunnnnuun",  // Paren
    "yynnnunnnnuun",  // Exclaim
    "nnnnnnnnnnnnn",  // Quote
    "nnnnnunnnnuun",  // Prefix
    "nnnnnunnnnuun",  // Postfix
    "yynnnunnnnuun",  // Bar
};
// clang-format on

}  // namespace

BreakClass break_class(char32_t character)
{
    if (character < 128) return kClasses[character];
    return character >= 0xC0 && character < 0x250 ? BreakClass::Letter : BreakClass::Other;
}

PairBreak break_between(BreakClass before, BreakClass left, BreakClass right)
{
    if (left >= BreakClass::Space || right >= BreakClass::Space) return PairBreak::Unknown;
    const char entry = kPairs[static_cast<size_t>(left)][static_cast<size_t>(right)];
    if (entry == 'u') return PairBreak::Unknown;
    const bool usual = before == BreakClass::Letter || before == BreakClass::Digit;
    if (!usual && (left == BreakClass::Hyphen || left == BreakClass::Slash)) return PairBreak::Unknown;
    const bool in_number = left != BreakClass::Slash || right != BreakClass::Digit || before == BreakClass::Digit;
    if (!in_number) return PairBreak::Unknown;
    return entry == 'y' ? PairBreak::Yes : PairBreak::No;
}

PairBreak break_after_blanks(BreakClass left, BreakClass right)
{
    switch (right) {
        case BreakClass::Other:
        case BreakClass::Space:
        case BreakClass::Infix:  // what follows the sign decides
            return PairBreak::Unknown;
        case BreakClass::Slash:
        case BreakClass::Close:
        case BreakClass::Paren:
        case BreakClass::Exclaim:
            return PairBreak::No;
        case BreakClass::Open:
            if (left == BreakClass::Quote) return PairBreak::No;
            break;
        default:
            break;
    }
    return left == BreakClass::Open ? PairBreak::No : PairBreak::Yes;
}

struct LineBreaker::Iterator {
    UErrorCode error = U_ZERO_ERROR;
    UText text = UTEXT_INITIALIZER;
    UBreakIterator* handle = nullptr;
    uint32_t end = 0;
};

LineBreaker::LineBreaker() : iterator_(std::make_unique<Iterator>()) {}

LineBreaker::~LineBreaker()
{
    if (iterator_->handle != nullptr) ubrk_close(iterator_->handle);
    utext_close(&iterator_->text);
}

void LineBreaker::start(std::string_view text)
{
    Iterator& it = *iterator_;
    it.error = U_ZERO_ERROR;
    it.end = static_cast<uint32_t>(text.size());
    // Opened late: reading the rules takes a while, and plain Latin text does without.
    if (it.handle == nullptr) it.handle = ubrk_open(UBRK_LINE, "", nullptr, 0, &it.error);
    utext_openUTF8(&it.text, text.data(), static_cast<int64_t>(text.size()), &it.error);
    ubrk_setUText(it.handle, &it.text, &it.error);
    ubrk_first(it.handle);
}

uint32_t LineBreaker::next()
{
    if (U_FAILURE(iterator_->error)) return iterator_->end;
    const int32_t at = ubrk_next(iterator_->handle);
    return at == UBRK_DONE ? iterator_->end : static_cast<uint32_t>(at);
}

}  // namespace velora::engine
