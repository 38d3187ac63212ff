#include "engine/text/line_break.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace velora::engine {
namespace {

/// What the table says of every place in the text; nothing when one place is unknown to it.
std::optional<std::set<uint32_t>> breaks_by_table(const std::string& text)
{
    std::set<uint32_t> breaks;
    BreakClass before = BreakClass::Space, left = BreakClass::Space;
    bool blanks = false;
    for (uint32_t at = 0; at < text.size(); ++at) {
        const BreakClass right = break_class(static_cast<unsigned char>(text[at]));
        if (right == BreakClass::Space) {
            blanks = true;
            continue;
        }
        if (at > 0) {
            const PairBreak may = blanks ? break_after_blanks(left, right) : break_between(before, left, right);
            if (may == PairBreak::Unknown) return std::nullopt;
            if (may == PairBreak::Yes) breaks.insert(at);
        }
        before = blanks ? BreakClass::Space : left;
        left = right;
        blanks = false;
    }
    breaks.insert(static_cast<uint32_t>(text.size()));
    return breaks;
}

std::set<uint32_t> breaks_by_rules(LineBreaker& breaker, const std::string& text)
{
    std::set<uint32_t> breaks;
    breaker.start(text);
    for (uint32_t at = 0; at < text.size();) breaks.insert(at = breaker.next());
    return breaks;
}

TEST(LineBreak, TheTableForPlainTextAgreesWithTheFullRulesWhereverItAnswers)
{
    std::mt19937 random(7);
    const std::string_view alphabets[] = {"ab1 ", "ab12 -/,.()", "a1 !?%$+|\"'[]{}:;-/,."};
    LineBreaker breaker;
    size_t answered = 0;
    for (const auto alphabet : alphabets) {
        for (int round = 0; round < 20000; ++round) {
            std::string text;
            const size_t size = 1 + random() % 9;
            while (text.size() < size) text += alphabet[random() % alphabet.size()];
            const auto quick = breaks_by_table(text);
            if (!quick) continue;
            ++answered;
            ASSERT_EQ(*quick, breaks_by_rules(breaker, text)) << '"' << text << '"';
        }
    }
    EXPECT_GT(answered, 30000U);
}

TEST(LineBreak, UsualBusinessTextNeedsNoFullRules)
{
    for (const char* text : {"Valve, brass 3/4 (DN 20) - 25 pcs.", "Net 1,250.00 USD", "A-100/B", "due 2026-01-31",
                             "10% discount", "What? Yes!", "O'Neill & Sons"}) {
        EXPECT_TRUE(breaks_by_table(text)) << text;
    }
}

}  // namespace
}  // namespace velora::engine
