#include "adapters/terminal/region.h"

#include "adapters/scratch.h"
#include "adapters/terminal/clocks.h"

using namespace velora;

TEST(Region, ShortDatesAndMarksFollowTheRegion)
{
    struct Case {
        const char* tag;
        const char* date;
        const char* thousands;
        const char* decimal;
    };
    const auto date = *DateTime::from_ymd(2006, 3, 9, 10, 30);
    for (const auto& c : {Case{"en-US", "3/9/2006", ",", "."}, Case{"en-GB", "09/03/2006", ",", "."},
                          Case{"de-DE", "09.03.2006", ".", ","}, Case{"fr-FR", "09/03/2006", "\u202f", ","},
                          Case{"sv-SE", "2006-03-09", "\u00a0", ","}, Case{"ja-JP", "2006/03/09", ",", "."},
                          Case{"de-CH", "09.03.2006", "’", "."}, Case{"th-TH", "9/3/2006", ",", "."},
                          Case{"bg-BG", "9.03.2006\u202fг.", "\u00a0", ","}}) {
        const auto region = make_region(c.tag);
        EXPECT_EQ(region->short_date(date), c.date) << c.tag;
        EXPECT_EQ(region->marks().thousands, c.thousands) << c.tag;
        EXPECT_EQ(region->marks().decimal, c.decimal) << c.tag;
    }
    EXPECT_EQ(make_region("en-US")->short_date(*DateTime::from_ymd(1899, 12, 31)), "12/31/1899");
    EXPECT_EQ(make_region("en-US")->plain_date(date), "3/9/2006 10:30:00 AM");
    EXPECT_EQ(make_region("en-US")->plain_date(*DateTime::from_ymd(2006, 3, 9, 12, 0, 7)), "3/9/2006 12:00:07 PM");
    EXPECT_EQ(make_region("de-DE")->plain_date(date), "09.03.2006 10:30:00");
    EXPECT_EQ(make_region("de-DE")->plain_date(date.date_only()), "09.03.2006");
}

TEST(Region, DatesAreReadBack)
{
    struct Case {
        const char* why;
        const char* tag;
        const char* text;
        const char* expected;  // ISO; empty for no date
    };
    for (const auto& c : {
             Case{"as written", "en-US", "3/9/2006", "2006-03-09"},
             Case{"the order of the region", "en-GB", "3/9/2006", "2006-09-03"},
             Case{"any marks", "en-US", " 3-9.2006 ", "2006-03-09"},
             Case{"a closing mark", "hu-HU", "2006. 03. 09.", "2006-03-09"},
             Case{"ISO in any region", "de-DE", "2006-03-09", "2006-03-09"},
             Case{"ISO with a time", "de-DE", "2006-03-09T10:30:00", "2006-03-09T10:30:00"},
             Case{"four digits in front are the year", "en-US", "2006/3/9", "2006-03-09"},
             Case{"only the other order is a date", "en-US", "13/3/2006", "2006-03-13"},
             Case{"a year of two digits", "en-US", "3/9/29", "2029-03-09"},
             Case{"one of the last century", "en-US", "3/9/30", "1930-03-09"},
             Case{"a time of day", "en-US", "3/9/2006 2:05 PM", "2006-03-09T14:05:00"},
             Case{"midnight", "en-US", "3/9/2006 12:00:00 AM", "2006-03-09"},
             Case{"twenty-four hours", "de-DE", "09.03.2006 23:59:59.999", "2006-03-09T23:59:59"},
             Case{"no such day", "en-US", "2/30/2006", ""},
             Case{"no such month", "en-US", "13/13/2006", ""},
             Case{"thirteen in the afternoon", "en-US", "3/9/2006 13:00 PM", ""},
             Case{"a month by its name", "en-US", "13 March 2006", "2006-03-13"},
             Case{"in front of the day", "en-US", "March 13, 2006", "2006-03-13"},
             Case{"a short name and year", "en-US", "13-Mar-06", "2006-03-13"},
             Case{"a name of the region's language", "de-DE", "13. märz 2006 8:05", "2006-03-13T08:05:00"},
             Case{"an English name anywhere", "fr-FR", "13 Dec. 2006", "2006-12-13"},
             Case{"the year in front", "en-US", "2006 March 13", "2006-03-13"},
             Case{"a month of a year", "en-US", "March 2006", "2006-03-01"},
             Case{"a day of this year", "en-US", "march 13", "2026-03-13"},
             Case{"two numbers are of this year", "en-US", "3/9", "2026-03-09"},
             Case{"in the order of the region", "en-GB", "3/9", "2026-09-03"},
             Case{"or the other where only that is a date", "en-US", "13/3", "2026-03-13"},
             Case{"a month and a year", "en-US", "3/2006", "2006-03-01"},
             Case{"points between two numbers are those of a number", "en-US", "3.13", ""},
             Case{"where dates have no points", "de-DE", "13.3.", "2026-03-13"},
             Case{"words of the region's own dates", "bg-BG", "9.03.2006\u202fг.", "2006-03-09"},
             Case{"two months", "en-US", "March April 2006", ""},
             Case{"too many numbers", "en-US", "1 March 2 2006", ""},
             Case{"no such day of a month", "en-US", "31 April 2006", ""},
             Case{"text behind", "en-US", "3/9/2006x", ""},
             Case{"text", "en-US", "today", ""},
             Case{"a time alone", "en-US", "12:00.00 AM", ""},
             Case{"nothing", "en-US", "  ", ""},
             Case{"a number", "en-US", "38785", ""},
         }) {
        const auto date = make_region(c.tag)->read_date(c.text, 2026);
        EXPECT_EQ(date ? date->iso() : "", c.expected) << c.why;
    }
}

TEST(Region, EveryRegionReadsWhatItWrites)
{
    const auto date = *DateTime::from_ymd(2024, 2, 29);
    for (const char* tag : {"en-US", "en-CA", "fr-CA", "es-MX", "de-AT", "nl-NL", "pl-PL", "pt-BR", "fi-FI", "nb-NO",
                            "ko-KR", "zh-CN", "zh-Hant-TW", "hu-HU", "tr-TR", "ru-RU", "hi-IN"}) {
        const auto region = make_region(tag);
        EXPECT_EQ(region->read_date(region->short_date(date), 2026), date) << tag << " " << region->short_date(date);
    }
}

TEST(Region, UnknownTagsAreRefusedAndLocaleNamesBecomeTags)
{
    for (const char* tag : {"", "xx-YY", "not a tag", "en_US.UTF-8", "-"}) {
        EXPECT_EQ(test::fault_of([&] { make_region(tag); }).where(), tag);
    }
    for (const auto& [name, tag] :
         {std::pair{"C", "en-US"}, std::pair{"C.UTF-8", "en-US"}, std::pair{"POSIX", "en-US"}, std::pair{"", "en-US"},
          std::pair{"de_DE.UTF-8", "de-DE"}, std::pair{"sr_RS@latin", "sr-RS"}, std::pair{"fr", "fr"}}) {
        EXPECT_EQ(region_tag(name), tag) << name;
    }
}

TEST(Clocks, AFixedClockStandsStill)
{
    const auto moment = *DateTime::from_ymd(2024, 2, 29, 13, 45);
    const auto clock = fixed_clock(moment);
    EXPECT_EQ(clock->now(), moment);
    EXPECT_EQ(clock->now(), moment);
}
