#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "engine/expression/formatter.h"

namespace velora::engine {

namespace {

std::string utf8(const icu::UnicodeString& text)
{
    std::string out;
    text.toUTF8String(out);
    return out;
}

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

/// A pattern of digits, grouping and a point with text around it: nearly all that definitions use.
struct PlainPattern {
    std::string prefix;
    std::string suffix;
    std::string negative_prefix;
    std::string negative_suffix;
    size_t least_whole = 0;
    int least_places = 0;
    int most_places = 0;
    size_t grouping = 0;
    bool percent = false;
};

struct Symbols {
    std::string group;
    std::string decimal;
    std::string minus;
    std::string percent;
    bool latin_digits = false;
};

Symbols symbols_of(const icu::DecimalFormatSymbols& source)
{
    using Icu = icu::DecimalFormatSymbols;
    return {utf8(source.getConstSymbol(Icu::kGroupingSeparatorSymbol)),
            utf8(source.getConstSymbol(Icu::kDecimalSeparatorSymbol)),
            utf8(source.getConstSymbol(Icu::kMinusSignSymbol)), utf8(source.getConstSymbol(Icu::kPercentSymbol)),
            utf8(source.getConstSymbol(Icu::kZeroDigitSymbol)) == "0"};
}

/// Reads the text before or after the digits; quotes are taken off. False for what a plain pattern cannot hold.
bool read_affix(std::string_view pattern, size_t& at, const Symbols& symbols, std::string& out, bool& percent)
{
    bool quoted = false;
    for (; at < pattern.size(); ++at) {
        const char c = pattern[at];
        if (c == '\'') {
            if (at + 1 < pattern.size() && pattern[at + 1] == '\'') {
                out += pattern[++at];
            } else {
                quoted = !quoted;
            }
        } else if (quoted) {
            out += c;
        } else if (std::string_view("#0,.;").find(c) != std::string_view::npos) {
            return true;
        } else if (c == '%') {
            percent = true;
            out += symbols.percent;
        } else if (c == '-') {
            out += symbols.minus;
        } else if (std::string_view("E@*123456789").find(c) != std::string_view::npos || c == '\xC2' || c == '\xE2') {
            return false;  // exponents, currency and permille signs, padding
        } else {
            out += c;
        }
    }
    return !quoted;
}

bool read_digits(std::string_view pattern, size_t& at, PlainPattern& out)
{
    bool point = false;
    bool whole = false;
    bool optional_place = false;
    std::optional<size_t> since_group;
    for (; at < pattern.size() && std::string_view("#0,.").find(pattern[at]) != std::string_view::npos; ++at) {
        const char c = pattern[at];
        if (c == '.') {
            if (point) return false;
            point = true;
        } else if (c == ',') {
            if (point) return false;
            since_group = 0;
        } else if (point) {
            if (c == '0' && optional_place) return false;
            optional_place = c == '#';
            out.most_places += 1;
            out.least_places += c == '0' ? 1 : 0;
        } else {
            if (c == '#' && out.least_whole > 0) return false;
            out.least_whole += c == '0' ? 1 : 0;
            whole = true;
            if (since_group) ++*since_group;
        }
    }
    out.grouping = since_group.value_or(0);
    if (point && out.most_places == 0) return false;  // the point is shown alone
    if (point && out.least_whole == 0 && out.least_places == 0) {
        // where no digit is asked for, the one before the point is
        if (!whole) return false;
        out.least_whole = 1;
    }
    return out.most_places <= 60 && (out.most_places > 0 || out.least_whole > 0 || at > 0);
}

std::optional<PlainPattern> read_plain(std::string_view pattern, const Symbols& symbols)
{
    if (!symbols.latin_digits) return std::nullopt;
    PlainPattern out;
    size_t at = 0;
    if (!read_affix(pattern, at, symbols, out.prefix, out.percent)) return std::nullopt;
    const size_t digits = at;
    if (!read_digits(pattern, at, out) || at == digits) return std::nullopt;
    if (!read_affix(pattern, at, symbols, out.suffix, out.percent)) return std::nullopt;
    out.negative_prefix = symbols.minus + out.prefix;
    out.negative_suffix = out.suffix;
    if (at == pattern.size()) return out;
    if (pattern[at] != ';') return std::nullopt;
    PlainPattern negative;
    ++at;
    if (!read_affix(pattern, at, symbols, negative.prefix, negative.percent)) return std::nullopt;
    const size_t negative_digits = at;
    if (!read_digits(pattern, at, negative) || at == negative_digits) return std::nullopt;
    if (!read_affix(pattern, at, symbols, negative.suffix, negative.percent) || at != pattern.size()) {
        return std::nullopt;
    }
    if (negative.prefix == out.prefix && negative.suffix == out.suffix) return out;
    out.negative_prefix = negative.prefix;
    out.negative_suffix = negative.suffix;
    return out;
}

/// Sign, whole digits and places of a number, rounded to at most `places`.
struct Digits {
    bool negative = false;
    std::string whole;
    std::string places;
};

Digits split_digits(std::string_view written)
{
    Digits out;
    if (!written.empty() && written.front() == '-') {
        out.negative = true;
        written.remove_prefix(1);
    }
    const auto point = written.find('.');
    out.whole = written.substr(0, point);
    if (point != std::string_view::npos) out.places = written.substr(point + 1);
    return out;
}

Digits digits_of(uint64_t units, size_t scale, bool negative)
{
    std::array<char, 24> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), units).ptr;
    std::string_view written(text.data(), static_cast<size_t>(end - text.data()));
    std::string zeros;
    if (written.size() <= scale) {
        zeros.assign(scale + 1 - written.size(), '0');
        zeros += written;
        written = zeros;
    }
    const size_t point = written.size() - scale;
    return {negative, std::string(written.substr(0, point)), std::string(written.substr(point))};
}

