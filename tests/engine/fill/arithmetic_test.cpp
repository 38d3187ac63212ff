#include "engine/fill/rows/arithmetic.h"

#include <gtest/gtest.h>

#include <limits>

namespace velora::engine {
namespace {

const Value kDay = *DateTime::from_ymd(2026, 3, 4);
const Value kNextDay = *DateTime::from_ymd(2026, 3, 5);

Value fixed(int64_t units)
{
    return Fixed4::from_units(units);
}

TEST(Arithmetic, ACellIsReadAsTheClassOfItsField)
{
    struct Case {
        const char* why;
        Value cell;
        ValueClass value_class;
        Value expected;
        bool fits;  ///< it can be taken as it is
    };
    for (const auto& c : std::initializer_list<Case>{
             {"whole", Value(7), ValueClass::Integer, Value(7), true},
             {"a text that is a number", "12", ValueClass::Integer, Value(12), false},
             {"cut, not rounded", Value(7.9), ValueClass::Integer, Value(7), false},
             {"a text that is none", "seven", ValueClass::Integer, Value(), false},
             {"a truth value is one", Value(true), ValueClass::Integer, Value(1), false},
             {"a date is no number", kDay, ValueClass::Integer, Value(), false},
             {"too large for a whole number", Value(1e19), ValueClass::Long, Value(), false},
             {"the largest that fits", Value(9.1e18), ValueClass::Long, Value(int64_t{9100000000000000000}), false},
             {"single precision", Value(0.1), ValueClass::Float, Value(0.1F), false},
             {"a single stays one", Value(0.5F), ValueClass::Float, Value(0.5F), true},
             {"double from single", Value(0.5F), ValueClass::Double, Value(0.5), false},
             {"four places", Value(1.23456), ValueClass::Decimal, Value(1.23456), true},
             {"a whole amount", Value(3), ValueClass::Decimal, fixed(30000), false},
             {"an amount of text", "1.5", ValueClass::Decimal, fixed(15000), false},
             {"an amount stays one", fixed(15001), ValueClass::Decimal, fixed(15001), true},
             {"beyond four places", "1e15", ValueClass::Decimal, Value(1e15), false},
             {"a yes", "True", ValueClass::Boolean, Value(true), false},
             {"no yes and no no", "maybe", ValueClass::Boolean, Value(), false},
             {"a day", "2026-03-04", ValueClass::Date, kDay, false},
             {"no day", "2026-03-44", ValueClass::Date, Value(), false},
             {"a number is no day", Value(46000), ValueClass::Date, Value(), false},
             {"any cell as text", Value(2.5), ValueClass::Text, "2.5", false},
             {"whatever it is", Value(2.5), ValueClass::Object, Value(2.5), true},
             {"nothing", Value(), ValueClass::Integer, Value(), true}}) {
        EXPECT_EQ(coerced(c.cell, c.value_class), c.expected) << c.why;
        EXPECT_EQ(fits_class(c.cell, c.value_class), c.fits) << c.why;
    }
}

TEST(Arithmetic, SumsStayInTheirClass)
{
    constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
    struct Case {
        const char* why;
        Value left, right;
        ValueClass value_class;
        Value expected;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"whole", Value(7), Value(-12), ValueClass::Integer, Value(-5)},
             {"amounts, exactly", fixed(1), fixed(2), ValueClass::Decimal, fixed(3)},
             {"a whole number and an amount", Value(1), fixed(5000), ValueClass::Decimal, fixed(15000)},
             {"texts count as their numbers", "1.5", Value(2), ValueClass::Double, Value(3.5)},
             {"too large together", Value(kMost), Value(kMost), ValueClass::Long, Value()},
             {"amounts too large together", fixed(kMost), fixed(kMost), ValueClass::Decimal,
              Value(2 * fixed(kMost).get_if<Fixed4>()->to_double())}}) {
        EXPECT_EQ(sum_of(c.left, c.right, c.value_class), c.expected) << c.why;
    }
    EXPECT_EQ(quotient_of(Value(7), Value(2), ValueClass::Integer), Value(3));
    EXPECT_EQ(quotient_of(Value(7), Value(2), ValueClass::Double), Value(3.5));
    EXPECT_EQ(quotient_of(fixed(10000), Value(3), ValueClass::Decimal), fixed(3333));
    EXPECT_EQ(quotient_of(Value(7), Value(0), ValueClass::Double), Value());
    EXPECT_EQ(as_class(std::numeric_limits<double>::quiet_NaN(), ValueClass::Double), Value());
}

TEST(Arithmetic, ValuesAreComparedByWhatTheyAre)
{
    struct Case {
        const char* why;
        Value less, more;
    };
    for (const auto& c : std::initializer_list<Case>{{"numbers of different classes", Value(2), Value(2.5)},
                                                     {"texts by their characters", "10", "9"},
                                                     {"a text beside a number by its number", "9", Value(10)},
                                                     {"dates", kDay, kNextDay},
                                                     {"amounts", fixed(14999), Value(1.5)},
                                                     {"no before yes", Value(false), Value(true)}}) {
        EXPECT_LT(compare_values(c.less, c.more), 0) << c.why;
        EXPECT_GT(compare_values(c.more, c.less), 0) << c.why;
        EXPECT_EQ(compare_values(c.less, c.less), 0) << c.why;
        EXPECT_EQ(compare_values(c.more, c.more), 0) << c.why;
    }
}

}  // namespace
}  // namespace velora::engine
