#include "reports/like_pattern.h"

#include "values/fault.h"

namespace velora {
namespace {

TEST(LikePattern, TakesWildcardsSetsAndEitherCase)
{
    struct Case {
        const char* pattern;
        const char* text;
        bool expected;
    };
    for (const auto& c : {
             Case{"", "", true},
             Case{"", "a", false},
             Case{"*", "", true},
             Case{"a*c", "abbc", true},
             Case{"a*c", "abbd", false},
             Case{"*ab*b", "aab", false},
             Case{"*ab*b", "aabb", true},
             Case{"a?c", "a漢c", true},
             Case{"a?c", "ac", false},
             Case{"port #", "Port 9", true},
             Case{"port #", "Port x", false},
             Case{"#", "٣", false},
             Case{"straße", "STRASSE", true},
             Case{"büro", "BÜRO", true},
             Case{"имя", "ИМЯ", true},
             Case{"[a-fx]1", "C1", true},
             Case{"[a-fx]1", "x1", true},
             Case{"[a-fx]1", "g1", false},
             Case{"[!a-f]", "g", true},
             Case{"[!a-f]", "B", false},
             Case{"[!]", "!", true},
             Case{"[-a]", "-", true},
             Case{"[a-]", "-", true},
             Case{"[*?#[]", "[", true},
             Case{"[*]", "x", false},
             Case{"a[]b", "ab", true},
             Case{"]", "]", true},
         }) {
        EXPECT_EQ(LikePattern(c.pattern).matches(c.text), c.expected) << c.pattern << " " << c.text;
    }
}

TEST(LikePattern, RefusesASetThatIsNoneAndIsQuickWithManyStars)
{
    for (const char* pattern : {"[a", "x[", "[z-a]"}) {
        try {
            const LikePattern refused(pattern);
            ADD_FAILURE() << pattern;
        } catch (const Fault& caught) {
            EXPECT_EQ(caught.number(), fault::kInvalidPattern) << pattern;
        }
    }
    std::string stars;
    for (int n = 0; n < 200; ++n) stars += "*a";
    EXPECT_FALSE(LikePattern(stars + "*b").matches(std::string(5000, 'a'))) << "and ends";
}

}  // namespace
}  // namespace velora
