#include "engine/expression/expression.h"

#include "expression_cases.h"
#include "values/value.h"

namespace velora::engine {
namespace {

using testing::check;
using testing::World;

Value money(int64_t ten_thousandths)
{
    return Fixed4::from_units(ten_thousandths);
}

TEST(Arithmetic, FollowsTheClassesOfItsOperands)
{
    check({{"integers divide to an integer", "7 / 2", int64_t{3}},
           {"towards zero", "-7 / 2", int64_t{-3}},
           {"one double is enough", "7 / 2.0", 3.5},
           {"a float keeps single precision", "0.1f + 0.2f", 0.1F + 0.2F},
           {"strength of operators", "2 + 3 * 4 - 6 / 2", int64_t{11}},
           {"from left to right", "100 / 10 / 5", int64_t{2}},
           {"the remainder has the sign of the dividend", "-7 % 3", int64_t{-1}},
           {"an integer wraps at 32 bits", "2147483647 + 1", int64_t{-2147483648}},
           {"a long does not", "2147483647L + 1", int64_t{2147483648}},
           {"the least integer can be written", "-2147483648", int64_t{-2147483648}},
           {"decimals are exact", "new BigDecimal(\"0.10\").add(new BigDecimal(\"0.20\"))", money(3000)},
           {"a decimal stays one beside integers", "$F{amount} * 2", money(25000)},
           {"characters count", "'A' + 1", int64_t{66}},
           {"a negated name", "-$F{count}", int64_t{-7}},
           {"hexadecimal", "0x1F", int64_t{31}},
           {"digits in groups", "1_000_000", int64_t{1000000}},
           {"no space is needed", "$F{count}+-1", int64_t{6}}});
}

TEST(Arithmetic, WhatCannotBeComputedIsNullAndNothingFails)
{
    check({{"null in a sum", "$F{no_number} + 1", nullptr},
           {"null negated", "-$F{no_number}", nullptr},
           {"an integer by zero", "1 / 0", nullptr},
           {"the rest by zero", "1 % 0", nullptr},
           {"a double by zero is no number to print", "1 / 0.0", nullptr},
           {"a decimal by zero", "$F{amount}.divide(BigDecimal.ZERO)", nullptr},
           {"the least long by minus one wraps", "Long.MIN_VALUE / -1", std::numeric_limits<int64_t>::min()},
           {"a method on null", "$F{nothing}.trim()", nullptr},
           {"and what follows it", "$F{nothing}.trim().length() + 1", nullptr},
           {"a position outside the text", "$F{name}.substring(5)", nullptr},
           {"a text that is no number", "Integer.parseInt(\"1x\")", nullptr},
           {"a text where the value is a number", "$F{any_text} * 2", nullptr}});
}

TEST(Text, PlusJoinsAsSoonAsOneSideIsText)
{
    check({{"null shows its name", "\"text\" + null", "textnull"},
           {"a null field too", "$F{nothing} + \"!\"", "null!"},
           {"sums before the text", "1 + 2 + \"a\" + 1 + 2", "3a12"},
           {"a group adds first", "\"a\" + (1 + 2)", "a3"},
           {"doubles have a place", "\"\" + 3.0", "3.0"},
           {"large doubles an exponent", "\"\" + 1e10", "1.0E10"},
           {"small ones too", "\"\" + 0.0001", "1.0E-4"},
           {"a float is as short as it can be", "\"\" + $F{single}", "0.1"},
           {"decimals keep their places", "\"\" + new BigDecimal(\"1.50\")", "1.50"},
           {"truth values", "\"\" + ($F{count} > 5)", "true"},
           {"characters", "\"\" + 'x' + 'y'", "xy"},
           {"dates in their written form", "\"\" + $F{day}", "Fri Jan 02 15:04:05 GMT 2026"},
           {"timestamps in theirs", "\"\" + $F{stamp}", "2026-01-02 15:04:05.0"},
           {"an Object that holds text", "$F{any_text} + 1", "x1"},
           {"an Object that holds a number adds", "$F{any} + 1", int64_t{4}},
           {"escapes", "\"a\\tb\\u00e9\\\"\"", "a\tbé\""},
           {"a pair of escapes is one character", "\"\\ud83d\\ude00\"", "😀"},
           {"and half a pair is none", "\"\\ud83d\\u0041\\ude00z\"", "�A�z"},
           {"lines of source", "\"a\"\n  // said by the way\n+ /* and */ \"b\"", "ab"}});
}

TEST(Text, MethodsCountCharactersAsTheLanguageDoes)
{
    check({{"trim", "\"  a b \".trim()", "a b"},
           {"substring", "\"hello\".substring(1, 3)", "el"},
           {"upper", "\"straße\".toUpperCase()", "STRASSE"},
           {"length", "$F{name}.length()", int64_t{3}},
           {"an emoji counts two", "$F{emoji}.length()", int64_t{4}},
           {"and positions behind it too", "$F{emoji}.substring(3)", "b"},
           {"indexOf", "\"banana\".indexOf(\"an\", 2)", int64_t{3}},
           {"indexOf a character", "\"banana\".indexOf('n')", int64_t{2}},
           {"absent", "\"banana\".lastIndexOf(\"x\")", int64_t{-1}},
           {"replace characters", "\"a-b\".replace('-', '_')", "a_b"},
           {"replace by a pattern", "\"a1b22\".replaceAll(\"[0-9]+\", \"#\")", "a#b#"},
           {"parts", "\"a,b,c\".split(\",\")[1]", "b"},
           {"number of parts", "\"a,b,c,,\".split(\",\").length", int64_t{3}},
           {"charAt joins", "\"\" + $F{name}.charAt(0)", "A"},
           {"equals", "$F{name}.equals(\"Ada\")", true},
           {"equals null", "$F{name}.equals(null)", false},
           {"ignoring case", "\"ÄB\".equalsIgnoreCase(\"äb\")", true},
           {"compareTo", "\"a\".compareTo(\"b\") < 0", true},
           {"chained", "\" x,y \".trim().concat(\"!\").contains(\"y!\")", true},
           {"a builder", "new StringBuilder(\"a\").append(1).append($F{name}).toString()", "a1Ada"},
           {"valueOf", "String.valueOf($F{price})", "12.5"},
           {"a list is searched", "Arrays.asList(\"x\", \"Ada\").contains($F{name})", true},
           {"bytes of an image",
            "new java.io.ByteArrayInputStream(java.util.Base64.getDecoder().decode(\"QUJD\".getBytes()))",
            "data:;base64,QUJD"},
           {"joined", "String.join(\"-\", \"a\", \"b\")", "a-b"}});
}

TEST(Logic, DecidesLikeTheLanguageAndTakesNullForNotTrue)
{
    check({{"and before or", "true || false && false", true},
           {"numbers of different classes", "$F{count} == 7.0", true},
           {"texts by their characters", "$F{name} == \"Ada\"", true},
           {"null is null", "$F{nothing} == null", true},
           {"something is not", "$F{name} != null", true},
           {"null is not less", "$F{no_number} < 5", nullptr},
           {"and so the whole is nothing", "$F{no_number} < 5 ? \"yes\" : \"no\"", {}},
           {"what comes later decides nothing", "$F{no_flag} && false", {}},
           {"null alone does not", "$F{no_flag} && true", nullptr},
           {"not null", "!$F{no_flag}", nullptr},
           {"branches meet in the wider number", "true ? 1 : 2.0", 1.0},
           {"a null branch keeps the other's class", "$F{flag} ? null : 5", nullptr},
           {"chains", "$F{count} < 5 ? \"low\" : $F{count} < 10 ? \"mid\" : \"high\"", "mid"},
           {"Boolean", "Boolean.valueOf($F{count} > 5)", true},
           {"of a text", "new Boolean(\"TRUE\")", true},
           {"its method", "Boolean.TRUE.equals($F{flag}) && !Boolean.FALSE.booleanValue()", true},
           {"instanceof", "$F{any} instanceof Integer && $F{price} instanceof java.lang.Number", true},
           {"dates", "$F{day}.before(new Date()) && $F{day} < new java.util.Date()", true},
           {"an idiom of designers", "IF($F{flag}, \"on\", \"off\")", "on"},
           {"the Integer 1 is not the Long 1", "Integer.valueOf(1).equals(Long.valueOf(1))", false},
           {"modulo for striped rows", "$V{count} % 2 == 0", false}});
}

TEST(Numbers, ConvertRoundAndCompare)
{
    check({{"a cast cuts", "(int) 3.9", int64_t{3}},
           {"a cast binds before the sum", "(int) 3.9 + 0.5", 3.5},
           {"a cast of a group", "(Integer)($F{count})", int64_t{7}},
           {"an impossible cast", "(java.util.Date) $F{name}", nullptr},
           {"boxed", "new Integer(5).intValue() + Integer.valueOf(\"6\")", int64_t{11}},
           {"with its package", "new java.lang.Double(\"2.5\")", 2.5},
           {"round goes up at the half", "Math.round(2.5) + Math.round(-2.5)", int64_t{1}},
           {"abs keeps the class", "Math.abs(-3)", int64_t{3}},
           {"max promotes", "Math.max(1, 2.5)", 2.5},
           {"floor", "Math.floor(-1.5)", -2.0},
           {"pow", "Math.pow(2, 10)", 1024.0},
           {"scale half up", "new BigDecimal(\"2.345\").setScale(2, BigDecimal.ROUND_HALF_UP)", money(23500)},
           {"scale half even", "new BigDecimal(\"2.345\").setScale(2, RoundingMode.HALF_EVEN)", money(23400)},
           {"divide with scale", "BigDecimal.ONE.divide(new BigDecimal(3), 4, RoundingMode.HALF_UP)", money(3333)},
           {"subtract and negate", "$F{amount}.subtract(new BigDecimal(\"2\")).negate()", money(7500)},
           {"compareTo", "$F{amount}.compareTo(BigDecimal.ZERO) > 0", true},
           {"a double made decimal is what it shows", "BigDecimal.valueOf(0.1).multiply(BigDecimal.TEN)", money(10000)},
           {"the value of a number", "$F{amount}.doubleValue()", 1.25},
           {"a whole part", "$F{price}.intValue()", int64_t{12}},
           {"text in a number's field is read", "$F{written} + 1", int64_t{43}}});
}

TEST(Formats, DatesAndNumbersThroughPatterns)
{
    check({{"a date", "new SimpleDateFormat(\"dd MMM yyyy\").format($F{day})", "02 Jan 2026"},
           {"digits alone", "new java.text.SimpleDateFormat(\"dd/MM/yy HH:mm\").format($F{day})", "02/01/26 15:04"},
           {"in a language", "new SimpleDateFormat(\"EEEE\", new Locale(\"de\")).format($F{day})", "Freitag"},
           {"read back", "new SimpleDateFormat(\"yyyy-MM-dd\").parse(\"2026-05-06\").getMonth()", int64_t{4}},
           {"the date of the run", "new SimpleDateFormat(\"yyyy\").format(new Date())", "2026"},
           {"days between", "(new Date().getTime() - $F{day}.getTime()) / 86400000L", int64_t{70}},
           {"a number", "new DecimalFormat(\"#,##0.00\").format(1234567.891)", "1,234,567.89"},
           {"a null date", "new SimpleDateFormat(\"yyyy\").format($F{nothing} == null ? null : new Date())", nullptr},
           {"printf", "String.format(\"%05d|%,.2f|%-4s|%%\", 42, 1234.5, \"ab\")", "00042|1,234.50|ab  |%"},
           {"printf by position", "String.format(\"%2$s %1$s\", \"a\", \"b\")", "b a"},
           {"printf of the wrong kind", "String.format(\"%d\", \"a\")", nullptr},
           {"a message", "msg(\"Page {0} of {1}\", 2, \"x\")", "Page 2 of x"},
           {"a message groups numbers", "msg(\"{0}\", 1234)", "1,234"},
           {"resources", "msg(str(\"greeting\"), $F{name}) + $R{greeting}", "Hello AdaHello {0}"},
           {"an absent resource", "$R{absent}", nullptr},
           {"currency", "NumberFormat.getCurrencyInstance(Locale.US).format(1.5)", "$1.50"}});
}

TEST(Result, ALoneNameIsHandedOnAndTextShowsWhatAFieldWithoutPatternShows)
{
    const World world;
    const auto shown = [&](const char* text) { return compile(text, world).text(world); };
    EXPECT_EQ(compile("$F{price}", world).evaluate(world), Value(12.5));
    EXPECT_EQ(compile("$F{written}", world).evaluate(world), Value(int64_t{42})) << "text of an Integer field";
    EXPECT_EQ(shown("$F{price} * 2"), "25.0");
    EXPECT_EQ(shown("$F{amount}.setScale(6)"), "1.250000");
    EXPECT_EQ(shown("$F{nothing}"), std::nullopt);
    EXPECT_EQ(shown("$F{day}"), "1/2/26, 3:04 PM");
    EXPECT_EQ(compile("$F{count} + 1", world).result_class(), ValueClass::Integer);
    EXPECT_EQ(compile("$F{any} + 1", world).result_class(), ValueClass::Object);
    EXPECT_TRUE(compile("\"a\" + 1", world).is_constant());
    EXPECT_FALSE(compile("new Date()", world).is_constant());
    EXPECT_EQ(compile("$F{name} + $V{count} + $F{name}", world).references().size(), 2U);
    EXPECT_TRUE(Expression{}.evaluate(world).is_null());
}

TEST(Errors, SayWhatIsOutsideTheLanguageAndWhere)
{
    struct Wrong {
        const char* text;
        Position place;
        const char* reason;
    };
    const World world;
    for (const auto& c : std::initializer_list<Wrong>{
             {"$F{absent}", {10, 5}, "there is no field 'absent'"},
             {"1 +\n  $P{absent}", {11, 3}, "there is no parameter 'absent'"},
             {"$P!{x}", {10, 5}, "may not be used"},
             {"", {10, 5}, "a value is missing"},
             {"1 +", {10, 8}, "a value is missing before the end"},
             {"(1", {10, 7}, "')' is missing"},
             {"1 2", {10, 7}, "not expected"},
             {"\"abc", {10, 5}, "closing quote"},
             {"$F{name}.frobnicate()", {10, 14}, "'frobnicate' is outside"},
             {"$F{name}.substring(\"a\")", {10, 14}, "'substring' does not take (String) on a String"},
             {"$F{name}.getClass().forName(\"x\")", {10, 14}, "'getClass' is outside"},
             {"System.exit(1)", {10, 5}, "'System.exit' is outside"},
             {"new java.net.URL(\"x\")", {10, 9}, "'new java.net.URL' is outside"},
             {"java.lang.Runtime.getRuntime()", {10, 5}, "outside"},
             {"name", {10, 5}, "'name' is outside"},
             {"$F{name} - 1", {10, 14}, "'-' takes numbers, not String and Integer"},
             {"$F{name} > 1", {10, 14}, "does not compare String with Integer"},
             {"$F{count} ? 1 : 2", {10, 15}, "takes a Boolean"},
             {"$F{a", {10, 5}, "closing brace"},
             {"\"é\" # 1", {10, 9}, "'#' is outside"},
             {"99999999999", {10, 5}, "write L"}}) {
        SCOPED_TRACE(c.text);
        try {
            compile(c.text, world, {10, 5}, "textField");
            ADD_FAILURE() << "compiled";
        } catch (const DefinitionError& error) {
            EXPECT_EQ(error.position(), c.place) << error.what();
            EXPECT_THAT(error.reason(), ::testing::HasSubstr(c.reason));
            EXPECT_EQ(error.element(), "textField");
        }
    }
}

TEST(Errors, DeepAndLongExpressionsEndInAMessageOrAValue)
{
    const World world;
    const auto repeated = [](const std::string& part, int times) {
        std::string out;
        for (int at = 0; at < times; ++at) out += part;
        return out;
    };
    for (const auto& deep :
         {repeated("(", 100000), repeated("!", 100000) + "true", repeated("-", 100000) + "1",
          repeated("true ? 1 : ", 100000) + "2", repeated("1 + ", 100000) + "1", "\"\"" + repeated(".trim()", 5000)}) {
        EXPECT_THROW(compile(deep, world), DefinitionError) << deep.substr(0, 20);
    }
    for (const char* vast : {"\"x\".repeat(1000000).replaceAll(\"x\", \"y\".repeat(1000000))",
                             "\"x\".repeat(2000000000)", "\"x\".repeat(9000).replace(\"x\", \"y\".repeat(90000))"}) {
        EXPECT_TRUE(compile(vast, world).evaluate(world).is_null()) << vast;
    }
    const auto joined = compile("\"\"" + repeated(" + \"ab\"", 3000), world).evaluate(world);
    EXPECT_EQ(joined.get_if<std::string>()->size(), 6000U) << "joining many texts is no depth";
}

}  // namespace
}  // namespace velora::engine
