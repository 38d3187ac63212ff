#include "engine/expression/pattern.h"

#include "engine/expression/decimal.h"

namespace velora::engine {
namespace {

TEST(Pattern, NumbersAsDesignersShowThem)
{
    struct Case {
        const char* why;
        const char* pattern;
        Value value;
        const char* expected;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"groups and places", "#,##0.00", 1234567.5, "1,234,567.50"},
             {"an exact half goes to the even neighbour", "0.00", 10.125, "10.12"},
             {"what only looks like a half does not", "0.00", 2.675, "2.67"},
             {"of four places too", "0.00", Fixed4::from_units(101250), "10.12"},
             {"places that need not be", "#,##0.###", 1.5, "1.5"},
             {"no whole digit is asked for", "#.00", 0.5, ".50"},
             {"zero without places", "#.##", 0.0, "0"},
             {"leading zeros", "00000", int64_t{42}, "00042"},
             {"percent", "0.0%", 0.256, "25.6%"},
             {"negative in its own form", "#,##0.00;(#,##0.00)", -5.5, "(5.50)"},
             {"negative", "#,##0", int64_t{-1234}, "-1,234"},
             {"text around", "'#'0 pcs", int64_t{3}, "#3 pcs"},
             {"currency of the locale", "\xC2\xA4#,##0.00", 2.5, "$2.50"},
             {"exponent", "0.00E0", 12345.0, "1.23E4"},
             {"half a cent", "0.00", 0.005, "0.01"},
             {"just below a half", "#,##0.0", 0.25, "0.2"},
             {"rounded up to the next group", "#,##0", 999.5, "1,000"},
             {"negative and rounded to nothing", "0.0", -0.01, "-0.0"},
             {"a large decimal", "#,##0.00", Fixed4::from_units(9223372036854775807), "922,337,203,685,477.58"},
             {"the least long", "0", std::numeric_limits<int64_t>::min(), "-9223372036854775808"},
             {"a pattern of nonsense shows the number", "0.0.0", 1.5, "1.5"},
             {"huge", "#,##0", 1e20, "100,000,000,000,000,000,000"},
             {"text is left alone", "0.00", "n/a", "n/a"},
             {"null is nothing", "0.00", nullptr, ""}}) {
        EXPECT_EQ(Pattern(c.pattern, {}).format(c.value), c.expected) << c.why;
    }
}

TEST(Pattern, DatesByPatternStyleAndLocale)
{
    const Value day = *DateTime::from_ymd(2026, 7, 4, 16, 5, 9);
    struct Case {
        const char* pattern;
        const char* locale;
        const char* expected;
    };
    for (const auto& c :
         std::initializer_list<Case>{{"dd.MM.yyyy", "en_US", "04.07.2026"},
                                     {"M/d/yy h:mm a", "en_US", "7/4/26 4:05 PM"},
                                     {"EEEE, d. MMMM yyyy", "de_DE", "Samstag, 4. Juli 2026"},
                                     {"yyyy-MM-dd'T'HH:mm:ss", "en_US", "2026-07-04T16:05:09"},
                                     {"EEE d MMM yyyy, h 'o''clock'", "fr_FR", "sam. 4 juil. 2026, 4 o'clock"},
                                     {"EEE d MMM yyyy hh:mm a", "fr_FR", "sam. 4 juil. 2026 04:05 PM"},
                                     {"short,hide", "en_US", "7/4/26"},
                                     {"medium,short", "en_US", "Jul 4, 2026, 4:05 PM"},
                                     {"", "en_US", "7/4/26, 4:05 PM"}}) {
        Surroundings surroundings;
        surroundings.locale = c.locale;
        EXPECT_EQ(Pattern(c.pattern, surroundings).format(day), c.expected) << c.pattern;
    }
    Surroundings berlin;
    berlin.time_zone = "Europe/Berlin";
    EXPECT_EQ(Pattern("HH:mm Z", berlin).format(day), "16:05 +0200") << "wall time stays, the zone is named";
    Surroundings bangkok;
    bangkok.locale = "th_TH";
    bangkok.time_zone = "Asia/Bangkok";
    for (const char* pattern : {"dd.MM.yyyy", "dd.MM.yyyy Z"}) {
        EXPECT_TRUE(Pattern(pattern, bangkok).format(day).starts_with("04.07.2569"))
            << "years of the country's calendar";
    }
}

TEST(Pattern, MarksOfTheLocale)
{
    Surroundings german;
    german.locale = "de_DE";
    EXPECT_EQ(Pattern("#,##0.00", german).format(Value(1234.5)), "1.234,50");
    Surroundings arabic;
    arabic.locale = "ar_EG";
    EXPECT_EQ(Pattern("#,##0.0", arabic).format(Value(1.5)), "١٫٥");
}

TEST(Decimal, KeepsItsPlacesAndEndsInNoneAtTheEdges)
{
    const auto number = [](const char* text) { return *Decimal::from_text(text); };
    EXPECT_EQ(add(number("1.50"), number("1"))->text(), "2.50");
    EXPECT_EQ(multiply(number("-0.5"), number("0.25"))->text(), "-0.125");
    EXPECT_EQ(divide(number("1"), number("8"))->text(), "0.125");
    EXPECT_EQ(divide(number("2"), number("3"))->text(), "0.6666666667");
    EXPECT_EQ(number("-2.5").with_scale(0, Rounding::HalfUp)->text(), "-3");
    EXPECT_EQ(number("-2.5").with_scale(0, Rounding::HalfEven)->text(), "-2");
    EXPECT_EQ(number("-2.1").with_scale(0, Rounding::Floor)->text(), "-3");
    EXPECT_EQ(number("1.5e3").text(), "1500");
    EXPECT_EQ(Decimal::from(0.1)->text(), "0.1");
    EXPECT_DOUBLE_EQ(number("123456789012345678901.5").to_double(), 123456789012345678901.5);
    for (const char* wrong : {"", "-", ".", "1x", "1e", "1e9999", "1234567890123456789012345678901234567890"}) {
        EXPECT_FALSE(Decimal::from_text(wrong)) << wrong;
    }
    const auto large = number("100000000000000000000000000000");
    EXPECT_FALSE(multiply(large, large));
    EXPECT_TRUE(compare(number("1.10"), number("1.1")) == 0);
}

}  // namespace
}  // namespace velora::engine
