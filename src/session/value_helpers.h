#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/session_state.h"

namespace velora {

/// The value as a date: one that it is, or that its text is in ISO form or as people of the region write it.
std::optional<DateTime> date_of(SessionState& state, const Value& value);

/// A date as plain text of the region, with its time of day if it has one.
std::string plain_date(SessionState& state, const DateTime& date);

/// A stored date as "YYYYMMDD"; what is no date stands as it is. @throws Fault 94 for a null
std::string compact_date(SessionState& state, const Value& value);

/// A stored date as the region's short date; the empty text for what is no date or lies before 1900.
/// The value is replaced by its trimmed text.
std::string Display_Date(SessionState& state, Value& pDate);

/// The date that a person typed; today for what is no date. The text is trimmed in place.
DateTime Return_TBXDate(SessionState& state, std::string& pText);

/// Ten characters as "(###) ###-####", longer text with its rest behind that, shorter text as it stands.
/// The text is trimmed in place.
std::string Format_PhoneFax(std::string& pText);

/// Tests each address between semicolons; the first bad one is told to the user.
bool IsValid_Email(SessionState& state, std::string_view pEmail);

template <class Array>
bool ArrayHasElements(const std::optional<Array>& array)
{
    return array.has_value();
}

/// The date of the run, without a time.
DateTime today(SessionState& state);

}  // namespace velora
