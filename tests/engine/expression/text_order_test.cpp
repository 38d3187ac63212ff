#include "engine/expression/text_order.h"

#include <gmock/gmock.h>

namespace velora::engine {
namespace {

TEST(TextOrder, IsThatOfTheLanguage)
{
    struct Case {
        const char* why;
        const char* locale;
        std::vector<std::string> in_order;
    };
    for (const auto& c : {
             Case{"letters, then accents, then case",
                  "en_US",
                  {"apple", "Apple", "ecole", "École", "uber", "Über", "Zebra"}},
             Case{"digits before letters, and their text counts", "en_US", {"10", "9", "a"}},
             Case{"blanks and hyphens hardly count", "en_US", {"coop", "co-op", "co op a", "cooper"}},
             Case{"in Swedish such letters stand behind Z", "sv_SE", {"o", "z", "\xC3\xA5", "\xC3\xA4", "\xC3\xB6"}},
             Case{"in German beside O", "de_DE", {"o", "\xC3\xB6", "p", "z"}},
             Case{"a long text", "en_US", {std::string(2000, 'a'), std::string(2000, 'a') + "b", "b"}},
             Case{"a language that is not known", "xx", {"a", "B", "c"}},
         }) {
        const TextOrder order(c.locale);
        std::vector<std::string> keys;
        for (const auto& text : c.in_order) keys.push_back(order.key(text));
        EXPECT_TRUE(std::ranges::is_sorted(keys)) << c.why;
        EXPECT_EQ(std::ranges::adjacent_find(keys), keys.end()) << c.why;
    }
}

}  // namespace
}  // namespace velora::engine
