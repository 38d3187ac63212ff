#include "session/value_helpers.h"

#include <re2/re2.h>

#include "session/error_messengers.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr int32_t kFirstOfJanuary1900 = 2;  // serial day of "1/1/1900"

std::optional<DateTime> as_date(SessionState& state, const Value& value)
{
    if (const auto* date = value.get_if<DateTime>()) return *date;
    if (const auto* text = value.get_if<std::string>()) {
        if (const auto date = DateTime::from_iso(trimmed(*text))) return date;
        return state.ports.region != nullptr ? state.ports.region->read_date(trimmed(*text)) : std::nullopt;
    }
    return std::nullopt;
}

bool is_email_address(std::string_view address)
{
    static const re2::RE2 pattern(
        R"(^[a-zA-Z][\w\.-]*[a-zA-Z0-9]@[a-zA-Z0-9][\w\.-]*[a-zA-Z0-9]\.[a-zA-Z][a-zA-Z\.]*[a-zA-Z]$)");
    return re2::RE2::PartialMatch(re2::StringPiece(address.data(), address.size()), pattern);
}

}  // namespace

std::string Display_Date(SessionState& state, Value& pDate)
{
    std::string result;
    with_failure_path(state, ErrorMessenger, "modGeneral.Display_Date", [&] {
        if (pDate.is_null()) return;
        const auto date = as_date(state, pDate);
        pDate = trimmed_text(pDate);
        if (!date || date->serial_day() < kFirstOfJanuary1900) return;
        if (state.ports.region == nullptr) throw fault::object_not_set("region");
        result = state.ports.region->short_date(*date);
    });
    return result;
}

DateTime Return_TBXDate(SessionState& state, std::string& pText)
{
    DateTime result;
    with_failure_path(state, ErrorMessenger, "modGeneral.Return_TBXDate", [&] {
        pText = std::string(trimmed(pText));
        result = as_date(state, Value(pText)).value_or(today(state));
    });
    return result;
}

std::string Format_PhoneFax(std::string& pText)
{
    constexpr size_t kDigits = 10;
    pText = std::string(trimmed(pText));
    const std::string number = pText.substr(0, kDigits);
    // The mask is for digits; a number that was typed with its own marks stays as it is.
    if (number.size() < kDigits || number.find_first_not_of("0123456789") != std::string::npos) return pText;
    return "(" + number.substr(0, 3) + ") " + number.substr(3, 3) + "-" + number.substr(6) + pText.substr(kDigits);
}

bool IsValid_Email(SessionState& state, std::string_view pEmail)
{
    bool valid = false;
    with_failure_path(state, ErrorMessenger, "modGeneral.IsValid_Email", [&] {
        if (pEmail.empty()) return;
        for (size_t from = 0, end = 0; end != std::string_view::npos; from = end + 1) {
            end = pEmail.find(';', from);
            valid = is_email_address(trimmed(pEmail.substr(from, end == std::string_view::npos ? end : end - from)));
            if (valid) continue;
            tell(state, {"Invalid Email Address",
                         "You have entered an invalid Email address.\r\nPlease re-enter the Email address.",
                         Icon::Information});
            return;
        }
    });
    return valid;
}

DateTime today(SessionState& state)
{
    if (state.ports.clock == nullptr) throw fault::object_not_set("clock");
    return state.ports.clock->now().date_only();
}

}  // namespace velora
