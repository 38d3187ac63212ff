#include "adapters/terminal/region.h"

#include <fmt/format.h>
#include <unicode/dcfmtsym.h>
#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include "adapters/terminal/date_pattern.h"
#include "adapters/terminal/typed_date.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {

namespace {

constexpr std::string_view kDefaultTag = "en-US";

std::string utf8(const icu::UnicodeString& text)
{
    std::string result;
    text.toUTF8String(result);
    return result;
}

icu::Locale locale_of(const std::string& tag)
{
    UErrorCode status = U_ZERO_ERROR;
    auto locale = icu::Locale::forLanguageTag(tag, status);
    const bool is_tag = U_SUCCESS(status) && !locale.isBogus() && *locale.getLanguage() != '\0';
    if (!is_tag) throw Fault(fault::kTypeMismatch, "The region \"" + tag + "\" is not known", tag);
    status = U_ZERO_ERROR;
    locale.setKeywordValue("calendar", "gregorian", status);
    locale.setKeywordValue("numbers", "latn", status);
    return locale;
}

/// The short date pattern; none when the locale data do not know the language and would answer with another one.
std::optional<std::string> short_date_pattern(const icu::Locale& locale)
{
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale));
    const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get());
    if (simple == nullptr) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    const auto served = simple->getLocale(ULOC_VALID_LOCALE, status);
    if (U_FAILURE(status) || std::string_view(served.getLanguage()) != locale.getLanguage()) return std::nullopt;
    icu::UnicodeString pattern;
    simple->toPattern(pattern);
    return utf8(pattern);
}

NumberMarks number_marks(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols symbols(locale, status);
    if (U_FAILURE(status)) return {};
    return {utf8(symbols.getSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol)),
            utf8(symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol))};
}

/// The names of the months in full and short, in the region's language and in English.
std::vector<terminal::TypedDate::MonthName> month_names(const icu::Locale& locale)
{
    using Symbols = icu::DateFormatSymbols;
    std::vector<terminal::TypedDate::MonthName> names;
    for (const auto& language : {locale, icu::Locale::getEnglish()}) {
        UErrorCode status = U_ZERO_ERROR;
        const Symbols symbols(language, status);
        if (U_FAILURE(status)) continue;
        for (const auto context : {Symbols::FORMAT, Symbols::STANDALONE}) {
            for (const auto width : {Symbols::WIDE, Symbols::ABBREVIATED}) {
                int32_t count = 0;
                const auto* months = symbols.getMonths(count, context, width);
                for (int32_t n = 0; n < count; ++n) {
                    const std::string name = terminal::folded(utf8(months[n]));
                    names.push_back({name.substr(0, name.find_last_not_of('.') + 1), n + 1});
                }
            }
        }
    }
    return names;
}

bool has_halves_of_days(const icu::Locale& locale)
{
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale));
    const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get());
    icu::UnicodeString pattern;
    return simple != nullptr && simple->toPattern(pattern).indexOf(u'a') >= 0;
}

class LocaleRegion final : public Region {
public:
    LocaleRegion(const std::string& pattern, const icu::Locale& locale)
        : dates_(pattern),
          typed_(pattern, month_names(locale)),
          marks_(number_marks(locale)),
          halves_(has_halves_of_days(locale))
    {
    }

    const NumberMarks& marks() const override { return marks_; }
    std::string short_date(const DateTime& date) const override { return dates_.write(date); }

    std::string plain_date(const DateTime& date) const override
    {
        if (date.second_of_day() == 0) return short_date(date);
        const auto time = date.parts();
        if (!halves_) {
            return fmt::format("{} {:02}:{:02}:{:02}", short_date(date), time.hour, time.minute, time.second);
        }
        const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
        return fmt::format("{} {}:{:02}:{:02} {}", short_date(date), hour, time.minute, time.second,
                           time.hour < 12 ? "AM" : "PM");
    }

    std::optional<DateTime> read_date(std::string_view text, int this_year) const override
    {
        if (const auto date = DateTime::from_iso(trimmed(text))) return date;
        return typed_.read(text, this_year);
    }

private:
    terminal::DatePattern dates_;
    terminal::TypedDate typed_;
    NumberMarks marks_;
    bool halves_;
};

}  // namespace

std::unique_ptr<Region> make_region(std::string_view tag)
{
    const std::string name(tag);
    const auto locale = locale_of(name);
    const auto pattern = short_date_pattern(locale);
    if (!pattern) throw Fault(fault::kTypeMismatch, "The region \"" + name + "\" is not known", name);
    return std::make_unique<LocaleRegion>(*pattern, locale);
}

std::string region_tag(std::string_view locale_name)
{
    const auto name = locale_name.substr(0, locale_name.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX") return std::string(kDefaultTag);
    return replaced(name, "_", "-");
}

}  // namespace velora
