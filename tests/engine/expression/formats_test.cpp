#include "engine/expression/formatter.h"
#include "engine/expression/pattern.h"
#include "expression_cases.h"
#include "values/text.h"

namespace velora::engine {
namespace {

using testing::check;
using testing::World;

TEST(Printf, FlagsWidthsAndKinds)
{
    check({{"a width", "String.format(\"[%5d]\", 42)", "[   42]"},
           {"to the left", "String.format(\"[%-5d]\", 42)", "[42   ]"},
           {"zeros behind the sign", "String.format(\"%06d\", -42)", "-00042"},
           {"a plus", "String.format(\"%+d %+d\", 5, -5)", "+5 -5"},
           {"a blank for a plus", "String.format(\"% d\", 5)", " 5"},
           {"accountants' negatives", "String.format(\"%(,.2f\", -1234.5)", "(1,234.50)"},
           {"six places by default", "String.format(\"%f\", 1.5)", "1.500000"},
           {"halves go up", "String.format(\"%.1f %.1f\", 0.25, -0.25)", "0.3 -0.3"},
           {"no place", "String.format(\"%.0f\", 2.5)", "3"},
           {"a text that is cut", "String.format(\"[%.2s]\", \"abc\")", "[ab]"},
           {"a text that is cut and padded", "String.format(\"[%4.2s]\", \"abc\")", "[  ab]"},
           {"characters, not bytes", "String.format(\"[%-3s]\", \"é\")", "[é  ]"},
           {"capitals", "String.format(\"%S\", \"abc\")", "ABC"},
           {"a truth value", "String.format(\"%b\", true)", "true"},
           {"null is not true", "String.format(\"%b\", null)", "false"},
           {"something is", "String.format(\"%b\", \"x\")", "true"},
           {"a character", "String.format(\"%c%c\", 'x', 65)", "xA"},
           {"hexadecimal", "String.format(\"%x %X %04x\", 255, 255, 10)", "ff FF 000a"},
           {"hexadecimal of a negative Integer", "String.format(\"%x\", -1)", "ffffffff"},
           {"of a negative Long", "String.format(\"%x\", -1L)", "ffffffffffffffff"},
           {"an exponent", "String.format(\"%.2e\", 12345.678)", "1.23e+04"},
           {"null in every kind", "String.format(\"%s %d %.2f\", null, null, null)", "null null nu"},
           {"a null's width", "String.format(\"[%6s]\", null)", "[  null]"},
           {"parts of a date", "String.format(\"%1$tY-%1$tm-%1$td %1$tH:%1$tM\", $F{day})", "2026-01-02 15:04"},
           {"a line's end and a percent sign", "String.format(\"a%n%%\")", "a\n%"},
           {"no number in a width of zeros", "String.format(\"%08.2f\", 0.0 / 0.0)", "     NaN"},
           {"a formatter is no character", "String.format(\"%c\", new DecimalFormat(\"0\"))", nullptr},
           {"an argument is missing", "String.format(\"%s %s\", \"a\")", nullptr},
           {"a directive that does not end", "String.format(\"100%\")", nullptr},
           {"an unknown directive", "String.format(\"%y\", 1)", nullptr},
           {"more arguments than are shown", "String.format(\"%s\", 1, 2, 3)", "1"}});
}

TEST(Printf, OtherDigitsAndAWidthWithoutMeasure)
{
    World world;
    const auto huge = compile("String.format(\"%999999999d\", 1)", world).evaluate(world);
    ASSERT_NE(huge.get_if<std::string>(), nullptr);
    EXPECT_EQ(huge.get_if<std::string>()->size(), 10000U) << "a width is cut where no page could show it";
    world.surroundings_.locale = "ar_EG";
    EXPECT_EQ(compile("String.format(\"%05d\", 42)", world).text(world), "٠٠٠٤٢") << "zeros of the locale";
    world.surroundings_.locale = "fr_FR";
    EXPECT_EQ(compile("String.format(\"%,.2f\", 1234.5)", world).text(world), "1\u202F234,50");
}

TEST(Message, QuotesFormatsAndMissingArguments)
{
    check({{"two quotes are one", "msg(\"It''s {0}\", 5)", "It's 5"},
           {"quotes hold a brace back", "msg(\"'{0}' is {0}\", 5)", "{0} is 5"},
           {"a lone quote holds back what follows", "msg(\"don't {0}\", 5)", "dont {0}"},
           {"an argument twice", "msg(\"{0}{0}\", \"a\")", "aa"},
           {"out of order", "msg(\"{1} {0}\", \"a\", \"b\")", "b a"},
           {"a missing one stays", "msg(\"{0} {1}\", \"a\")", "a {1}"},
           {"null", "msg(\"{0}\", null)", "null"},
           {"a number's pattern", "msg(\"{0,number,#0.00}\", 2.5)", "2.50"},
           {"a whole number", "msg(\"{0,number,integer}\", 1234.5)", "1,234"},
           {"percent", "msg(\"{0,number,percent}\", 0.25)", "25%"},
           {"a date's pattern", "msg(\"{0,date,yyyy-MM-dd}\", $F{day})", "2026-01-02"},
           {"one of several forms", "msg(\"{0,choice,0#none|1#one|1<many}\", 2)", "many"},
           {"a double shows at most three places", "msg(\"{0}\", 1.23456)", "1.235"},
           {"a decimal", "msg(\"{0}\", $F{amount})", "1.25"},
           {"a brace that does not close", "msg(\"{0\", 1)", nullptr},
           {"no pattern", "msg($F{nothing}, 1)", nullptr},
           {"no argument", "msg(\"plain\")", "plain"}});
}

TEST(NumberPatterns, GroupsSignsAndPercent)
{
    struct Case {
        const char* why;
        const char* pattern;
        Value value;
        const char* expected;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"the last group counts", "#,##,##0", int64_t{1234567}, "1,234,567"},
             {"groups of four", "#,####", int64_t{123456789}, "1,2345,6789"},
             {"leading zeros are grouped", "0,000,000", int64_t{1234}, "0,001,234"},
             {"a percent sign in the middle of text", "#0 %", 0.5, "50 %"},
             {"percent of a decimal is exact", "0.00%", Fixed4::from_units(1235), "12.35%"},
             {"percent of an integer", "0%", int64_t{2}, "200%"},
             {"permille", "0\u2030", 0.5, "500\u2030"},
             {"a quoted percent sign multiplies nothing", "0'%'", int64_t{5}, "5%"},
             {"a negative form of its own", "0.00;0.00-", -1.5, "1.50-"},
             {"an equal negative form gets the sign", "0.00;0.00", -1.5, "-1.50"},
             {"the negative form's digits do not matter", "#,##0.00;(#)", -1234.5, "(1,234.50)"},
             {"zero is positive", "0;(0)", int64_t{0}, "0"},
             {"a sign in front", "+0;-0", int64_t{5}, "+5"},
             {"money before and after", "$ #,##0.00 USD", 1234.5, "$ 1,234.50 USD"},
             {"a quote in the text", "0 o''clock", int64_t{5}, "5 o'clock"},
             {"the code of the currency", "\u00A4\u00A4 0.00", 1.5, "USD 1.50"},
             {"optional places behind fixed ones", "0.0##", 1.25, "1.25"},
             {"rounding over the point", "0.0", 9.96, "10.0"},
             {"no whole digits and none behind", "#", 0.0, "0"},
             {"only optional digits ask for one before the point", "#,###.##", 0.25, "0.25"},
             {"none before the point", ".##", 0.25, ".25"},
             {"a point at the end stays", "0.", int64_t{5}, "5."},
             {"the least double", "0.0", 5e-324, "0.0"},
             {"the greatest double keeps its digits", "0E0", 1.7976931348623157e308, "2E308"},
             {"no number", "0.0", std::numeric_limits<double>::quiet_NaN(), "NaN"},
             {"infinity", "0.0", -std::numeric_limits<double>::infinity(), "-\u221E"}}) {
        EXPECT_EQ(Pattern(c.pattern, {}).format(c.value), c.expected) << c.why << ": " << c.pattern;
    }
}

