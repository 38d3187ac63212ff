#include "expression_cases.h"

namespace velora::engine {
namespace {

using testing::World;

struct Wrong {
    const char* why;
    const char* text;
    Position place;
    const char* reason;
};

void refuse(std::initializer_list<Wrong> cases)
{
    const World world;
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.why) + ": " + c.text);
        try {
            compile(c.text, world, {4, 10}, "printWhenExpression");
            ADD_FAILURE() << "compiled";
        } catch (const DefinitionError& error) {
            EXPECT_EQ(error.position(), c.place) << error.what();
            EXPECT_THAT(error.reason(), ::testing::HasSubstr(c.reason));
        }
    }
}

TEST(Refusals, LiteralsThatMeanNothing)
{
    refuse({{"one more than the greatest Integer", "1 + 2147483648", {4, 14}, "write L"},
            {"one more than the greatest Long", "9223372036854775808L", {4, 10}, "out of range"},
            {"a decimal of forty digits", "1234567890123456789012345678901234567890g", {4, 10}, "out of range"},
            {"a double beyond all", "1e999", {4, 10}, "out of range"},
            {"hexadecimal without digits", "0x", {4, 10}, "out of the range"},
            {"an escape of nobody", "\"a\\qb\"", {4, 12}, "unknown escape"},
            {"three digits", "\"\\u12g4\"", {4, 11}, "four hexadecimal digits"},
            {"a text over two lines", "\"a\nb\"", {4, 10}, "closing quote"},
            {"a backslash at the end", "\"a\\", {4, 12}, "unknown escape"},
            {"a comment without end", "1 /* 2", {4, 12}, "no end"},
            {"a lone dollar", "$x", {4, 10}, "after $ comes"},
            {"a reference of another letter", "$X{a}", {4, 10}, "after $ comes"},
            {"text pasted into a statement", "$P!{a}", {4, 10}, "may not be used"}});
}

TEST(Refusals, OperatorsOnTheWrongKinds)
{
    refuse({{"an assignment", "$F{count} = 1", {4, 20}, "'=' is outside"},
            {"bits of a fraction", "$F{count} & 1.5", {4, 20}, "takes whole numbers"},
            {"bits of a text", "~$F{name}", {4, 10}, "takes whole numbers"},
            {"shifted truth", "true << 1", {4, 15}, "takes whole numbers"},
            {"an increment", "$F{count}++", {4, 21}, "missing before the end"},
            {"a text as a condition", "$F{name} ? 1 : 2", {4, 19}, "takes a Boolean, not a String"},
            {"a number in and", "true && 1", {4, 15}, "takes a Boolean"},
            {"not of a number", "!$F{count}", {4, 10}, "takes a Boolean"},
            {"a sign on a text", "-$F{name}", {4, 10}, "takes a number"},
            {"a date in a difference", "$F{day} - $F{day}", {4, 18}, "takes numbers"},
            {"a date and a number", "$F{day} < 5", {4, 18}, "does not compare"},
            {"a truth value and a text", "$F{flag} == \"true\"", {4, 19}, "does not compare"},
            {"no else part", "true ? 1", {4, 18}, "':' is missing"},
            {"a cast to a class of nobody", "(Widget) 1", {4, 11}, "a cast to 'Widget'"},
            {"a text as an array", "$F{name}[0]", {4, 18}, "does not take"},
            {"a lambda", "x -> x", {4, 10}, "'x' is outside"},
            {"two values", "1, 2", {4, 11}, "not expected"},
            {"a statement's end", "1;", {4, 11}, "';' is outside"}});
}

TEST(Refusals, CallsOutsideTheLanguage)
{
    refuse({{"an argument too many", "$F{name}.trim(1)", {4, 19}, "does not take (Integer)"},
            {"an argument too few", "\"a\".replace(\"b\")", {4, 14}, "does not take (String)"},
            {"a field of an object", "$F{name}.value", {4, 19}, "outside"},
            {"a method without a name", "$F{name}.()", {4, 19}, "name of a method is missing"},
            {"a process", "Runtime.getRuntime().exec(\"x\")", {4, 10}, "outside"},
            {"reflection", "Class.forName(\"x\")", {4, 10}, "outside"},
            {"reflection on a text", "\"\".getClass()", {4, 13}, "outside"},
            {"a class loader", "new java.net.URLClassLoader(null)", {4, 14}, "outside"},
            {"a file read", "new java.io.FileInputStream(\"/etc/passwd\")", {4, 14}, "outside"},
            {"a property of the system", "System.getProperty(\"user.home\")", {4, 10}, "outside"},
            {"an array without an end", "new String[]{\"a\"", {4, 26}, "'}' is missing"},
            {"an octal digit that is none", "09", {4, 10}, "too large for its base"},
            {"an argument list that does not end", "Math.max(1, 2", {4, 23}, "')' is missing"},
            {"an argument that is missing", "Math.max(1,)", {4, 21}, "a value is missing"},
            {"IF with two arguments", "IF(true, 1)", {4, 10}, "three arguments"}});
}