/// Small numbers that are clearly nearer to one rounded value than to the next need no exact digits.
std::optional<Digits> quick_digits(double value, int places)
{
    constexpr std::array kPowers{1.0, 10.0, 100.0, 1000.0, 10000.0};
    constexpr double kLimit = 1e9;  // leaves at least six correct digits behind the rounded place
    if (places >= static_cast<int>(kPowers.size())) return std::nullopt;
    const double scaled = std::abs(value) * kPowers[static_cast<size_t>(places)];
    if (!(scaled < kLimit)) return std::nullopt;
    const double whole = std::floor(scaled);
    const double rest = scaled - whole;
    if (std::abs(rest - 0.5) < 1e-6) return std::nullopt;
    const auto units = static_cast<uint64_t>(whole) + (rest > 0.5 ? 1 : 0);
    return digits_of(units, static_cast<size_t>(places), std::signbit(value));
}

/// The shortest digits where they fit, else rounded from the exact binary value.
Digits digits_of(double value, int places)
{
    if (auto quick = quick_digits(value, places)) return *std::move(quick);
    std::array<char, 512> text;
    char* const begin = text.data();
    char* const end = begin + text.size();
    auto shortest = split_digits({begin, std::to_chars(begin, end, value, std::chars_format::fixed).ptr});
    if (shortest.places.size() <= static_cast<size_t>(places)) return shortest;
    return split_digits({begin, std::to_chars(begin, end, value, std::chars_format::fixed, places).ptr});
}

std::optional<Digits> digits_of(const Cell& cell, const PlainPattern& pattern)
{
    const int places = pattern.most_places;
    if (const auto* number = cell.get_if<double>()) {
        const double value = pattern.percent ? *number * 100 : *number;
        if (!std::isfinite(value)) return std::nullopt;
        return digits_of(value, places);
    }
    if (const auto* whole = cell.get_if<int64_t>(); whole != nullptr && !pattern.percent) {
        return digits_of(*whole < 0 ? 0 - static_cast<uint64_t>(*whole) : static_cast<uint64_t>(*whole), 0, *whole < 0);
    }
    auto decimal = cell::to_decimal(cell);
    if (decimal && pattern.percent) decimal = multiply(*decimal, Decimal::from(int64_t{100}));
    if (decimal && decimal->scale() > places) decimal = decimal->with_scale(places, Rounding::HalfEven);
    if (!decimal) return std::nullopt;
    auto digits = split_digits(decimal->text());
    digits.negative = digits.negative || cell::to_double(cell) < 0;
    return digits;
}

void append_grouped(const std::string& whole, size_t grouping, const std::string& mark, std::string& out)
{
    for (size_t at = 0; at < whole.size(); ++at) {
        if (at > 0 && grouping > 0 && (whole.size() - at) % grouping == 0) out += mark;
        out += whole[at];
    }
}

std::string laid_out(Digits&& digits, const PlainPattern& pattern, const Symbols& symbols)
{
    auto& [negative, whole, places] = digits;
    while (places.size() > static_cast<size_t>(pattern.least_places) && places.back() == '0') places.pop_back();
    places.resize(std::max(places.size(), static_cast<size_t>(pattern.least_places)), '0');
    if (whole == "0" && pattern.least_whole == 0 && !places.empty()) whole.clear();
    if (whole.size() < pattern.least_whole) whole.insert(0, pattern.least_whole - whole.size(), '0');

    std::string out = negative ? pattern.negative_prefix : pattern.prefix;
    append_grouped(whole, pattern.grouping, symbols.group, out);
    if (!places.empty()) out.append(symbols.decimal).append(places);
    return out.append(negative ? pattern.negative_suffix : pattern.suffix);
}

class NumberFormatter : public Formatter {
public:
    NumberFormatter(std::unique_ptr<icu::DecimalFormat> format, std::string_view pattern)
        : format_(std::move(format)),
          symbols_(symbols_of(*format_->getDecimalFormatSymbols())),
          plain_(read_plain(pattern, symbols_))
    {
    }

