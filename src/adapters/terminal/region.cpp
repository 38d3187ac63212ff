#include "adapters/terminal/region.h"

#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include "adapters/terminal/date_pattern.h"
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

class LocaleRegion final : public Region {
public:
    LocaleRegion(terminal::DatePattern dates, NumberMarks marks) : dates_(std::move(dates)), marks_(std::move(marks)) {}

    const NumberMarks& marks() const override { return marks_; }
    std::string short_date(const DateTime& date) const override { return dates_.write(date); }

    std::optional<DateTime> read_date(std::string_view text) const override
    {
        if (const auto date = DateTime::from_iso(trimmed(text))) return date;
        return dates_.read(text);
    }

private:
    terminal::DatePattern dates_;
    NumberMarks marks_;
};

}  // namespace

std::unique_ptr<Region> make_region(std::string_view tag)
{
    const std::string name(tag);
    const auto locale = locale_of(name);
    auto pattern = short_date_pattern(locale);
    if (!pattern) throw Fault(fault::kTypeMismatch, "The region \"" + name + "\" is not known", name);
    return std::make_unique<LocaleRegion>(terminal::DatePattern(std::move(*pattern)), number_marks(locale));
}

std::string region_tag(std::string_view locale_name)
{
    const auto name = locale_name.substr(0, locale_name.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX") return std::string(kDefaultTag);
    return replaced(name, "_", "-");
}

}  // namespace velora
