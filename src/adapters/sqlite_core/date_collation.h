#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

struct sqlite3;

namespace velora::sqlite {

/// The order in which a server reads the parts of a date that are separated by slashes.
enum class DateOrder : uint8_t { DayMonthYear, MonthDayYear, YearMonthDay };

/// A number that orders moments to the microsecond: from ISO text or from the server's order between slashes, with
/// an optional time and a fraction of its seconds. A year of four digits in front is taken for the year in any order;
/// a year of two digits falls between 1950 and 2049. None for what is no date.
std::optional<int64_t> date_key(std::string_view text, DateOrder order);

/// Adds the collation VLDATE, which compares texts as dates in whatever form each of them stands. What is no date comes
/// before all dates, in the order of its bytes.
void add_date_collation(sqlite3* database, DateOrder order);

}  // namespace velora::sqlite
