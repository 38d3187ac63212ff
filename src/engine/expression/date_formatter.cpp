#include <unicode/calendar.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/numsys.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "engine/expression/date_letters.h"
#include "engine/expression/formatter.h"

namespace velora::engine {

namespace {

using Style = icu::DateFormat::EStyle;

std::optional<Style> style_of(std::string_view name)
{
    struct Named {
        std::string_view name;
        Style style;
    };
    static constexpr auto kStyles = std::to_array<Named>({{"short", Style::kShort},
                                                          {"medium", Style::kMedium},
                                                          {"long", Style::kLong},
                                                          {"full", Style::kFull},
                                                          {"default", Style::kDefault},
                                                          {"hide", Style::kNone}});
    const auto found = std::ranges::find(kStyles, name, &Named::name);
    if (found == kStyles.end()) return std::nullopt;
    return found->style;
}

/// The format of "short", "medium,hide" and the like; null when the pattern is none of them.
std::unique_ptr<icu::DateFormat> styled_format(std::string_view pattern, const icu::Locale& locale)
{
    const auto comma = pattern.find(',');
    const auto date = style_of(pattern.substr(0, comma));
    const auto time = comma == std::string_view::npos ? date : style_of(pattern.substr(comma + 1));
    if (!date || !time || (*date == Style::kNone && *time == Style::kNone)) return nullptr;
    return std::unique_ptr<icu::DateFormat>(icu::DateFormat::createDateTimeInstance(*date, *time, locale));
}

/// Letters of a pattern outside quotes.
template <class Visit>
bool each_letter(std::string_view pattern, Visit visit)
{
    bool quoted = false;
    for (size_t at = 0; at < pattern.size();) {
        const char c = pattern[at];
        size_t end = at + 1;
        const bool letter = !quoted && ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'));
        if (letter) end = std::min(pattern.find_first_not_of(c, at), pattern.size());
        if (c == '\'') {
            quoted = !quoted;
        } else if (!visit(letter, pattern.substr(at, end - at))) {
            return false;
        }
        at = end;
    }
    return true;
}

bool shows_zone(std::string_view pattern)
{
    return !each_letter(pattern, [](bool letter, std::string_view run) {
        return !letter || std::string_view("zZXxVvO").find(run.front()) == std::string_view::npos;
    });
}

/// Names of the locale that patterns show: months from January, days from Sunday.
struct CalendarNames {
    std::array<std::string, 12> months, short_months;
    std::array<std::string, 7> days, short_days;
    std::array<std::string, 2> halves;
};

template <size_t count>
void copy_names(const icu::UnicodeString* from, std::array<std::string, count>& to)
{
    for (size_t at = 0; at < count; ++at) from[at].toUTF8String(to[at]);
}

CalendarNames names_of(const icu::DateFormatSymbols& symbols)
{
    using Icu = icu::DateFormatSymbols;
    CalendarNames names;
    int32_t count = 0;
    copy_names(symbols.getMonths(count, Icu::FORMAT, Icu::WIDE), names.months);
    copy_names(symbols.getMonths(count, Icu::FORMAT, Icu::ABBREVIATED), names.short_months);
    copy_names(symbols.getWeekdays(count, Icu::FORMAT, Icu::WIDE) + 1, names.days);
    copy_names(symbols.getWeekdays(count, Icu::FORMAT, Icu::ABBREVIATED) + 1, names.short_days);
    copy_names(symbols.getAmPmStrings(count), names.halves);
    return names;
}

/// Patterns of the everyday fields, such as "d MMM yyyy HH:mm", are written without the general formatter.
bool is_plain(std::string_view pattern)
{
    return pattern.find('\'') == std::string_view::npos && each_letter(pattern, [](bool letter, std::string_view run) {
               if (!letter) return true;
               switch (run.front()) {
                   case 'y':
                       return run.size() == 4 || run.size() == 2;
                   case 'M':
                   case 'E':
                       return run.size() <= 4;
                   case 'a':
                       return run.size() == 1;
                   default:
                       return run.size() <= 2 && std::string_view("dHhms").find(run.front()) != std::string_view::npos;
               }
           });
}

int number_of(const DateTime::Parts& parts, char letter, size_t length)
{
    switch (letter) {
        case 'y':
            return length == 2 ? parts.year % 100 : parts.year;
        case 'M':
            return parts.month;
        case 'd':
            return parts.day;
        case 'H':
            return parts.hour;
        case 'h':
            return parts.hour % 12 == 0 ? 12 : parts.hour % 12;
        case 'm':
            return parts.minute;
        default:
            return parts.second;
    }
}

void append_number(int value, size_t least_digits, std::string& out)
{
    std::array<char, 12> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    const auto length = static_cast<size_t>(end - digits.data());
    if (length < least_digits) out.append(least_digits - length, '0');
    out.append(digits.data(), end);
}

void append_field(const DateTime& date, const DateTime::Parts& parts, std::string_view run, const CalendarNames& names,
                  std::string& out)
{
    const char letter = run.front();
    if (letter == 'M' && run.size() > 2) {
        const auto month = static_cast<size_t>(parts.month - 1);
        out += run.size() == 3 ? names.short_months[month] : names.months[month];
    } else if (letter == 'E') {
        const auto day = static_cast<size_t>(date.weekday());
        out += run.size() < 4 ? names.short_days[day] : names.days[day];
    } else if (letter == 'a') {
        out += names.halves[parts.hour < 12 ? 0 : 1];
    } else {
        append_number(number_of(parts, letter, run.size()), run.size(), out);
    }
}

class DateFormatter : public Formatter {
public:
    DateFormatter(std::unique_ptr<icu::DateFormat> format, std::unique_ptr<icu::Calendar> calendar, std::string pattern,
                  std::optional<CalendarNames> names)
        : format_(std::move(format)),
          calendar_(std::move(calendar)),
          pattern_(std::move(pattern)),
          names_(std::move(names)),
          shows_day_number_(shows_day_number(pattern_))
    {
    }

