#include "expression_cases.h"

namespace velora::engine {
namespace {

using testing::check;

Value fixed(int64_t ten_thousandths)
{
    return Fixed4::from_units(ten_thousandths);
}

TEST(TextMethods, NullInAnyPlaceGivesNullAndNotAFailure)
{
    check({{"receiver", "$F{nothing}.toUpperCase()", nullptr},
           {"a text argument", "\"a\".concat($F{nothing})", nullptr},
           {"a position", "\"abc\".substring($F{no_number})", nullptr},
           {"the second position", "\"abc\".substring(0, $F{no_number})", nullptr},
           {"what is sought", "\"abc\".indexOf($F{nothing})", nullptr},
           {"what replaces", "\"abc\".replace(\"b\", $F{nothing})", nullptr},
           {"equals is the exception", "\"a\".equals($F{nothing})", false},
           {"and ignoring case", "\"a\".equalsIgnoreCase($F{nothing})", false},
           {"so that its opposite holds", "!\"a\".equalsIgnoreCase(null)", true},
           {"valueOf shows null", "String.valueOf($F{nothing})", "null"},
           {"Objects.equals of two nulls", "Objects.equals($F{nothing}, null)", true},
           {"a default for null", "Objects.toString($F{nothing}, \"-\")", "-"},
           {"null in a list", "Arrays.asList(\"a\", null).contains($F{nothing})", true},
           {"joined", "String.join(\",\", \"a\", $F{nothing})", "a,null"},
           {"sheets leave it out", "CONCATENATE(\"a\", $F{nothing}, 1)", "a1"},
           {"blank", "ISBLANK($F{nothing}) && ISBLANK(\" \") && !ISBLANK(\"a\")", true}});
}

TEST(TextMethods, PositionsAtAndBeyondTheEnds)
{
    check({{"all of it", "\"abc\".substring(0)", "abc"},
           {"the end is empty", "\"abc\".substring(3)", ""},
           {"one beyond", "\"abc\".substring(4)", nullptr},
           {"negative", "\"abc\".substring(-1)", nullptr},
           {"a negative end", "\"abc\".substring(0, -1)", nullptr},
           {"an end before its start", "\"abc\".substring(2, 1)", nullptr},
           {"an end beyond", "\"abc\".substring(1, 4)", nullptr},
           {"of nothing", "\"\".substring(0, 0)", ""},
           {"a position of a long", "\"abc\".substring(4294967297L)", nullptr},
           {"charAt beyond", "\"abc\".charAt(3)", nullptr},
           {"charAt negative", "\"abc\".charAt(-1)", nullptr},
           {"half an emoji starts at its character", "$F{emoji}.substring(0, 2)", "a"},
           {"indexOf counts behind an emoji", "$F{emoji}.indexOf(\"b\")", int64_t{3}},
           {"indexOf from before the start", "\"abc\".indexOf(\"a\", -5)", int64_t{0}},
           {"indexOf from beyond the end", "\"abc\".indexOf(\"c\", 9)", int64_t{-1}},
           {"of an empty text", "\"abc\".indexOf(\"\")", int64_t{0}},
           {"last of an empty text", "\"abc\".lastIndexOf(\"\")", int64_t{3}},
           {"LEFT beyond", "LEFT(\"abc\", 9)", "abc"},
           {"RIGHT of none", "RIGHT(\"abc\", 0) + RIGHT(\"abc\", -3)", ""},
           {"RIGHT", "RIGHT(\"abc\", 2)", "bc"},
           {"MID counts from one", "MID(\"abcd\", 2, 2)", "bc"},
           {"MID beyond", "MID(\"abc\", 9, 2)", ""},
           {"MID with the greatest length", "MID(\"abc\", 2, Long.MAX_VALUE)", "bc"},
           {"MID from the least position", "MID(\"abc\", Long.MIN_VALUE, 2)", "ab"}});
}

TEST(TextMethods, EmptyAndForeignTexts)
{
    check({{"trim takes control characters", "\"\\t\\n a \\r\".trim()", "a"},
           {"but no hard space", "\"\\u00a0a\".trim().length()", int64_t{2}},
           {"empty is not blank", "\"\".isEmpty() && !\" \".isEmpty() && \" \".isBlank()", true},
           {"capitals of another script", "\"жук\".toUpperCase()", "ЖУК"},
           {"and back", "\"ÀÉ\".toLowerCase()", "àé"},
           {"order without case", "\"É\".compareToIgnoreCase(\"é\")", int64_t{0}},
           {"an empty prefix", "\"a\".startsWith(\"\") && \"\".endsWith(\"\")", true},
           {"a longer prefix", "\"a\".startsWith(\"ab\")", false},
           {"replacing nothing leaves the text", "\"abc\".replace(\"\", \"-\")", "abc"},
           {"a replacement that holds what is sought", "\"aa\".replace(\"a\", \"aa\")", "aaaa"},
           {"the first only", "\"a1b2\".replaceFirst(\"[0-9]\", \"#\")", "a#b2"},
           {"groups of a pattern", "\"ab\".replaceAll(\"(a)(b)\", \"$2$1\")", "ba"},
           {"a pattern that cannot be read", "\"a\".replaceAll(\"[\", \"b\")", nullptr},
           {"the whole must match", "\"ab1\".matches(\"[a-z]+\")", false},
           {"a pattern of another script", "\"жук\".matches(\"\\\\p{L}+\")", true},
           {"the part beyond the last", "\"a,b\".split(\",\")[2]", nullptr},
           {"the part before the first", "\"a,b\".split(\",\")[-1]", nullptr},
           {"an empty part in front", "\",a\".split(\",\")[0]", ""},
           {"nothing to part", "\"\".split(\",\").length", int64_t{1}},
           {"each character", "\"abc\".split(\"\")[1]", "b"},
           {"repeated never", "\"ab\".repeat(0) + \"ab\".repeat(-1)", ""},
           {"capitals of words", "PROPER(\"new YORK\")", "New York"}});
}

TEST(NumberMethods, ScaleAndRoundAsTheModesSay)
{
    struct Mode {
        const char* name;
        const char* of_half;           // of 2.5
        const char* of_negative_half;  // of -2.5
        const char* of_odd_half;       // of 3.5
        const char* of_little;         // of 1.1
    };
    const testing::World world;
    const auto rounded = [&](const char* number, const char* mode) {
        const auto text = std::string("new BigDecimal(\"") + number + "\").setScale(0, RoundingMode." + mode + ")";
        return compile(text, world).text(world);
    };
    for (const auto& mode :
         {Mode{"UP", "3", "-3", "4", "2"}, Mode{"DOWN", "2", "-2", "3", "1"}, Mode{"CEILING", "3", "-2", "4", "2"},
          Mode{"FLOOR", "2", "-3", "3", "1"}, Mode{"HALF_UP", "3", "-3", "4", "1"},
          Mode{"HALF_DOWN", "2", "-2", "3", "1"}, Mode{"HALF_EVEN", "2", "-2", "4", "1"}}) {
        EXPECT_EQ(rounded("2.5", mode.name), mode.of_half) << mode.name;
        EXPECT_EQ(rounded("-2.5", mode.name), mode.of_negative_half) << mode.name;
        EXPECT_EQ(rounded("3.5", mode.name), mode.of_odd_half) << mode.name;
        EXPECT_EQ(rounded("1.1", mode.name), mode.of_little) << mode.name;
    }
}

TEST(NumberMethods, KeepOrLimitThePlacesOfADecimal)
{
    check({{"a product adds the places", "new BigDecimal(\"1.50\").multiply(new BigDecimal(\"2.0\")).toPlainString()",
            "3.000"},
           {"a sum takes the more", "new BigDecimal(\"1.5\").add(new BigDecimal(\"0.25\")).scale()", int64_t{2}},
           {"an exact quotient", "new BigDecimal(\"1.00\").divide(new BigDecimal(\"8\")).toPlainString()", "0.125"},
           {"a quotient in the receiver's places",
            "new BigDecimal(\"10.00\").divide(new BigDecimal(3), BigDecimal.ROUND_HALF_UP)", fixed(33300)},
           {"a quotient rounded up to zero places",
            "new BigDecimal(\"7\").divide(new BigDecimal(2), 0, RoundingMode.UP)", fixed(40000)},
           {"a negative quotient to the floor",
            "new BigDecimal(\"-7\").divide(new BigDecimal(2), 0, RoundingMode.FLOOR)", fixed(-40000)},
           {"a scale without a mode must be exact", "new BigDecimal(\"1.25\").setScale(1)", nullptr},
           {"and is", "new BigDecimal(\"1.20\").setScale(1).toPlainString()", "1.2"},
           {"more places", "new BigDecimal(\"1.2\").setScale(4).toPlainString()", "1.2000"},
           {"a negative scale", "new BigDecimal(\"15\").setScale(-1, RoundingMode.UP)", nullptr},
           {"too many places", "new BigDecimal(\"1\").setScale(31)", nullptr},
           {"a mode that does not exist", "new BigDecimal(\"1.5\").setScale(0, 9)", nullptr},
           {"zeros taken off", "new BigDecimal(\"1.500\").stripTrailingZeros().toPlainString()", "1.5"},
           {"of zero", "new BigDecimal(\"0.00\").stripTrailingZeros().toPlainString()", "0"},
           {"a whole number over places", "BigDecimal.valueOf(12345, 2)", fixed(1234500)},
           {"over more places than there are", "BigDecimal.valueOf(5, 40)", nullptr},
           {"a power", "new BigDecimal(\"1.1\").pow(2).toPlainString()", "1.21"},
           {"a power of nothing", "new BigDecimal(\"5\").pow(0)", fixed(10000)},
           {"a negative power", "new BigDecimal(\"5\").pow(-1)", nullptr},
           {"the rest", "new BigDecimal(\"-7.5\").remainder(new BigDecimal(2))", fixed(-15000)},
           {"an exponent in the text", "new BigDecimal(\"1.5E+3\").toPlainString()", "1500"},
           {"places do not matter in an order", "new BigDecimal(\"1.0\").compareTo(new BigDecimal(\"1.00\"))",
            int64_t{0}},
           {"but in equals they do", "new BigDecimal(\"1.0\").equals(new BigDecimal(\"1.00\"))", false},
           {"the greater of two", "$F{amount}.max(new BigDecimal(\"2\"))", fixed(20000)},
           {"the sign", "new BigDecimal(\"-0.5\").signum() + BigDecimal.ZERO.signum()", int64_t{-1}},
           {"the sign of no number", "(0.0 / 0.0).signum()", int64_t{0}},
           {"an integer as a decimal's argument", "$F{amount}.add($F{count})", fixed(82500)},
           {"a null argument", "$F{amount}.add(null)", nullptr}});
}

TEST(NumberMethods, MathAtTheEdges)
{
    check({{"ceil of a negative", "Math.ceil(-1.5)", -1.0},
           {"rint to the even", "Math.rint(2.5) + Math.rint(3.5)", 6.0},
           {"round just below a half", "Math.round(0.49999999999999994)", int64_t{0}},
           {"round of a negative half", "Math.round(-0.5)", int64_t{0}},
           {"round of what is too large", "Math.round(1e300)", std::numeric_limits<int64_t>::max()},
           {"round of a float is an Integer", "Math.round(1e30f)", int64_t{2147483647}},
           {"a root of a negative is no number to print", "Math.sqrt(-1)", nullptr},
           {"but can be asked", "Double.isNaN(Math.sqrt(-1))", true},
           {"a logarithm of zero", "Math.log(0)", nullptr},
           {"floorMod has the divisor's sign", "Math.floorMod(-7, 3)", int64_t{2}},
           {"floorDiv", "Math.floorDiv(-7, 2)", int64_t{-4}},
           {"floorMod by zero", "Math.floorMod(1, 0)", nullptr},
           {"the smaller of a decimal and an integer", "Math.min($F{amount}, 1)", fixed(10000)},
           {"with a null", "Math.max($F{no_number}, 1)", nullptr},
           {"with a decimal", "Math.abs($F{amount}.negate())", fixed(12500)},
           {"ROUND by decimal digits", "ROUND(1.005, 2)", 1.01},
           {"the value of a large long", "Long.valueOf(4294967297L).intValue()", int64_t{1}},
           {"of a text with a plus", "Integer.parseInt(\"+5\")", int64_t{5}},
           {"of a text that is too large", "Integer.parseInt(\"2147483648\")", nullptr},
           {"of an empty text", "Double.parseDouble(\"\")", nullptr},
           {"a double's text with an exponent", "Double.valueOf(\"1e3\")", 1000.0},
           {"a digit", "Character.isDigit('7') && !Character.isDigit('x')", true}});
}

TEST(DateMethods, PartsOrderAndDistance)
{
    check({{"years count from 1900", "$F{day}.getYear()", int64_t{126}},
           {"months from zero", "$F{day}.getMonth()", int64_t{0}},
           {"Friday is five", "$F{day}.getDay()", int64_t{5}},
           {"a date is not before itself", "$F{day}.before($F{day}) || $F{day}.after($F{day})", false},
           {"before nothing", "$F{day}.before(null)", nullptr},
           {"the first moment", "new Date(0L).getTime()", int64_t{0}},
           {"a day before it", "new Date(-1000L)", *DateTime::from_ymd(1969, 12, 31, 23, 59, 59)},
           {"a leap day", "DATE(2024, 2, 29)", *DateTime::from_ymd(2024, 2, 29)},
           {"where there is none", "DATE(2023, 2, 29)", nullptr},
           {"a century without one", "DATE(1900, 2, 29)", nullptr},
           {"days over a leap day", "DAYS(DATE(2024, 2, 28), DATE(2024, 3, 1))", int64_t{2}},
           {"days over a year's end", "ADDDAYS(DATE(2025, 12, 31), 1)", *DateTime::from_ymd(2026, 1, 1)},
           {"days back", "ADDDAYS(DATE(2024, 3, 1), -1)", *DateTime::from_ymd(2024, 2, 29)},
           {"written", "Timestamp.valueOf(\"2026-01-02 15:04:05\").equals($F{stamp})", true},
           {"a written date that is none", "Date.valueOf(\"2026-13-01\")", nullptr},
           {"the part of a day", "YEAR($F{day}) * 10000 + MONTH($F{day}) * 100 + DAY($F{day})", int64_t{20260102}},
           {"today has no time", "TODAY()", *DateTime::from_ymd(2026, 3, 14)}});
}

TEST(DateMethods, CountsBeyondTheCalendarEndInNoFault)
{
    const testing::World world;
    for (const char* text :
         {"\"\" + new Date(9223372036854775807L)", "\"\" + new Date(Long.MIN_VALUE)",
          "new Date(Long.MAX_VALUE).getYear()", "new SimpleDateFormat(\"yy-MM EEE\").format(new Date(Long.MIN_VALUE))",
          "new SimpleDateFormat(\"Y w\").format(new Date(Long.MAX_VALUE))", "\"\" + ADDDAYS($F{day}, Long.MAX_VALUE)",
          "ADDDAYS(ADDDAYS($F{day}, Long.MIN_VALUE), Long.MIN_VALUE).getTime()",
          "DAYS(new Date(Long.MIN_VALUE), new Date(Long.MAX_VALUE))", "DATE(2147483647, 12, 31)",
          "new SimpleDateFormat(\"yyyy\").parse(\"999999999999\")"}) {
        EXPECT_NO_THROW(compile(text, world).text(world)) << text;
    }
}

}  // namespace
}  // namespace velora::engine
