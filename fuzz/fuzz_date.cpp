#include <string_view>

#include "adapters/sqlite_core/date_collation.h"
#include "adapters/terminal/date_pattern.h"
#include "adapters/terminal/typed_date.h"
#include "values/date_time.h"

/// Any bytes as a date in every reader: what is read is a day of the calendar, and reads back from its own text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace velora;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto date = DateTime::from_iso(text)) {
        if (DateTime::from_iso(date->iso()) != date) __builtin_trap();
        if (!sqlite::date_key(date->iso(), sqlite::DateOrder::MonthDayYear)) __builtin_trap();
    }
    for (const auto order :
         {sqlite::DateOrder::DayMonthYear, sqlite::DateOrder::MonthDayYear, sqlite::DateOrder::YearMonthDay}) {
        static_cast<void>(sqlite::date_key(text, order));
    }
    for (const char* pattern : {"M/d/yy", "dd.MM.y", "y-MM-dd", "d. 'de' M y", ""}) {
        const terminal::TypedDate reader(pattern, {{"march", 3}, {"m\u00e4rz", 3}});
        if (const auto date = reader.read(text, 2026)) {
            if (!DateTime::from_iso(date->iso())) __builtin_trap();
        }
    }
    static_cast<void>(terminal::DatePattern(std::string(text)).write(DateTime(45000, 1)));
    return 0;
}