/// The patterns of digits have a path of their own; everywhere it must write what the general formatter writes.
TEST(NumberPatterns, ThePlainPathAgreesWithTheGeneralOne)
{
    uint64_t state = 7;
    const auto next = [&] { return state = state * 6364136223846793005U + 1442695040888963407U; };
    for (const char* pattern : {"#,##0.00", "0.###", "00000", "#,##0.0%", "#.##", "#.00", ".##", "#,##0;(#,##0)"}) {
        // a hard space in front sends the pattern to the general formatter
        const Pattern plain(pattern, {});
        const Pattern general(std::string("\u00A0") + pattern, {});
        for (int round = 0; round < 300; ++round) {
            const int shift = static_cast<int>(next() >> 60);
            const auto units = static_cast<int64_t>(next() >> 20) >> (shift * 2);
            const Value value = round % 2 == 0 ? Value(static_cast<double>(units) / 1024.0 * (round % 3 == 0 ? -1 : 1))
                                               : Value(Fixed4::from_units(round % 3 == 0 ? -units : units));
            ASSERT_EQ(plain.format(value), replaced(general.format(value), "\u00A0", ""))
                << pattern << " of " << to_text(value);
        }
    }
}

TEST(DatePatterns, YearEndsLeapDaysAndHalvesOfTheDay)
{
    struct Case {
        const char* why;
        const char* pattern;
        DateTime date;
        const char* expected;
    };
    const auto at = [](int year, int month, int day, int hour = 0, int minute = 0) {
        return *DateTime::from_ymd(year, month, day, hour, minute, 0);
    };
    for (const auto& c : std::initializer_list<Case>{
             {"the last day", "dd.MM.yyyy", at(2025, 12, 31, 23, 59), "31.12.2025"},
             {"its week is of the next year", "YYYY-'W'ww", at(2025, 12, 31), "2026-W01"},
             {"the day of a leap year", "D", at(2024, 12, 31), "366"},
             {"a leap day", "EEE d MMM yy", at(2024, 2, 29), "Thu 29 Feb 24"},
             {"a leap day of a century", "d.M.yyyy", at(2000, 2, 29), "29.2.2000"},
             {"midnight", "h:mm a", at(2026, 1, 1), "12:00 AM"},
             {"noon", "h:mm a", at(2026, 1, 1, 12), "12:00 PM"},
             {"midnight in other counts", "K k H", at(2026, 1, 1), "0 24 0"},
             {"two digits of a round year", "yy", at(2000, 1, 1), "00"},
             {"before the epoch of sheets", "dd/MM/yyyy", at(1899, 12, 31), "31/12/1899"},
             {"long before", "yyyy", at(1600, 2, 29), "1600"},
             {"a quoted word", "dd 'de' MMMM", at(2026, 5, 1), "01 de May"},
             {"a quote", "h 'o''clock'", at(2026, 5, 1, 9), "9 o'clock"},
             {"more letters than four", "EEEEE dd MMMMM yyyyy", at(2026, 2, 15), "Sunday 15 February 02026"},
             {"and on their own", "LLLLLL", at(2026, 2, 15), "February"},
             {"few letters", "E, MMM", at(2026, 2, 15), "Sun, Feb"},
             {"an era has one form", "y GGGGG", at(2026, 2, 15), "2026 AD"},
             {"so has half a day", "h aaaaa", at(2026, 2, 15, 13), "1 PM"},
             {"the number of a Sunday", "u", at(2026, 2, 15), "7"},
             {"of a Monday, in two places", "uu EEE", at(2026, 2, 16), "01 Mon"},
             {"a quoted letter is none", "'u'EEEEE'E'", at(2026, 2, 15), "uSundayE"},
             {"a style of the locale", "full,hide", at(2026, 2, 15), "Sunday, February 15, 2026"},
             {"zones", "ZZZZZ zzzzz", at(2026, 2, 15), "+0000 Greenwich Mean Time"},
             {"text of another script", "yyyy年M月d日", at(2026, 5, 1), "2026年5月1日"}}) {
        EXPECT_EQ(Pattern(c.pattern, {}).format(c.date), c.expected) << c.why;
    }
}

