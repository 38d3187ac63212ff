#include "engine/text/line_break.h"

#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <array>

#include "values/utf8.h"

namespace velora::engine {
namespace {

struct State {
    char name;
    std::string_view next;  ///< for each class the state after it, a capital where a line may end before it
};

// clang-format off
constexpr auto kStates = std::to_array<State>({
    //    letter digit point close quote open currency hyphen blank ideograph glue mark feed
    {'w', "wwcccOsdbIgwf"},  // word
    {'n', "wnpccOsdbIgwf"},  // number
    {'p', "WxcccOsHbIgmf"},  // point behind a number
    {'c', "WNcccOsHbIgmf"},  // closed
    {'o', "wnccooohbigwf"},  // opened
    {'s', "wnccssshbigwf"},  // currency
    {'d', "WNCCOOsdbIgmf"},  // hyphen behind a word
    {'h', "WxCCQQshbIgmf"},  // hyphen that leads
    {'x', "WxpccOsdbIgmf"},  // number behind such a hyphen
    {'q', "wxccqqqhbigwf"},  // opened behind such a hyphen
    {'b', "WNCCOOOHbIgmf"},  // blank
    {'i', "WNcccOsdbIgmf"},  // ideograph
    {'g', "wnccssshsigwf"},  // glued
    {'m', "WNCCOOOHBIGmF"},  // mark without a letter
    {'f', "WNCCOOOHBIGWF"},  // start of a text or behind a feed
});
// clang-format on

constexpr size_t place_of(char state)
{
    return static_cast<uint8_t>(state);
}

constexpr auto make_index()
{
    std::array<uint8_t, 128> index{};
    for (size_t i = 0; i < kStates.size(); ++i) index[place_of(kStates[i].name)] = static_cast<uint8_t>(i);
    return index;
}

constexpr auto kIndex = make_index();

}  // namespace

bool BreakRules::before(BreakClass kind)
{
    const char next = kStates[kIndex[place_of(state_)]].next[static_cast<size_t>(kind)];
    const bool may_end = next < 'a';
    state_ = static_cast<char>(next | 0x20);
    return may_end;
}

struct LineBreaker::Dictionary {
    UErrorCode error = U_ZERO_ERROR;
    UText text = UTEXT_INITIALIZER;
    UBreakIterator* handle = nullptr;

    ~Dictionary()
    {
        if (handle != nullptr) ubrk_close(handle);
        utext_close(&text);
    }
};

LineBreaker::LineBreaker() = default;
LineBreaker::~LineBreaker() = default;

void LineBreaker::start(std::string_view text)
{
    text_ = text;
    at_ = 0;
    rules_ = {};
    plain_ = true;
    for (uint32_t at = 0; at < text.size() && plain_;) {
        const auto [character, size] = utf8_at(text, at);
        plain_ = break_class(text, at, character) != BreakClass::Other;
        at += size;
    }
    if (!plain_) start_dictionary(text);
}

uint32_t LineBreaker::next()
{
    if (!plain_) return next_of_dictionary();
    for (bool first = true; at_ < text_.size(); first = false) {
        const auto [character, size] = utf8_at(text_, at_);
        BreakRules ahead = rules_;
        if (ahead.before(break_class(text_, at_, character)) && !first) return at_;
        rules_ = ahead;
        at_ += size;
    }
    return at_;
}

void LineBreaker::start_dictionary(std::string_view text)
{
    // Opened late: reading the rules takes a while, and most texts do without.
    if (!dictionary_) dictionary_ = std::make_unique<Dictionary>();
    Dictionary& it = *dictionary_;
    it.error = U_ZERO_ERROR;
    if (it.handle == nullptr) it.handle = ubrk_open(UBRK_LINE, "", nullptr, 0, &it.error);
    utext_openUTF8(&it.text, text.data(), static_cast<int64_t>(text.size()), &it.error);
    ubrk_setUText(it.handle, &it.text, &it.error);
    ubrk_first(it.handle);
}

uint32_t LineBreaker::next_of_dictionary()
{
    const auto end = static_cast<uint32_t>(text_.size());
    if (U_FAILURE(dictionary_->error)) return end;
    const int32_t at = ubrk_next(dictionary_->handle);
    return at == UBRK_DONE ? end : static_cast<uint32_t>(at);
}

}  // namespace velora::engine
