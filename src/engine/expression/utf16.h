#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "values/date_time.h"

/// Text positions of the language count UTF-16 units, while texts are held in UTF-8. A text of ASCII alone, the usual
/// case, needs no counting. Also the language's millisecond count of dates.
namespace velora::engine {

struct Cell;

bool is_ascii(std::string_view utf8);
/// Byte offset of a UTF-16 position, moved back to the start of its character. None when it is past the end.
std::optional<size_t> utf8_offset(std::string_view utf8, int64_t utf16_position);
std::optional<char16_t> utf16_unit(std::string_view utf8, int64_t utf16_position);

/// Milliseconds since 1970 of a date cell, its wall time taken as UTC.
int64_t milliseconds(const Cell& date);
DateTime from_milliseconds(int64_t milliseconds);
int weekday(const DateTime& date);  ///< 0 is Sunday

}  // namespace velora::engine
