#include "values/value.h"

#include "values/fault.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora {
namespace {

int32_t fault_of(const std::function<void()>& work)
{
    try {
        work();
    } catch (const Fault& caught) {
        return caught.number();
    }
    return 0;
}

TEST(ValueConversions, RaiseTheFaultThatUsersKnow)
{
    const Value null;
    EXPECT_EQ(fault_of([&] { to_text(null); }), fault::kNull);
    EXPECT_EQ(fault_of([&] { to_date(null); }), fault::kNull);
    EXPECT_EQ(fault_of([&] { numeric_value(null); }), fault::kNull);
    EXPECT_EQ(fault_of([&] { to_number("ten"); }), fault::kTypeMismatch);
    EXPECT_EQ(fault_of([&] { to_int16(40000); }), fault::kOverflow);
    EXPECT_EQ(fault_of([&] { to_date("yesterday"); }), fault::kTypeMismatch);
}

TEST(ValueConversions, KeepTheProductsManners)
{
    EXPECT_EQ(to_text(true), "True");
    EXPECT_EQ(to_number(true), -1) << "a true truth value is -1";
    EXPECT_EQ(to_int32(2.5), 2) << "half goes to even";
    EXPECT_EQ(to_int32(3.5), 4);
    EXPECT_TRUE(to_bool("-1"));
    EXPECT_FALSE(to_bool(" false "));
    EXPECT_EQ(to_text(0.5F), "0.5");
    EXPECT_EQ(to_text(Fixed4::from(12.3)), "12.3");
    EXPECT_EQ(trimmed_text("  a b "), "a b");
    EXPECT_EQ(numeric_value("20x"), 20);
}

TEST(DateTime, ReadsIsoTextAndRefusesDaysThatAreNone)
{
    const auto date = DateTime::from_iso("2026-02-28 23:59:59.999");
    ASSERT_TRUE(date);
    EXPECT_EQ(date->iso(), "2026-02-28T23:59:59");
    EXPECT_EQ(date->date_only().iso(), "2026-02-28");
    EXPECT_EQ(date->compact(), "20260228");
    for (const char* text : {"2026-02-30", "2026-2-3", "2026-02-28x", "28/02/2026", "2026-02-28T24:00", ""}) {
        EXPECT_FALSE(DateTime::from_iso(text)) << text;
    }
    EXPECT_EQ(DateTime::from_ymd(1899, 12, 31)->serial_day(), 1);
}

TEST(Text, IsCutBetweenCharacters)
{
    EXPECT_EQ(cut_to_characters("abc", 2), "ab");
    EXPECT_EQ(cut_to_characters("äöü", 2), "äö");
    EXPECT_EQ(cut_to_characters("äö", 2), "äö");
    EXPECT_EQ(character_count("a€b"), 3U);
    EXPECT_EQ(replaced("O'Brien's", "'", "''"), "O''Brien''s");
}

}  // namespace
}  // namespace velora
