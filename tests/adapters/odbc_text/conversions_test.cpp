#include "adapters/odbc_text/conversions.h"

#include "adapters/odbc_text/single_query.h"
#include "adapters/odbc_text/wide_text.h"

using namespace velora;
using namespace velora::odbc;

TEST(DecimalValue, IsExactWhateverItTakes)
{
    struct Case {
        const char* why;
        const char* digits;
        int decimals;
        Value value;
    };
    const Case cases[] = {
        {"whole numbers stay whole", "-7", 0, int64_t{-7}},
        {"the largest of 64 bits", "9223372036854775807", 0, int64_t{9223372036854775807}},
        {"a whole number beyond them is its text", "92233720368547758070", 0, "92233720368547758070"},
        {"up to four decimals are fixed point", "12.5", 2, Fixed4::from_units(125000)},
        {"without a digit before the point", "-.0001", 4, Fixed4::from_units(-1)},
        {"less than one and negative", "-0.75", 2, Fixed4::from_units(-7500)},
        {"the largest of fixed point", "922337203685477.5807", 4, Fixed4::from_units(INT64_MAX)},
        {"fixed point that does not fit", "922337203685477.5808", 4, "922337203685477.5808"},
        {"more decimals are a double", "0.123456", 6, 0.123456},
        {"fifteen digits are a double still", "1234567.12345678", 8, 1234567.12345678},
        {"sixteen are not, and nothing is lost", "12345678.12345678", 8, "12345678.12345678"},
        {"zeros in front do not count", "0.00000000123456789012345", 23, 1.23456789012345e-9},
        {"what is no number is its text", "NaN?", 2, "NaN?"},
        {"nothing", "", 0, ""},
        {"blanks of a fixed width", "  5 ", 0, int64_t{5}},
    };
    for (const auto& c : cases) EXPECT_EQ(decimal_value(c.digits, c.decimals), c.value) << c.why;
}

TEST(AmountText, HasEveryDigit)
{
    EXPECT_EQ(amount_text(Fixed4::from_units(INT64_MIN)), "-922337203685477.5808");
    EXPECT_EQ(amount_text(Fixed4::from_units(-1)), "-0.0001");
    EXPECT_EQ(amount_text(Fixed4::from_units(0)), "0.0000");
    EXPECT_EQ(amount_text(Fixed4::from_units(123456)), "12.3456");
}

TEST(MomentValue, IsADateANullOrItsText)
{
    EXPECT_EQ(moment_value({2026, 2, 28, 23, 59, 58}), Value(*DateTime::from_iso("2026-02-28T23:59:58")));
    EXPECT_EQ(moment_value({1753, 1, 1}), Value(*DateTime::from_iso("1753-01-01"))) << "before 1900";
    EXPECT_TRUE(moment_value({0, 0, 0}).is_null()) << "a server's way to say that there is none";
    EXPECT_EQ(moment_value({2026, 2, 30, 1, 2, 3}), Value("2026-02-30T01:02:03")) << "no calendar has it";
    EXPECT_EQ(moment_value({-44, 3, 15}).type(), Value::Type::Text);
}

TEST(WideText, GoesThereAndBackWhatEverItHolds)
{
    for (const std::string text : {"", "plain", "Müller & Söhne", "日本", "😀 between", "a\tb\r\n"}) {
        EXPECT_EQ(from_wide(to_wide(text)), text);
    }
    EXPECT_EQ(from_wide(to_wide(std::string("a\0b", 3))), std::string("a\0b", 3));
    EXPECT_EQ(to_wide("😀").size(), 2u) << "two units";
    EXPECT_EQ(from_wide(u"x\xD83D"), "x\xEF\xBF\xBD") << "half of a character";
}

TEST(SingleQuery, IsAllThatAReaderMaySend)
{
    for (const char* query : {"SELECT 1", " select * from [Quote] ; ", "WITH a AS (SELECT 1) SELECT * FROM a",
                              "(SELECT 1) UNION (SELECT 2)", "SELECT 'INTO outer space'"}) {
        EXPECT_EQ(refusal_of(query), "") << query;
    }
    for (const char* other :
         {"", ";", "DELETE FROM Quote", "COMMIT", "SET SESSION TRANSACTION READ WRITE", "SELECT 1; DELETE FROM Quote",
          "SELECT 1;COMMIT", "CALL x()", "EXEC x", "SELECT 1 INTO OUTFILE '/tmp/x'", "SELECT LOAD_FILE('/etc/passwd')",
          "SELECT 1 INTO/**/dumpfile 'x'", "/*!50000 DELETE FROM Quote */", "{CALL x}"}) {
        EXPECT_NE(refusal_of(other), "") << other;
    }
}
