#include <gtest/gtest.h>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "engine/expression/date_letters.h"
#include "engine/expression/formatter.h"

namespace velora::engine {
namespace {

// Everyday patterns are written without the general library; here both write a million values.
constexpr int kValues = 1'000'000;

std::string utf8(const icu::UnicodeString& text)
{
    std::string out;
    return text.toUTF8String(out);
}

/// The library's own writing of a number that is handed over digit by digit, so that it rounds the exact value.
class Reference {
public:
    Reference(const std::string& pattern, const char* locale)
    {
        UErrorCode status = U_ZERO_ERROR;
        auto symbols = std::make_unique<icu::DecimalFormatSymbols>(icu::Locale::createCanonical(locale), status);
        format_ =
            std::make_unique<icu::DecimalFormat>(icu::UnicodeString::fromUTF8(pattern), symbols.release(), status);
        EXPECT_TRUE(U_SUCCESS(status)) << pattern;
        format_->setRoundingMode(icu::DecimalFormat::kRoundHalfEven);
    }

    [[nodiscard]] std::string format(double value) const
    {
        // A percentage is worked out as a double before it is rounded.
        return format_->getMultiplier() == 100 ? format(digits_of(value * 100) + "E-2") : format(digits_of(value));
    }
    [[nodiscard]] std::string format(std::string_view digits) const
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::UnicodeString out;
        format_->format(icu::StringPiece(digits.data(), static_cast<int32_t>(digits.size())), out, nullptr, status);
        return utf8(out);
    }

private:
    /// The shortest digits that stand for the value where the pattern shows them all, else every digit that it has.
    [[nodiscard]] std::string digits_of(double value) const
    {
        std::array<char, 512> text{};
        char* const end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ptr;
        std::string shortest(text.data(), end);
        const size_t point = shortest.find('.');
        const size_t places = point == std::string::npos ? 0 : shortest.size() - point - 1;
        if (places <= static_cast<size_t>(format_->getMaximumFractionDigits())) return shortest;
        return {text.data(), static_cast<size_t>(std::snprintf(text.data(), text.size(), "%.90f", value))};
    }

    std::unique_ptr<icu::DecimalFormat> format_;
};

/// Amounts of every size, and above all what lies on, just below and just above a half.
double random_number(std::mt19937_64& random)
{
    constexpr std::array kPowers{1.0, 10.0, 100.0, 1e3, 1e4, 1e5, 1e6};
    const double power = kPowers[random() % kPowers.size()];
    const auto whole = static_cast<double>(random() % (uint64_t{1} << (random() % 40)));
    const double sign = random() % 2 == 0 ? 1 : -1;
    switch (random() % 6) {
        case 0:
            return sign * whole / power;
        case 1:
            return sign * (whole + 0.5) / power;
        case 2:
            return std::nextafter(sign * (whole + 0.5) / power, random() % 2 == 0 ? 1e300 : -1e300);
        case 3:
            return sign * (whole + 0.5) / power * (1 + 1e-13 * static_cast<double>(random() % 100));
        case 4:
            return static_cast<double>(static_cast<float>(sign * whole / power));
        default:
            return sign * std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(20 + random() % 60));
    }
}

TEST(FastPaths, NumbersAreWrittenAsTheGeneralLibraryWritesThem)
{
    std::mt19937_64 random(20261121);
    const std::array patterns{
        "#,##0.00",   "#,##0",   "0.00",       "#,##0.00;(#,##0.00)", "0.0%",    "#,##0.####", "#.##",      "0000",
        "##0.000 kg", "'No.' #", "#,##0.0;-#", "#,###.##%",           "0.00000", "#,####.0",   "$#,##0.00-"};
    const std::array locales{"en_US", "de_DE", "fr_FR", "de_CH", "es_ES", "sv_SE", "pl_PL", "hi_IN"};
    const int each = kValues / static_cast<int>(patterns.size() * locales.size()) + 1;
    for (const char* locale : locales) {
        for (const char* pattern : patterns) {
            const Reference reference(pattern, locale);
            const auto formatter = make_number_formatter(pattern, locale);
            for (int round = 0; round < each; ++round) {
                const double value = random_number(random);
                ASSERT_EQ(formatter->format(cell::number(value)), reference.format(value))
                    << locale << ' ' << pattern << ' ' << std::hexfloat << value;
                if (round % 8 != 0) continue;
                const auto whole = static_cast<int64_t>(random() >> (random() % 64)) * (round % 16 == 0 ? 1 : -1);
                ASSERT_EQ(formatter->format(cell::integer(whole, ValueClass::Long)),
                          reference.format(std::to_string(whole)))
                    << locale << ' ' << pattern << ' ' << whole;
            }
        }
    }
}

TEST(FastPaths, DatesAreWrittenAsTheGeneralLibraryWritesThem)
{
    std::mt19937_64 random(20261121);
    const std::array patterns{
        "dd.MM.yyyy",  "M/d/yy", "d MMM yyyy", "EEE, d MMMM yyyy HH:mm", "hh:mm:ss a", "yyyy-MM-dd HH:mm:ss",
        "EEEE dd MMM", "h a",    "dd/MM/yyyy"};
    const std::array locales{"en_US", "en_GB", "de_DE", "fr_FR", "es_ES", "cs_CZ", "pt_BR", "ru_RU", "ja_JP", "th_TH"};
    const DateTime first = DateTime::from_unix_milliseconds(-12'212'553'600'000);  // 1583: after the calendars changed
    const auto span = static_cast<uint64_t>(265'600'000'000'000);                  // up to the year 9999
    const int each = kValues / static_cast<int>(patterns.size() * locales.size()) + 1;
    for (const char* locale : locales) {
        for (const char* pattern : patterns) {
            UErrorCode status = U_ZERO_ERROR;
            icu::SimpleDateFormat reference(icu::UnicodeString::fromUTF8(icu_date_pattern(pattern)),
                                            icu::Locale::createCanonical(locale), status);
            ASSERT_TRUE(U_SUCCESS(status));
            reference.setTimeZone(*icu::TimeZone::getGMT());
            const auto formatter = make_date_formatter(pattern, locale, "UTC");
            for (int round = 0; round < each; ++round) {
                const auto moment = first.unix_milliseconds() + static_cast<int64_t>(random() % span / 1000 * 1000);
                icu::UnicodeString expected;
                reference.format(static_cast<UDate>(moment), expected);
                expected.findAndReplace(icu::UnicodeString(char16_t{0x202F}), icu::UnicodeString(u' '));
                ASSERT_EQ(formatter->format(cell::date(DateTime::from_unix_milliseconds(moment))), utf8(expected))
                    << locale << ' ' << pattern << ' ' << moment;
            }
        }
    }
}

}  // namespace
}  // namespace velora::engine
