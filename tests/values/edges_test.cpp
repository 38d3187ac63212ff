#include <cmath>
#include <limits>

#include "values/fault.h"
#include "values/number_text.h"
#include "values/text.h"
#include "values/utf8.h"
#include "values/value.h"

namespace velora {
namespace {

TEST(DateTimeEdges, EveryDayOfTheCalendarReadsBackFromItsText)
{
    DateTime before;
    for (int year : {1, 4, 100, 400, 1582, 1899, 1900, 1904, 1999, 2000, 2024, 2026, 2100, 9999}) {
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; day <= 31; ++day) {
                const auto date = DateTime::from_ymd(year, month, day);
                const bool is_leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
                const int days = month == 2                                              ? (is_leap ? 29 : 28)
                                 : month == 4 || month == 6 || month == 9 || month == 11 ? 30
                                                                                         : 31;
                ASSERT_EQ(date.has_value(), day <= days) << year << '-' << month << '-' << day;
                if (!date) continue;
                const auto parts = date->parts();
                ASSERT_EQ(std::tuple(parts.year, parts.month, parts.day), std::tuple(year, month, day));
                ASSERT_EQ(DateTime::from_iso(date->iso()), date);
                if (month > 1 || day > 1) {
                    ASSERT_EQ(date->serial_day(), before.serial_day() + 1);
                }
                before = *date;
            }
        }
    }
}

TEST(DateTimeEdges, ASerialNumberRoundsToTheNearestSecondAndIntoTheNextDay)
{
    struct Case {
        const char* why;
        double serial;
        const char* expected;
    };
    for (const auto& c : {Case{"the first day", 0, "1899-12-30"}, Case{"noon", 45000.5, "2023-03-15T12:00:00"},
                          Case{"the last second", 45000 + 86399 / 86400.0, "2023-03-15T23:59:59"},
                          Case{"less than half a second to midnight", 45000.999999, "2023-03-16"},
                          Case{"the day before the first", -1, "1899-12-29"}}) {
        EXPECT_EQ(to_date(c.serial).iso(), c.expected) << c.why;
    }
    for (const double outside : {1e9, -1e9, std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_THROW(to_date(outside), Fault) << outside;
    }
}

TEST(DateTimeEdges, TextThatOnlyLooksLikeADate)
{
    for (const char* text :
         {"0000-01-01", "2026-00-01", "2026-01-00", "2026-13-01", "-026-01-01", "2026--1-01", "2026-01-01T",
          "2026-01-01 ", "2026-01-01T1", "2026-01-01T10:", "2026-01-01T10:60", "2026-01-01T10:00:60",
          "2026-01-01T10:00:00.", "2026-01-01T10:00Z", "2026-01-01T10:00:00.12x", "２０２６-01-01", "2026-01-01\n"}) {
        EXPECT_FALSE(DateTime::from_iso(text)) << text;
    }
    EXPECT_TRUE(DateTime::from_iso("2024-02-29 00:00:00.999999"));
}

TEST(NumberEdges, FormattedNumbersReadBackAndKeepTheirSign)
{
    uint64_t state = 3;
    for (int round = 0; round < 2000; ++round) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        const auto cents = static_cast<int64_t>(state >> 24) >> (round % 30);
        const double value = static_cast<double>(round % 2 == 0 ? cents : -cents) / 100;
        const auto text = format_number(value, 2);
        ASSERT_EQ(read_number(text), std::optional(value)) << text;
        ASSERT_EQ(text.front() == '-', value < 0) << text;
        const auto point = text.find('.');
        ASSERT_EQ(text.size() - point, 3U) << text;
        for (size_t at = 4; at + 1 < point; at += 4) {
            if (point - at > (value < 0 ? 1U : 0U)) {
                ASSERT_EQ(text[point - at], ',') << text;
            }
        }
    }
}

