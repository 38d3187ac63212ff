#include "adapters/sqlite_core/date_collation.h"

#include "adapters/sqlite/connection.h"

using velora::sqlite::date_key;
using velora::sqlite::DateOrder;
using enum velora::sqlite::DateOrder;

namespace {

struct Pair {
    const char* why;
    DateOrder order;
    const char* left;
    const char* right;
};

}  // namespace

TEST(DateCollation, OneMomentIsEqualInEveryForm)
{
    for (const auto& c : {
             Pair{"month first", MonthDayYear, "2006-03-13", "3/13/2006"},
             Pair{"leading zeros", MonthDayYear, "03/05/2006", "3/5/2006"},
             Pair{"day first", DayMonthYear, "2006-03-13", "13/3/2006"},
             Pair{"year first by the order", YearMonthDay, "2006-03-13", "2006/3/13"},
             Pair{"a year in front decides in any order", DayMonthYear, "2006-03-13", "2006/3/13"},
             Pair{"two digits of a year", MonthDayYear, "2006-03-13", "3/13/06"},
             Pair{"two digits from fifty on are of the last century", MonthDayYear, "1950-03-13", "3/13/50"},
             Pair{"midnight is the day itself", MonthDayYear, "2006-03-13", "3/13/2006 00:00:00"},
             Pair{"T or a blank before the time", MonthDayYear, "2006-03-13T10:30:00", "2006-03-13 10:30"},
             Pair{"fractions of any length", MonthDayYear, "2006-03-13 10:30:00.5", "3/13/2006 10:30:00.500000"},
             Pair{"the half of the day", MonthDayYear, "2006-03-13 13:45:10", "3/13/2006 1:45:10 PM"},
             Pair{"an hour past midnight", MonthDayYear, "2006-03-13 00:05", "3/13/2006 12:05 am"},
             Pair{"noon", MonthDayYear, "2006-03-13 12:00", "3/13/2006 12:00:00PM"},
             Pair{"blanks around", MonthDayYear, " 2006-03-13 ", "3/13/2006"},
             Pair{"a leap day", DayMonthYear, "2024-02-29", "29/2/2024"},
         }) {
        ASSERT_TRUE(date_key(c.left, c.order)) << c.why;
        EXPECT_EQ(date_key(c.left, c.order), date_key(c.right, c.order)) << c.why;
    }
}

TEST(DateCollation, EarlierMomentsComeFirst)
{
    for (const auto& c : {
             Pair{"no order of the characters", MonthDayYear, "9/1/2006", "10/1/2006"},
             Pair{"the year counts before the month", MonthDayYear, "12/31/2005", "1/1/2006"},
             Pair{"the last moment of a day is still that day", MonthDayYear, "3/13/2006 23:59:59.999", "2006-03-14"},
             Pair{"milliseconds count", MonthDayYear, "2006-03-13 23:59:59.998", "3/13/2006 23:59:59.999"},
             Pair{"before 1900", MonthDayYear, "1899-12-30", "1/1/1900"},
             Pair{"the same text is another day in another order", DayMonthYear, "1/2/2006", "2006-02-02"},
         }) {
        EXPECT_LT(date_key(c.left, c.order), date_key(c.right, c.order)) << c.why;
    }
}

TEST(DateCollation, WhatIsNoDateHasNoKey)
{
    for (const char* text :
         {"", " ", "2006", "2006-13-01", "2006-02-29", "13/13/2006", "2/30/2006", "0/1/2006", "2006-03-13 24:00",
          "2006-03-13 10:60", "2006-03-13x", "2006-03-0270", "3/13/2006 10", "3-13-2006", "2006-03-13 10:30:00.",
          "3/13/2006 13:00 PM", "3/13/2006 0:30 AM", "3/13/2006 1:30 P", "'2006-03-13'"}) {
        EXPECT_FALSE(date_key(text, MonthDayYear)) << text;
    }
}

TEST(DateCollation, QueriesCompareDatesWhateverTheLiteral)
{
    struct Case {
        const char* why;
        const char* condition;
        size_t rows;
    };
    const auto connection = velora::open_sqlite_in_memory();
    for (const char* date : {"'2006-03-12'", "'2006-03-13'", "'2006-03-13T15:00:00'", "'3/14/2006'", "NULL", "''"}) {
        connection->Execute(std::string("INSERT INTO Quote (QuoteID, quDateEnter) VALUES (1, ") + date + ")");
    }
    for (const auto& c : {
             Case{"a range with an end of day and two blanks",
                  "[Quote].[quDateEnter] BETWEEN '3/13/2006' AND  '3/13/2006 23:59:59.999'", 2},
             Case{"a range of plain days", "Quote.quDateEnter BETWEEN '2006-03-12' AND  '2006-03-13'", 2},
             Case{"equality across forms", "quDateEnter = '2006-03-14'", 1},
             Case{"an empty literal finds only the empty text", "quDateEnter = ''", 1},
             Case{"the empty text comes before all dates", "quDateEnter < '1/1/1900'", 1},
         }) {
        const auto rows =
            connection->Open(velora::Command::statement(std::string("SELECT * FROM [Quote]WHERE ") + c.condition));
        EXPECT_EQ(rows->RecordCount(), c.rows) << c.why;
    }
}