    [[nodiscard]] std::optional<std::string> format(const Cell& cell) const override
    {
        DateTime date;
        if (const auto* held = cell.get_if<DateTime>()) {
            date = *held;
        } else if (cell.value_class == ValueClass::Long) {
            date = DateTime::from_unix_milliseconds(*cell.get_if<int64_t>());
        } else {
            return std::nullopt;
        }
        return names_ ? plain(date) : general(date);
    }

    [[nodiscard]] Cell parse(std::string_view text) const override
    {
        UErrorCode status = U_ZERO_ERROR;
        const UDate moment =
            format_->parse(icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())}), status);
        if (U_FAILURE(status)) return {};
        return cell::date(DateTime::from_unix_milliseconds(static_cast<int64_t>(moment)));
    }

private:
    [[nodiscard]] std::string plain(const DateTime& date) const
    {
        const auto parts = date.parts();
        std::string out;
        each_letter(pattern_, [&](bool letter, std::string_view run) {
            if (letter) {
                append_field(date, parts, run, *names_, out);
            } else {
                out += run;
            }
            return true;
        });
        return out;
    }

    [[nodiscard]] std::string general(const DateTime& date) const
    {
        icu::UnicodeString text;
        if (shows_day_number_) {
            const std::unique_ptr<icu::DateFormat> of_day(format_->clone());
            static_cast<icu::SimpleDateFormat&>(*of_day).applyPattern(
                icu::UnicodeString::fromUTF8(icu_date_pattern(pattern_, date.weekday())));
            of_day->format(moment_of(date), text);
        } else {
            format_->format(moment_of(date), text);
        }
        text.findAndReplace(icu::UnicodeString(char16_t{0x202F}), icu::UnicodeString(u' '));
        std::string out;
        text.toUTF8String(out);
        return out;
    }

    /// The wall time is taken as UTC, unless the pattern shows the zone.
    [[nodiscard]] UDate moment_of(const DateTime& date) const
    {
        if (calendar_ == nullptr) return static_cast<UDate>(date.unix_milliseconds());
        const std::unique_ptr<icu::Calendar> calendar(calendar_->clone());
        const auto parts = date.parts();
        calendar->clear();
        calendar->set(parts.year, parts.month - 1, parts.day, parts.hour, parts.minute, parts.second);
        UErrorCode status = U_ZERO_ERROR;
        return calendar->getTime(status);
    }

    std::unique_ptr<icu::DateFormat> format_;
    std::unique_ptr<icu::Calendar> calendar_;  ///< only for patterns that show the zone
    std::string pattern_;                      ///< empty for a style of the locale
    std::optional<CalendarNames> names_;       ///< only for plain patterns
    bool shows_day_number_;
};

}  // namespace

