#include "session/value_helpers.h"

#include <algorithm>

#include "session/error_messengers.h"
#include "values/characters.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr int32_t kFirstOfJanuary1900 = 2;  // serial day of "1/1/1900"

Region& region(SessionState& state)
{
    if (state.ports.region == nullptr) throw fault::object_not_set("region");
    return *state.ports.region;
}

/// What may stand inside a name: [\w\.-] of ASCII.
bool is_inside(char c)
{
    return is_letter_or_digit(c) || c == '_' || c == '.' || c == '-';
}

/// Two characters at least, of which the ends may be less than what stands between them.
template <class First, class Inside, class Last>
bool is_run(std::string_view text, First first, Inside inside, Last last)
{
    return text.size() >= 2 && first(text.front()) && last(text.back()) &&
           std::all_of(text.begin() + 1, text.end() - 1, inside);
}

/// ^[a-zA-Z][\w\.-]*[a-zA-Z0-9]@[a-zA-Z0-9][\w\.-]*[a-zA-Z0-9]\.[a-zA-Z][a-zA-Z\.]*[a-zA-Z]$
/// The place of the closing part is open: any point may begin it.
bool is_email_address(std::string_view address)
{
    const auto at = address.find('@');
    if (at == std::string_view::npos) return false;
    if (!is_run(address.substr(0, at), is_letter, is_inside, is_letter_or_digit)) return false;
    const auto domain = address.substr(at + 1);
    const auto in_closing = [](char c) { return is_letter(c) || c == '.'; };
    for (auto point = domain.find('.'); point != std::string_view::npos; point = domain.find('.', point + 1)) {
        if (is_run(domain.substr(0, point), is_letter_or_digit, is_inside, is_letter_or_digit) &&
            is_run(domain.substr(point + 1), is_letter, in_closing, is_letter)) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<DateTime> date_of(SessionState& state, const Value& value)
{
    if (const auto date = date_in(value)) return date;
    const auto* text = value.get_if<std::string>();
    if (text == nullptr) return std::nullopt;
    return region(state).read_date(trimmed(*text), today(state).parts().year);
}

std::string plain_date(SessionState& state, const DateTime& date)
{
    return region(state).plain_date(date);
}

std::string compact_date(SessionState& state, const Value& value)
{
    const auto date = date_of(state, value);
    return date ? date->compact() : to_text(value);
}

std::string Display_Date(SessionState& state, Value& pDate)
{
    return with_failure_path(state, ErrorMessenger, "modGeneral.Display_Date", [&] {
        if (pDate.is_null()) return std::string();
        const auto date = date_of(state, pDate);
        pDate = pDate.type() == Value::Type::Date ? plain_date(state, *date) : trimmed_text(pDate);
        if (!date || date->serial_day() < kFirstOfJanuary1900) return std::string();
        return region(state).short_date(*date);
    });
}

DateTime Return_TBXDate(SessionState& state, std::string& pText)
{
    return with_failure_path(state, ErrorMessenger, "modGeneral.Return_TBXDate", [&] {
        pText = std::string(trimmed(pText));
        return date_of(state, Value(pText)).value_or(today(state));
    });
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
    return with_failure_path(state, ErrorMessenger, "modGeneral.IsValid_Email", [&] {
        if (pEmail.empty()) return false;
        for (size_t from = 0, end = 0; end != std::string_view::npos; from = end + 1) {
            end = pEmail.find(';', from);
            const auto piece = pEmail.substr(from, end == std::string_view::npos ? end : end - from);
            if (is_email_address(trimmed(piece))) continue;
            tell(state, {"Invalid Email Address",
                         "You have entered an invalid Email address.\r\nPlease re-enter the Email address.",
                         Icon::Information});
            return false;
        }
        return true;
    });
}

DateTime today(SessionState& state)
{
    if (state.ports.clock == nullptr) throw fault::object_not_set("clock");
    return state.ports.clock->now().date_only();
}

}  // namespace velora