    [[nodiscard]] std::optional<std::string> format(const Cell& cell) const override
    {
        if (!is_number(cell.value_class)) return std::nullopt;
        if (plain_) {
            if (auto digits = digits_of(cell, *plain_)) return laid_out(std::move(*digits), *plain_, symbols_);
        }
        icu::UnicodeString out;
        if (const auto* whole = cell.get_if<int64_t>()) {
            format_->format(*whole, out);
        } else if (const auto* decimal = cell.get_if<Decimal>()) {
            UErrorCode status = U_ZERO_ERROR;
            format_->format(icu::StringPiece(decimal->text()), out, nullptr, status);
        } else {
            const double number = cell::to_double(cell);
            format_->format(std::isnan(number) ? std::abs(number) : number, out);  // "no number" has no sign
        }
        return utf8(out);
    }

    [[nodiscard]] Cell parse(std::string_view text) const override
    {
        icu::Formattable result;
        UErrorCode status = U_ZERO_ERROR;
        format_->parse(unicode(text), result, status);
        if (U_FAILURE(status)) return {};
        if (result.getType() != icu::Formattable::kDouble) return cell::integer(result.getInt64(), ValueClass::Long);
        return cell::number(result.getDouble());
    }

private:
    std::unique_ptr<icu::DecimalFormat> format_;
    Symbols symbols_;
    std::optional<PlainPattern> plain_;
};

constexpr std::string_view kMarks = "@marks=";

/// A locale and the marks behind it, where it names some.
std::pair<std::string, std::optional<std::string_view>> split_marks(std::string_view locale)
{
    const size_t at = locale.find(kMarks);
    if (at == std::string_view::npos) return {std::string(locale), std::nullopt};
    return {std::string(locale.substr(0, at)), locale.substr(at + kMarks.size())};
}

/// @param marks  decimal mark, "|", mark of thousands; either may be empty
void set_marks(icu::DecimalFormatSymbols& symbols, std::string_view marks)
{
    const size_t bar = std::min(marks.find('|'), marks.size());
    symbols.setSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol, unicode(marks.substr(0, bar)));
    symbols.setSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol,
                      unicode(marks.substr(std::min(bar + 1, marks.size()))));
}

/// The pattern with the signs of the currency as texts: they change neither places nor blanks.
std::string with_currency(std::string_view pattern, const icu::DecimalFormatSymbols& symbols)
{
    constexpr std::string_view kSign = "\xC2\xA4";
    std::string out;
    for (size_t at = 0; at < pattern.size();) {
        if (!pattern.substr(at).starts_with(kSign)) {
            out += pattern[at++];
            continue;
        }
        at += kSign.size();
        const bool code = pattern.substr(at).starts_with(kSign);
        if (code) at += kSign.size();
        using Icu = icu::DecimalFormatSymbols;
        const auto sign = utf8(symbols.getConstSymbol(code ? Icu::kIntlCurrencySymbol : Icu::kCurrencySymbol));
        out.append("'").append(sign).append("'");
    }
    return out;
}

/// The pattern that a locale writes amounts of its currency by.
std::string currency_pattern(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::NumberFormat> format(icu::NumberFormat::createCurrencyInstance(locale, status));
    const auto* decimal = dynamic_cast<const icu::DecimalFormat*>(format.get());
    icu::UnicodeString pattern;
    if (U_FAILURE(status) || decimal == nullptr) return "\xC2\xA4#,##0.00";
    return utf8(decimal->toPattern(pattern));
}

}  // namespace

std::shared_ptr<const Formatter> make_number_formatter(std::string_view given, const std::string& locale_name)
{
    const auto [name, marks] = split_marks(locale_name);
    const auto locale = icu::Locale::createCanonical(name.c_str());
    UErrorCode status = U_ZERO_ERROR;
    auto symbols = std::make_unique<icu::DecimalFormatSymbols>(locale, status);
    if (U_FAILURE(status) || given.size() > 1000) return nullptr;
    if (marks) set_marks(*symbols, *marks);
    const std::string pattern =
        with_currency(given == kCurrencyPattern ? currency_pattern(locale) : std::string(given), *symbols);
    auto format = std::make_unique<icu::DecimalFormat>(unicode(pattern), symbols.release(), status);
    if (U_FAILURE(status)) return nullptr;
    format->setRoundingMode(icu::DecimalFormat::kRoundHalfEven);
    if (format->isScientificNotation()) {
        // all places of the pattern are digits of the number, those before the point too
        format->setMaximumFractionDigits(format->getMaximumFractionDigits() + format->getMaximumIntegerDigits() -
                                         format->getMinimumIntegerDigits());
    }
    return std::make_shared<NumberFormatter>(std::move(format), pattern);
}

}  // namespace velora::engine