std::optional<std::string> letters_of_date_style(std::string_view pattern, const std::string& locale)
{
    const auto format = styled_format(pattern, icu::Locale::createCanonical(locale.c_str()));
    const auto* letters = dynamic_cast<const icu::SimpleDateFormat*>(format.get());
    if (letters == nullptr) return std::nullopt;
    icu::UnicodeString text;
    letters->toPattern(text);
    std::string out;
    return text.toUTF8String(out);
}

std::shared_ptr<const Formatter> make_date_formatter(std::string_view given, const std::string& locale,
                                                     const std::string& time_zone)
{
    if (given.size() > 1000) return nullptr;
    std::string pattern(given.empty() ? "short,short" : given);
    const auto icu_locale = icu::Locale::createCanonical(locale.c_str());
    UErrorCode status = U_ZERO_ERROR;
    auto format = styled_format(pattern, icu_locale);
    const bool styled = format != nullptr;
    if (styled) {
        pattern.clear();
    } else {
        pattern = icu_date_pattern(pattern);
        format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern), icu_locale, status);
    }
    const bool zoned = !styled && shows_zone(pattern);
    const std::unique_ptr<icu::TimeZone> zone(
        zoned ? icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(time_zone))
              : icu::TimeZone::getGMT()->clone());
    std::unique_ptr<icu::Calendar> calendar;
    if (zoned) calendar = std::make_unique<icu::GregorianCalendar>(*zone, icu_locale, status);
    const std::unique_ptr<icu::NumberingSystem> digits(icu::NumberingSystem::createInstance(icu_locale, status));
    if (U_FAILURE(status)) return nullptr;
    format->setTimeZone(*zone);
    const bool latin = std::string_view(digits->getName()) == "latn";
    std::optional<CalendarNames> names;
    const bool gregorian = std::string_view(format->getCalendar()->getType()) == "gregorian";
    if (latin && gregorian && !styled && is_plain(pattern)) {
        names = names_of(*static_cast<const icu::SimpleDateFormat&>(*format).getDateFormatSymbols());
    }
    return std::make_shared<DateFormatter>(std::move(format), std::move(calendar), std::move(pattern),
                                           std::move(names));
}

std::shared_ptr<const Formatter> FormatterCache::get(Kind kind, std::string_view pattern, const std::string& locale,
                                                     const std::string& time_zone)
{
    constexpr size_t kMostKept = 64;
    const std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find_if(entries_, [&](const Entry& entry) {
        return entry.kind == kind && entry.pattern == pattern && entry.locale == locale && entry.time_zone == time_zone;
    });
    if (found != entries_.end()) return found->formatter;
    if (entries_.size() >= kMostKept) entries_.clear();
    auto formatter =
        kind == Kind::Number ? make_number_formatter(pattern, locale) : make_date_formatter(pattern, locale, time_zone);
    entries_.push_back({kind, std::string(pattern), locale, time_zone, formatter});
    return formatter;
}

}  // namespace velora::engine
