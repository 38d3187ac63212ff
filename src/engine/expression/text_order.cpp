#include "engine/expression/text_order.h"

#include <unicode/tblcoll.h>

#include <algorithm>
#include <array>

#include "engine/expression/utf16.h"

namespace velora::engine {

namespace {

/// Behind the rules of a locale: blanks and hyphens are no letters.
constexpr std::u16string_view kBlanksAndHyphens =
    u"&[last primary ignorable]<<' '<<'\u00A0'<<'\u00AD'<<'-'<<'\u2010'<<'\u2011'<<'\u2012'<<'\u2013'<<'\u2014'";

std::unique_ptr<icu::Collator> make_collator(const std::string& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> usual(
        icu::Collator::createInstance(icu::Locale::createCanonical(locale.c_str()), status));
    const auto* ruled = dynamic_cast<const icu::RuleBasedCollator*>(usual.get());
    if (ruled == nullptr) return usual;
    icu::UnicodeString rules = ruled->getRules();
    rules.append(kBlanksAndHyphens.data(), static_cast<int32_t>(kBlanksAndHyphens.size()));
    auto own = std::make_unique<icu::RuleBasedCollator>(rules, status);
    return U_SUCCESS(status) ? std::move(own) : std::move(usual);
}

}  // namespace

struct TextOrder::State {
    std::unique_ptr<icu::Collator> collator;  ///< null when ICU has no data at all
};

TextOrder::TextOrder(const std::string& locale) : state_(std::make_unique<State>(State{make_collator(locale)})) {}

TextOrder::~TextOrder() = default;

std::string TextOrder::key(std::string_view text) const
{
    if (state_->collator == nullptr) return std::string(text);
    const auto unicode = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
    std::array<uint8_t, 256> usual{};
    const int32_t size = state_->collator->getSortKey(unicode, usual.data(), static_cast<int32_t>(usual.size()));
    std::string key(static_cast<size_t>(size), '\0');
    if (size <= static_cast<int32_t>(usual.size())) {
        std::copy_n(usual.begin(), key.size(), key.begin());
    } else {
        state_->collator->getSortKey(unicode, reinterpret_cast<uint8_t*>(key.data()), size);
    }
    return key;
}

}  // namespace velora::engine
