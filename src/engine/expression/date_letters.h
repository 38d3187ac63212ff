#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velora::engine {

/// A date pattern in the letters of definitions, as ICU reads it: four letters or more of a name are its full form,
/// where ICU has further forms, and the zone, the era and the half of the day have one form each.
///
/// @param weekday  0 for Sunday; takes the place of the day number `u`, which ICU reads as a year
std::string icu_date_pattern(std::string_view pattern, std::optional<int> weekday = std::nullopt);

/// Whether a date pattern shows the number of the day in the week.
bool shows_day_number(std::string_view pattern);

}  // namespace velora::engine
