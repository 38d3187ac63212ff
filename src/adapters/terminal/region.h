#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/region.h"

namespace velora {

/// The conventions of a region from the Unicode locale data: its short date with the year in full and in the Gregorian
/// calendar, its marks, all with the digits 0 to 9.
///
/// A date is read in the order of the region between any of the marks "/", "-", "." and blank; four digits in front are
/// the year; where only the other order of day and month gives a date, that one is taken. A month may stand by its name
/// in the region's language or in English, full or short. A year of two digits falls between 1930 and 2029; two numbers
/// are a day of this year, or a month where the second can only be a year. A time may follow, with AM or PM.
/// @param tag  a BCP 47 tag such as "en-CA"
/// @throws Fault 13 for a tag that names no known language
std::unique_ptr<Region> make_region(std::string_view tag);

/// The tag of a locale of the system: "de_DE.UTF-8@euro" gives "de-DE"; the empty name, "C" and "POSIX" give "en-US".
std::string region_tag(std::string_view locale_name);

}  // namespace velora