TEST(NumberEdges, WhatStandsAtTheEndsOfTheRange)
{
    EXPECT_EQ(plain_text(std::numeric_limits<double>::denorm_min()).substr(0, 4), "0.00");
    EXPECT_EQ(plain_text(1e22), "10000000000000000000000");
    EXPECT_EQ(format_number(1e15, 2), "1,000,000,000,000,000.00");
    EXPECT_EQ(format_number(0, 0), "0");
    EXPECT_EQ(format_number(0.5, 0), "1");
    EXPECT_EQ(format_number(-0.4, 0), "0");
    EXPECT_THROW(format_number(std::nan(""), 2), Fault);
    EXPECT_EQ(to_int16(32767.4), 32767);
    EXPECT_THROW(to_int16(32767.6), Fault);
    EXPECT_EQ(to_int32(-2147483648.0), std::numeric_limits<int32_t>::min());
    EXPECT_THROW(to_int32(std::nan("")), Fault);
    EXPECT_THROW(to_int32(1e300), Fault);
}

TEST(NumberEdges, TextsThatAreNoNumbers)
{
    for (const char* text : {"+", "-", "e5", ".e5", "1e", "1e+", "0x10", "1 2", "1..2", "inf", "nan", "１２", "1-",
                             "$5", "(5)", "1,e5", ",5", "5%"}) {
        EXPECT_FALSE(read_number(text)) << text;
    }
    struct Case {
        const char* text;
        double expected;
    };
    for (const auto& c : {Case{"+5", 5}, Case{"  7\t", 7}, Case{".5", 0.5}, Case{"5.", 5}, Case{"-0", 0},
                          Case{"1,234,567.5", 1234567.5}, Case{"1E-2", 0.01}}) {
        EXPECT_EQ(read_number(c.text), std::optional(c.expected)) << c.text;
    }
}

TEST(TextEdges, ReplacingAndCuttingEndWhateverIsAsked)
{
    EXPECT_EQ(replaced("abc", "", "x"), "abc") << "nothing is nowhere";
    EXPECT_EQ(replaced("", "a", "b"), "");
    EXPECT_EQ(replaced("aaa", "aa", "b"), "ba") << "from the left, once";
    EXPECT_EQ(replaced("aa", "a", "aa"), "aaaa") << "what was put in is not looked at again";
    EXPECT_EQ(cut_to_characters("", 3), "");
    EXPECT_EQ(cut_to_characters("ab", 0), "");
    EXPECT_EQ(cut_to_characters("a\U0001F600b", 2), "a\U0001F600");
    EXPECT_EQ(cut_to_characters("\x80\x80", 1), "\x80\x80") << "bytes that start no character count for none";
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed("\ta "), "\ta") << "only blanks are trimmed";
    EXPECT_TRUE(same_name("ABC", "abc"));
    EXPECT_FALSE(same_name("Ä", "ä")) << "letters beyond ASCII keep their case";
    EXPECT_EQ(NameHash{}("QuoteID"), NameHash{}("QUOTEID"));
}

TEST(DateTimeEdges, MillisecondsReachFromTheFirstYearToTheLast)
{
    for (const char* day : {"0001-01-01", "1582-10-04", "1899-12-30", "1969-12-31T23:59:59", "9999-12-31T23:59:59"}) {
        const auto date = DateTime::from_iso(day);
        ASSERT_TRUE(date) << day;
        EXPECT_EQ(DateTime::from_unix_milliseconds(date->unix_milliseconds()).iso(), day);
    }
    EXPECT_EQ(DateTime::from_unix_milliseconds(-1).iso(), "1969-12-31T23:59:59")
        << "a part of a second is lost downwards";
    EXPECT_EQ(DateTime::from_unix_milliseconds(INT64_MAX).iso(), "9999-12-31T23:59:59");
    EXPECT_EQ(DateTime::from_unix_milliseconds(INT64_MIN).iso(), "0001-01-01");
}

}  // namespace
}  // namespace velora