TEST(DatePatterns, ReadBackWhatTheyWriteAndNothingElse)
{
    check({{"a year's end", "new SimpleDateFormat(\"dd.MM.yyyy HH:mm\").parse(\"31.12.2025 23:59\")",
            *DateTime::from_ymd(2025, 12, 31, 23, 59, 0)},
           {"words", "new SimpleDateFormat(\"yyyy-MM-dd\").parse(\"soon\")", nullptr},
           {"nothing", "new SimpleDateFormat(\"yyyy-MM-dd\").parse(\"\")", nullptr},
           {"a number of a date", "new SimpleDateFormat(\"yyyy\").format(0L)", "1970"},
           {"a date is no number", "new DecimalFormat(\"0\").format($F{day})", nullptr},
           {"a text is no date", "new SimpleDateFormat(\"yyyy\").format($F{any_text})", nullptr},
           {"marks of its own", "new DecimalFormat(\"#,##0.00;(#,##0.00)\", \"de_DE@marks=.|'\").format(-1234567.5)",
            "(1'234'567.50)"},
           {"through symbols",
            "new DecimalFormat(\"#,##0.000\", DecimalFormatSymbols.getInstance(\"en@marks=,|.\")).format(1234.5)",
            "1.234,500"},
           {"a mark for the decimals alone", "new DecimalFormat(\"#,##0.0\", \"en@marks=,\").format(1234.5)", "1234,5"},
           {"no marks at all", "new DecimalFormat(\"#,##0.0\", \"en@marks=\").format(1234.5)", "12345"},
           {"a number read back", "new DecimalFormat(\"#,##0.00\").parse(\"1,234.50\")", 1234.5},
           {"a pattern that cannot be read", "new DecimalFormat(\"0.0.0\").format(1)", nullptr}});
}

TEST(DateStyle, StandsForLettersOfItsRegion)
{
    EXPECT_EQ(letters_of_date_style("medium,hide", "en_US"), "MMM d, y");
    EXPECT_EQ(letters_of_date_style("medium,hide", "de_AT"), "dd.MM.y");
    EXPECT_EQ(letters_of_date_style("hide,short", "fr_CA"), "HH 'h' mm");
    EXPECT_EQ(letters_of_date_style("d MMM", "en_US"), std::nullopt) << "letters already";
}

}  // namespace
}  // namespace velora::engine
