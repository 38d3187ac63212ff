#include "values/number_text.h"

#include "values/fault.h"
#include "values/fixed4.h"

namespace velora {
namespace {

TEST(PlainText, ShowsFifteenSignificantDigitsWithoutExponent)
{
    struct Case {
        const char* why;
        double value;
        const char* expected;
    };
    for (const auto& c : {Case{"a whole number has no point", 100, "100"},
                          Case{"binary noise lies behind the fifteenth digit", 0.1 + 0.2, "0.3"},
                          Case{"a single shows what it really holds", 123456.78F, "123456.78125"},
                          Case{"small numbers are written out", 0.00001234, "0.00001234"},
                          Case{"large numbers are written out", 1.5e17, "150000000000000000"},
                          Case{"no minus before nothing", -0.0, "0"}, Case{"a sign stays", -12.5, "-12.5"}}) {
        EXPECT_EQ(plain_text(c.value), c.expected) << c.why;
    }
    EXPECT_THROW(plain_text(1.0 / 0.0), Fault);
}

TEST(FormatNumber, RoundsThePlainTextHalfAwayFromZero)
{
    struct Case {
        const char* why;
        double value;
        int decimals;
        const char* expected;
    };
    for (const auto& c :
         {Case{"a tie goes up, though the binary value lies below it", 1.005, 2, "1.01"},
          Case{"a tie goes away from zero", -10.125, 2, "-10.13"},
          Case{"the carry runs through nines", 999.999, 2, "1,000.00"},
          Case{"below the last place there is nothing left", 0.004, 2, "0.00"},
          Case{"nor a sign of it", -0.004, 2, "0.00"}, Case{"half of the first place", 0.5, 0, "1"},
          Case{"groups of three", 1234567.891, 1, "1,234,567.9"}, Case{"zeros are filled in", 7, 5, "7.00000"}}) {
        EXPECT_EQ(format_number(c.value, c.decimals), c.expected) << c.why;
    }
    EXPECT_EQ(format_number(1234.5, 2, {".", ","}), "1.234,50") << "the marks are the caller's";
}

TEST(RoundAsText, GivesWhatReadingTheFormattedTextBackGives)
{
    for (const double value : {1.005, -10.125, 999.995, 0.0449999, 123456789.125, 2.675, 1e-9, -0.5, 35.855}) {
        for (int decimals = 0; decimals <= 5; ++decimals) {
            EXPECT_EQ(round_as_text(value, decimals), *read_number(format_number(value, decimals)))
                << value << " to " << decimals;
        }
    }
}

TEST(ReadNumber, TakesWholeTextsOnlyWhileLeadingNumberTakesTheFront)
{
    EXPECT_EQ(read_number(" -1,234.50 "), -1234.5);
    EXPECT_EQ(read_number("1e3"), 1000);
    for (const char* text : {"", "  ", "abc", "12a", "1,", "--1", "."}) EXPECT_FALSE(read_number(text)) << text;

    EXPECT_EQ(leading_number("30 pieces"), 30);
    EXPECT_EQ(leading_number(" 1 0"), 10) << "blanks are passed over";
    EXPECT_EQ(leading_number("A12"), 0);
    EXPECT_EQ(leading_number("1.5.2"), 1.5);
}

TEST(FixedPoint, RoundsHalfToEvenAtFourPlaces)
{
    EXPECT_EQ(Fixed4::from(0.00005).units(), 0);
    EXPECT_EQ(Fixed4::from(3.08625).units(), 30862);
    EXPECT_EQ(Fixed4::from(3.08635).units(), 30864);
    EXPECT_EQ(Fixed4::from(-2.71825).units(), -27182);
    EXPECT_THROW(Fixed4::from(1e15), Fault);
    EXPECT_THROW(Fixed4::from_units(INT64_MAX) + Fixed4::from(1), Fault);
}

}  // namespace
}  // namespace velora