TEST(Refusals, PlacesCountCharactersAndLinesOfTheDefinition)
{
    refuse({{"the second line starts at its own first column", "1 +\n$F{x}", {5, 1}, "no field 'x'"},
            {"carriage returns are no lines of their own", "1 +\r\n  $F{x}", {5, 3}, "no field 'x'"},
            {"an umlaut is one column", "\"äöü\" + $F{x}", {4, 18}, "no field 'x'"},
            {"after a comment of two lines", "/* a\nb */ $F{x}", {5, 6}, "no field 'x'"}});
}

TEST(Hostile, DepthAndLengthAreBoundedInTimeAndMemory)
{
    const World world;
    const auto times = [](const std::string& part, size_t count) {
        std::string out;
        while (out.size() < part.size() * count) out += part;
        return out;
    };
    EXPECT_EQ(compile(times("(", 50) + "1" + times(")", 50), world).evaluate(world), Value(int64_t{1}))
        << "what people nest";
    struct Case {
        const char* why;
        std::string text;
    };
    for (const auto& c :
         std::initializer_list<Case>{{"closed parentheses", times("(", 10000) + "1" + times(")", 10000)},
                                     {"casts", times("(int)", 10000) + "1"},
                                     {"calls in calls", times("Math.abs(", 10000) + "1" + times(")", 10000)},
                                     {"texts in brackets", times("\"a\".split(\"b\")[", 5000)},
                                     {"choices in conditions", times("(true?", 5000) + "1" + times(":2)", 5000)},
                                     {"products", "1" + times("*1", 100000)},
                                     {"more than a definition's length", "\"" + times("x", 2U << 20) + "\""}}) {
        EXPECT_THROW(compile(c.text, world), DefinitionError) << c.why;
    }
    const auto literal = compile("\"" + times("x", 1000000) + "\".length()", world).evaluate(world);
    EXPECT_EQ(literal, Value(int64_t{1000000})) << "a literal of a megabyte is only long";
    const auto sums = compile("$F{count}" + times(" + $F{count} * 2 - 3", 10000), world).evaluate(world);
    EXPECT_EQ(sums, Value(int64_t{7 + 11 * 10000})) << "a chain of any length needs no depth";
    const auto inside =
        compile("2 * Math.abs(1" + times(" - 2", 3000) + ") / (3 - (1" + times("*1", 3000) + "))", world);
    EXPECT_EQ(inside.evaluate(world), Value(int64_t{5999}));
    const auto choices = compile(times("$F{count} == 1 ? 1 : ", 70) + "2", world).evaluate(world);
    EXPECT_EQ(choices, Value(int64_t{2}));
}

TEST(Hostile, PatternsThatRunAwayGiveNull)
{
    const World world;
    for (const char* text :
         {"(\"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\" + \"!\").matches(\"(a+)+\")",
          "(\"a\".repeat(5000) + \"!\").replaceAll(\"(a|aa)+$\", \"\")", "\"a\".matches(\"(\".repeat(100000))"}) {
        const auto result = compile(text, world).evaluate(world);
        EXPECT_TRUE(result.is_null() || result == Value(false) || result.get_if<std::string>() != nullptr) << text;
    }
    EXPECT_TRUE(compile("new DecimalFormat(\"0\".repeat(5000)).format(1)", world).evaluate(world).is_null());
    EXPECT_TRUE(
        compile("new SimpleDateFormat(\"y\".repeat(5000)).format(new Date())", world).evaluate(world).is_null());
}

TEST(Hostile, BytesThatAreNoTextNeverLeaveIt)
{
    World world;
    world.add("broken", ValueClass::Text, std::string("a\xFF\xC3"));
    for (const char* text :
         {"$F{broken}.toUpperCase()", "$F{broken}.length()", "$F{broken}.substring(1)", "$F{broken}.charAt(1)",
          "$F{broken}.substring(0, 2)", "String.format(\"%5.1s\", $F{broken})", "msg($F{broken})",
          "$F{broken}.replaceAll(\"a\", \"b\")", "LEFT($F{broken}, 2)"}) {
        EXPECT_NO_THROW(compile(text, world).text(world)) << text;
    }
    EXPECT_THROW(compile("\xFF\xFE + 1", world), DefinitionError);
}

}  // namespace
}  // namespace velora::engine
