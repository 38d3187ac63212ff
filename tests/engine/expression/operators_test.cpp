#include "expression_cases.h"

namespace velora::engine {
namespace {

using testing::check;
using testing::World;

Value fixed(int64_t ten_thousandths)
{
    return Fixed4::from_units(ten_thousandths);
}

TEST(Operators, BindInTheOrderOfTheLanguage)
{
    check({{"a sign before a product", "-2 * 3", int64_t{-6}},
           {"a sign binds after a method", "-$F{amount}.negate()", fixed(12500)},
           {"not before and", "!true && false", false},
           {"not of a group", "!(true && false)", true},
           {"a remainder is as strong as a product", "10 - 7 % 4 * 2", int64_t{4}},
           {"sums before an order", "1 + 2 < 2 + 2", true},
           {"an order before an equality", "1 < 2 == 3 > 2", true},
           {"an equality before and", "1 == 1 && 2 != 2", false},
           {"and before or on the right too", "false && true || true", true},
           {"or before a choice", "false || true ? 1 : 2", int64_t{1}},
           {"a choice takes in the whole sum", "true ? 1 : 2 + 10", int64_t{1}},
           {"a group ends a choice", "(true ? 1 : 2) + 10", int64_t{11}},
           {"instanceof before and", "$F{any} instanceof Integer && true", true},
           {"a sum before instanceof", "1 + 2L instanceof Long", true},
           {"subtraction from the left", "10 - 3 - 2", int64_t{5}},
           {"two signs", "- -5", int64_t{5}},
           {"a sign after an operator", "3 * -2", int64_t{-6}},
           {"a plus before a number changes nothing", "+$F{count} - +1", int64_t{6}},
           {"a cast of a negative literal", "(int) -3.9", int64_t{-3}},
           {"a group in parentheses is no cast", "($F{count}) - 1", int64_t{6}},
           {"a cast of a method's result", "(int) $F{amount}.doubleValue()", int64_t{1}}});
}

TEST(Operators, ChoicesNestAndMixClasses)
{
    check({{"in the condition", "(true ? false : true) ? 1 : 2", int64_t{2}},
           {"in the first branch", "true ? false ? 1 : 2 : 3", int64_t{2}},
           {"three in a row", "false ? 1 : false ? 2 : false ? 3 : 4", int64_t{4}},
           {"a text and a number", "(true ? \"a\" : 1) + 1", "a1"},
           {"and the other one", "(false ? \"a\" : 1) + 1", int64_t{2}},
           {"a null and a number add to null", "(true ? null : 1) + 1", nullptr},
           {"a null and a text join", "(true ? null : \"a\") + \"b\"", "nullb"},
           {"an integer beside a long", "(true ? 2147483647 : 1L) + 1", int64_t{2147483648}},
           {"a decimal keeps its places beside an integer", "\"\" + (true ? new BigDecimal(\"1.50\") : 0)", "1.50"},
           {"a null condition takes no branch", "$F{no_flag} ? 1 : 2", {}},
           {"a branch that is not taken is not computed", "$F{nothing} == null ? \"-\" : $F{nothing}.trim()", "-"},
           {"nor does IF", "IF($F{no_flag}, 1, 2)", {}}});
}

TEST(Operators, NullOnEitherSide)
{
    std::string many;
    for (int term = 0; term < 150; ++term) many += "1 + ";
    const std::string behind_many = "\"joined \" + (" + many + "$F{no_number})";
    check({{"behind many terms, whatever is made of it", behind_many.c_str(), nullptr},
           {"left of a sum", "null + 1", nullptr},
           {"right of a sum", "1 + null", nullptr},
           {"both", "null + null", nullptr},
           {"left of a join", "null + \"a\"", "nulla"},
           {"a difference", "$F{count} - $F{no_number}", nullptr},
           {"a product", "$F{no_number} * 0", nullptr},
           {"a quotient", "$F{no_number} / 2", nullptr},
           {"a remainder", "5 % $F{no_number}", nullptr},
           {"less", "null < 1", nullptr},
           {"at least", "1 >= null", nullptr},
           {"unequal", "1 != null", true},
           {"equal from the left", "null == $F{no_number}", true},
           {"null or true", "$F{no_flag} || true", {}},
           {"null or false", "$F{no_flag} || false", nullptr},
           {"true or null", "true || $F{no_flag}", true},
           {"a cast of null", "(Integer) null", nullptr},
           {"null is of no class", "$F{nothing} instanceof String", false}});
}

TEST(Operators, IntegersWrapAndDecimalsDoNot)
{
    check({{"a product", "65536 * 65536", int64_t{0}},
           {"a product with a long", "65536L * 65536", int64_t{4294967296}},
           {"a difference", "-2147483648 - 1", int64_t{2147483647}},
           {"the greatest long", "Long.MAX_VALUE + 1", std::numeric_limits<int64_t>::min()},
           {"the least negated", "-Integer.MIN_VALUE", int64_t{-2147483648}},
           {"its absolute value", "Math.abs(Integer.MIN_VALUE)", int64_t{-2147483648}},
           {"the remainder of the least by minus one", "Long.MIN_VALUE % -1", int64_t{0}},
           {"the least integer by minus one", "Integer.MIN_VALUE / -1", int64_t{-2147483648}},
           {"a decimal goes on", "(new BigDecimal(Long.MAX_VALUE).add(BigDecimal.ONE)).toPlainString()",
            "9223372036854775808"},
           {"until its range ends", "new BigDecimal(\"1e30\").multiply(new BigDecimal(\"1e30\"))", nullptr},
           {"the end of the range on the negative side",
            "new BigDecimal(\"-9223372036854775808\").multiply(new BigDecimal(\"18446744073709551616\"))", nullptr},
           {"a byte wraps in a cast", "(byte) 200", int64_t{-56}},
           {"a short too", "(short) 40000", int64_t{-25536}},
           {"a double stops at the end of an integer", "(int) 1e12", int64_t{2147483647}},
           {"and of a long", "(long) -1e300", std::numeric_limits<int64_t>::min()},
           {"no number becomes zero", "(int) (0.0 / 0.0)", int64_t{0}}});
}

TEST(Operators, ComparisonsCrossClasses)
{
    check({{"a decimal and an integer", "new BigDecimal(\"7.00\") == $F{count}", true},
           {"a decimal and a double", "$F{amount} < 1.3", true},
           {"a long and an integer", "7L == $F{count}", true},
           {"no number equals nothing", "0.0 / 0.0 == 0.0 / 0.0", false},
           {"infinity is greatest", "1 / 0.0 > Double.MAX_VALUE", true},
           {"minus zero is zero", "-0.0 == 0.0", true},
           {"longs beyond a double's digits", "9007199254740993L > 9007199254740992L", true},
           {"a date and a timestamp", "$F{day} == $F{stamp}", true},
           {"texts in order", "\"Zoe\" < \"adam\"", true},
           {"a quoted letter and a text", "$F{name}.substring(0, 1) == 'A'", true},
           {"and by equals", "\"A\".equals('A')", true},
           {"a letter and a number", "'A' == 65", true},
           {"an Object of another kind is not equal", "$F{any_text} == $F{any}", false},
           {"nor in order", "$F{any_text} < $F{any}", nullptr}});
}

TEST(Literals, AreReadAsTheLanguageWritesThem)
{
    check({{"a double by its letter", "5d / 2", 2.5},
           {"a decimal by its letter", "1.50g + 1", fixed(25000)},
           {"without a digit before the point", ".5 + 1", 1.5},
           {"an exponent", "25e-1", 2.5},
           {"the greatest long", "9223372036854775807L", std::numeric_limits<int64_t>::max()},
           {"the least long", "-9223372036854775808L", std::numeric_limits<int64_t>::min()},
           {"hexadecimal wraps", "0xFFFFFFFF", int64_t{-1}},
           {"every escape", R"("\n\r\t\b\f\"\'\\")", "\n\r\t\b\f\"'\\"},
           {"a zero inside", R"("a\u0000b".length())", int64_t{3}},
           {"half of a pair is replaced", R"("\ud83d")", "\xEF\xBF\xBD"},
           {"a half before another character", R"("\ud83d\u0041")",
            "\xEF\xBF\xBD"
            "A"},
           {"more than one u", R"("\uu0041")", "A"},
           {"quotes of the other kind", "\"'\" + '\"'", "'\""},
           {"a text in single quotes", "'abc' + 1", "abc1"},
           {"an empty text", "\"\".length()", int64_t{0}},
           {"other scripts", "\"日本\" + \"\\u00fc\"", "日本ü"},
           {"a comment at the end", "1 // one", int64_t{1}},
           {"slashes in a text are no comment", "\"http://x\"", "http://x"},
           {"a comment's start in a text", "\"/*\" + \"*/\"", "/**/"}});
}

TEST(Names, MayHoldAnyCharacterButABrace)
{
    World world;
    world.add("Detail Item Number", ValueClass::Text, "A-1");
    world.add("Straße #1", ValueClass::Integer, int64_t{2});
    world.add("a\"b", ValueClass::Integer, int64_t{3});
    EXPECT_EQ(compile("$F{Detail Item Number}.trim()", world).evaluate(world), Value("A-1"));
    EXPECT_EQ(compile("$F{Straße #1} * 2", world).evaluate(world), Value(int64_t{4}));
    EXPECT_EQ(compile("$F{a\"b} + 1", world).evaluate(world), Value(int64_t{4}));
    EXPECT_THROW(compile("$F{}", world), DefinitionError);
    EXPECT_THROW(compile("$F{ count }", world), DefinitionError) << "blanks belong to a name";
}

TEST(Declared, AValueOfAnotherTypeIsTakenAsTheDeclaredClassOrNull)
{
    struct Case {
        const char* why;
        ValueClass declared;
        Value given;
        Value expected;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"a decimal in an Integer field", ValueClass::Integer, Fixed4::from_units(35000), int64_t{3}},
             {"an integer in a Double field", ValueClass::Double, int64_t{3}, 3.0},
             {"an integer in a Decimal field", ValueClass::Decimal, int64_t{3}, fixed(30000)},
             {"a number in a text field", ValueClass::Text, 2.5, "2.5"},
             {"text with blanks in a Long field", ValueClass::Long, " 42 ", int64_t{42}},
             {"a fraction written in an Integer field", ValueClass::Integer, "4.2", nullptr},
             {"words in a Double field", ValueClass::Double, "n/a", nullptr},
             {"too large for a Byte field", ValueClass::Byte, "300", nullptr},
             {"an empty text in a Decimal field", ValueClass::Decimal, "", nullptr},
             {"a written date", ValueClass::Date, "2026-01-02 15:04:05", *DateTime::from_ymd(2026, 1, 2, 15, 4, 5)},
             {"a date field with words", ValueClass::Date, "soon", nullptr},
             {"a day has no time", ValueClass::SqlDate, *DateTime::from_ymd(2026, 1, 2, 15, 4, 5),
              *DateTime::from_ymd(2026, 1, 2)},
             {"a truth value that is written", ValueClass::Boolean, "True", true},
             {"a truth value as a number", ValueClass::Boolean, int64_t{1}, true},
             {"a date is no truth value", ValueClass::Boolean, *DateTime::from_ymd(2026, 1, 2), nullptr},
             {"a date is no number", ValueClass::Integer, *DateTime::from_ymd(2026, 1, 2), nullptr}}) {
        World world;
        world.add("given", c.declared, c.given);
        EXPECT_EQ(compile("$F{given}", world).evaluate(world), c.expected) << c.why;
        EXPECT_EQ(compile("true ? $F{given} : null", world).evaluate(world), c.expected) << c.why << ", not alone";
    }
}

}  // namespace
}  // namespace velora::engine
