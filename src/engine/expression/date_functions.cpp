#include <algorithm>
#include <array>

#include "engine/expression/functions.h"
#include "engine/expression/written_date.h"

namespace velora::engine {

namespace {

using enum ValueClass;

Cell now(Call& call)
{
    return cell::date(call.environment.surroundings().now);
}

Cell today(Call& call)
{
    return cell::date(call.environment.surroundings().now.date_only());
}

template <ValueClass to>
Cell from_count(Call& call)
{
    return cell::converted(cell::integer(call.integer(0), Long), to);
}

template <ValueClass to>
Cell from_written(Call& call)
{
    return cell::converted(call.cell(0), to);
}

template <int DateTime::Parts::*part, int offset = 0>
Cell part_of(Call& call)
{
    return cell::integer(call.date(0).parts().*part + offset);
}

/// The same day and time, moved by days, months or years; a day that the month does not have becomes its last.
Cell months_later(Call& call, int64_t months)
{
    const auto parts = call.date(0).parts();
    const int64_t month = parts.year * 12LL + parts.month - 1 + std::clamp<int64_t>(months, -120'000, 120'000);
    if (month < 12 || month >= 120'000) return {};
    for (int day = parts.day; day > 27; --day) {
        const auto date = DateTime::from_ymd(static_cast<int>(month / 12), static_cast<int>(month % 12) + 1, day,
                                             parts.hour, parts.minute, parts.second);
        if (date) return cell::date(*date, call.cell(0).value_class);
    }
    const auto date = DateTime::from_ymd(static_cast<int>(month / 12), static_cast<int>(month % 12) + 1, parts.day,
                                         parts.hour, parts.minute, parts.second);
    return date ? cell::date(*date, call.cell(0).value_class) : Cell{};
}

Cell ordered(Call& call, int wanted)
{
    const auto order = cell::compared(call.cell(0), call.cell(1));
    return order ? cell::boolean(*order == wanted) : Cell{};
}

Cell from_parts(Call& call)
{
    const auto date = DateTime::from_ymd(static_cast<int>(call.integer(0)), static_cast<int>(call.integer(1)),
                                         static_cast<int>(call.integer(2)));
    return date ? cell::date(*date) : Cell{};
}

Cell days_between(Call& call)
{
    return cell::integer(call.date(1).serial_day() - call.date(0).serial_day());
}

Cell days_later(Call& call)
{
    constexpr int64_t kMost = 4'000'000;
    const int64_t days = std::clamp(call.integer(1), -kMost, kMost);
    const DateTime from = call.date(0);
    return cell::date({static_cast<int32_t>(from.serial_day() + days), from.second_of_day()}, call.cell(0).value_class);
}

// clang-format off
constexpr auto kFunctions = std::to_array<Function>({
    {"new", "Date",      "",  Date,      now, true},
    {"new", "Date",      "i", Date,      from_count<Date>},
    {"new", "Date",      "d", Date,      from_written<Date>},
    {"new", "java.sql.Date", "i", SqlDate, from_count<SqlDate>},
    {"new", "Date",      "t", Date,      [](Call& c) { const auto date = written_date(c.text(0)); return date ? cell::date(*date) : Cell{}; }},
    {"new", "Timestamp", "i", Timestamp, from_count<Timestamp>},
    {"new", "Timestamp", "t", Timestamp, from_written<Timestamp>},
    {"new", "Time",      "i", Time,      from_count<Time>},
    {"Date",      "valueOf", "t", SqlDate,   from_written<SqlDate>},
    {"Timestamp", "valueOf", "t", Timestamp, from_written<Timestamp>},
    {"LocalDate", "now",     "",  SqlDate,   [](Call& c) { return cell::converted(now(c), SqlDate); }, true},
    {"LocalDate", "parse",   "t",   SqlDate, from_written<SqlDate>},
    {"LocalDate", "of",      "iii", SqlDate, [](Call& c) { return cell::converted(from_parts(c), SqlDate); }},
    {"LocalDateTime", "parse", "t", Timestamp, from_written<Timestamp>},
    {".", "plusDays",    "di", SqlDate, days_later},
    {".", "minusDays",   "di", SqlDate, [](Call& c) { c.arguments[1] = cell::integer(-c.integer(1), Long); return days_later(c); }},
    {".", "plusMonths",  "di", SqlDate, [](Call& c) { return months_later(c, c.integer(1)); }},
    {".", "minusMonths", "di", SqlDate, [](Call& c) { return months_later(c, -c.integer(1)); }},
    {".", "plusYears",   "di", SqlDate, [](Call& c) { return months_later(c, c.integer(1) * 12); }},
    {".", "minusYears",  "di", SqlDate, [](Call& c) { return months_later(c, c.integer(1) * -12); }},
    {".", "toLocalDate", "d",  SqlDate, from_written<SqlDate>},
    {"LocalDateTime", "now", "",  Timestamp, [](Call& c) { return cell::converted(now(c), Timestamp); }, true},
    {"System", "currentTimeMillis", "", Long, [](Call& c) { return cell::integer(c.environment.surroundings().now.unix_milliseconds(), Long); }, true},

    {".", "getTime",    "d", Long,    [](Call& c) { return cell::integer(c.date(0).unix_milliseconds(), Long); }},
    {".", "getYear",    "d", Integer, part_of<&DateTime::Parts::year, -1900>},
    {".", "getMonth",   "d", Integer, part_of<&DateTime::Parts::month, -1>},
    {".", "getDate",    "d", Integer, part_of<&DateTime::Parts::day>},
    {".", "getDay",     "d", Integer, [](Call& c) { return cell::integer(c.date(0).weekday()); }},
    {".", "getHours",   "d", Integer, part_of<&DateTime::Parts::hour>},
    {".", "getMinutes", "d", Integer, part_of<&DateTime::Parts::minute>},
    {".", "getSeconds", "d", Integer, part_of<&DateTime::Parts::second>},
    {".", "before",     "dd", Boolean, [](Call& c) { return ordered(c, -1); }},
    {".", "after",      "dd", Boolean, [](Call& c) { return ordered(c, 1); }},

    {"", "NOW",   "",    Date,    now, true},
    {"", "TODAY", "",    Date,    today, true},
    {"", "DATE",  "iii", Date,    from_parts},
    {"", "YEAR",  "d",   Integer, part_of<&DateTime::Parts::year>},
    {"", "MONTH", "d",   Integer, part_of<&DateTime::Parts::month>},
    {"", "DAY",   "d",   Integer, part_of<&DateTime::Parts::day>},
    {"", "DAYS",  "dd",  Integer, days_between},
    {"", "ADDDAYS", "di", Object, days_later},
});
// clang-format on

}  // namespace

std::span<const Function> date_functions()
{
    return kFunctions;
}

}  // namespace velora::engine
