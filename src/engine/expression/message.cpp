#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>
#include <unicode/msgfmt.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <vector>

#include "engine/expression/functions.h"
#include "engine/expression/utf16.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

std::string utf8(const icu::UnicodeString& text)
{
    std::string out;
    text.toUTF8String(out);
    return out;
}

/// One directive of a format: %[position$][flags][width][.places]letter.
struct Directive {
    std::optional<size_t> position;
    std::string_view flags;
    size_t width = 0;
    std::optional<int> places;
    char letter = 0;
    char date_part = 0;  ///< behind %t

    [[nodiscard]] bool has(char flag) const { return flags.find(flag) != std::string_view::npos; }
};

size_t take_number(std::string_view text, size_t& at)
{
    constexpr size_t kMost = 10000;
    size_t number = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        number = std::min(number * 10 + static_cast<size_t>(text[at] - '0'), kMost);
    }
    return number;
}

/// Reads what stands behind a percent sign.
std::optional<Directive> read_directive(std::string_view text, size_t& at)
{
    Directive out;
    const size_t start = at;
    const size_t number = take_number(text, at);
    if (at > start && at < text.size() && text[at] == '$' && number > 0) {
        out.position = number - 1;
        ++at;
    } else {
        at = start;
    }
    const size_t flags = at;
    at = std::min(text.find_first_not_of("-#+ 0,(", at), text.size());
    out.flags = text.substr(flags, at - flags);
    out.width = take_number(text, at);
    if (at < text.size() && text[at] == '.')
        out.places = static_cast<int>(std::min<size_t>(take_number(text, ++at), 60));
    if (at == text.size()) return std::nullopt;
    out.letter = text[at++];
    if (out.letter != 't') return out;
    if (at == text.size()) return std::nullopt;
    out.date_part = text[at++];
    return out;
}

std::string padded(std::string text, const Directive& directive)
{
    const size_t length = utf16_size(text);
    if (length >= directive.width) return text;
    if (directive.has('-')) return text.append(directive.width - length, ' ');
    return text.insert(0, directive.width - length, ' ');
}

/// Puts zeros of the locale between the sign and the digits. What has no digits, such as NaN, is left to blanks.
void fill_with_zeros(std::string& text, size_t width, const Formatter& formatter)
{
    const size_t length = utf16_size(text);
    const auto zero = formatter.format(cell::integer(0));
    if (length >= width || !zero) return;
    std::string zeros;
    for (size_t at = length; at < width; ++at) zeros += *zero;
    const auto wide = unicode(text);
    int32_t first = 0;
    while (first < wide.length() && !u_isdigit(wide.char32At(first))) ++first;
    if (first == wide.length()) return;
    text.insert(utf8_offset(text, first).value_or(0), zeros);
}

/// The digits of a whole number to the base 16, as many as its class has.
std::string hexadecimal(const Cell& value, const Directive& directive)
{
    auto bits = static_cast<uint64_t>(cell::to_integer(value));
    if (value.value_class != ValueClass::Long) bits &= 0xFFFFFFFFU;
    std::array<char, 24> buffer{};
    std::string text(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), bits, 16).ptr);
    if (directive.has('0') && text.size() < directive.width) text.insert(0, directive.width - text.size(), '0');
    return text;
}

std::string upper(const std::string& text, const std::string& locale)
{
    return utf8(unicode(text).toUpper(icu::Locale(locale.c_str())));
}

/// A number through the number patterns, with the directive's flags made into one.
std::optional<std::string> number_text(const Cell& value, const Directive& directive, int places,
                                       const std::string& locale)
{
    std::string pattern = directive.has(',') ? "#,##0" : "0";
    if (places > 0) pattern.append(".").append(static_cast<size_t>(places), '0');
    if (directive.has('(')) pattern += ";(" + pattern + ")";
    auto exact = cell::to_decimal(value);
    if (exact && exact->scale() > places) exact = exact->with_scale(places, Rounding::HalfUp);
    const auto formatter = make_number_formatter(pattern, locale);
    auto text = formatter->format(exact ? cell::decimal(exact) : value);
    if (!text) return std::nullopt;
    if (directive.has('+') && cell::to_double(value) >= 0) text->insert(0, "+");
    if (directive.has(' ') && cell::to_double(value) >= 0) text->insert(0, " ");
    if (directive.has('0')) fill_with_zeros(*text, directive.width, *formatter);
    return text;
}

std::optional<std::string> date_text(const Cell& value, char part, const std::string& locale)
{
    struct Part {
        char letter;
        std::string_view pattern;
    };
    static constexpr auto kParts = std::to_array<Part>({{'Y', "yyyy"},
                                                        {'y', "yy"},
                                                        {'m', "MM"},
                                                        {'d', "dd"},
                                                        {'e', "d"},
                                                        {'H', "HH"},
                                                        {'M', "mm"},
                                                        {'S', "ss"},
                                                        {'B', "MMMM"},
                                                        {'b', "MMM"},
                                                        {'A', "EEEE"},
                                                        {'a', "EEE"},
                                                        {'D', "MM/dd/yy"},
                                                        {'F', "yyyy-MM-dd"},
                                                        {'T', "HH:mm:ss"},
                                                        {'R', "HH:mm"},
                                                        {'I', "hh"},
                                                        {'l', "h"},
                                                        {'p', "a"}});
    const auto found = std::ranges::find(kParts, part, &Part::letter);
    if (found == kParts.end()) return std::nullopt;
    auto text = make_date_formatter(found->pattern, locale, "GMT")->format(value);
    if (text && part == 'p') *text = utf8(unicode(*text).toLower(icu::Locale(locale.c_str())));
    return text;
}

std::optional<std::string> directive_text(const Cell& value, const Directive& directive, const std::string& locale)
{
    std::array<char, 64> buffer{};
    switch (directive.letter) {
        case 'b': {
            const bool* flag = value.get_if<bool>();
            return (flag != nullptr ? *flag : !value.is_null()) ? "true" : "false";
        }
        case 's':
        case 'S': {
            std::string text;
            cell::append_text(value, text);
            if (directive.places) text.resize(utf8_offset(text, *directive.places).value_or(text.size()));
            return directive.letter == 'S' ? upper(text, locale) : text;
        }
        case 'c': {
            if (value.is_null()) return "null";
            if (!is_integer(value.value_class)) return std::nullopt;
            std::string text;
            cell::append_text(cell::converted(value, ValueClass::Character), text);
            return text;
        }
        case 'd':
            if (value.is_null()) return "null";
            if (!is_integer(value.value_class)) return std::nullopt;
            return number_text(value, directive, 0, locale);
        case 'f':
            if (value.is_null()) return "null";
            if (!is_number(value.value_class)) return std::nullopt;
            return number_text(value, directive, directive.places.value_or(6), locale);
        case 'x':
        case 'X':
            if (!is_integer(value.value_class)) return std::nullopt;
            if (directive.letter == 'X') return upper(hexadecimal(value, directive), locale);
            return hexadecimal(value, directive);
        case 'e':
            if (!is_number(value.value_class)) return std::nullopt;
            std::snprintf(buffer.data(), buffer.size(), "%.*e", std::min(directive.places.value_or(6), 20),
                          cell::to_double(value));
            return std::string(buffer.data());
        case 't':
            return value.is_null() ? "null" : date_text(value, directive.date_part, locale);
        default:
            return std::nullopt;
    }
}

/// Arguments in the form that message patterns take; a null is the text "null".
std::vector<icu::Formattable> formattables(std::span<const Cell> arguments)
{
    std::vector<icu::Formattable> out;
    for (const Cell& value : arguments) {
        if (const auto* whole = value.get_if<int64_t>();
            whole != nullptr && value.value_class != ValueClass::Character) {
            out.emplace_back(*whole);
        } else if (is_number(value.value_class) && value.value_class != ValueClass::Character) {
            out.emplace_back(cell::to_double(value));
        } else if (is_date(value.value_class)) {
            out.emplace_back(static_cast<UDate>(value.get_if<DateTime>()->unix_milliseconds()),
                             icu::Formattable::kIsDate);
        } else {
            std::string text;
            cell::append_text(value, text);
            out.emplace_back(unicode(text));
        }
    }
    return out;
}

}  // namespace

std::optional<std::string> formatted(std::string_view pattern, std::span<const Cell> arguments,
                                     const std::string& locale)
{
    std::string out;
    size_t next_argument = 0;
    for (size_t at = 0; at < pattern.size();) {
        const char c = pattern[at++];
        if (c != '%') {
            out += c;
            continue;
        }
        const auto directive = read_directive(pattern, at);
        if (!directive) return std::nullopt;
        if (directive->letter == 'n' || directive->letter == '%') {
            out += padded(directive->letter == 'n' ? "\n" : "%", *directive);
            continue;
        }
        const size_t position = directive->position ? *directive->position : next_argument++;
        if (position >= arguments.size()) return std::nullopt;
        auto text = directive_text(arguments[position], *directive, locale);
        if (!text) return std::nullopt;
        out += padded(std::move(*text), *directive);
    }
    return out;
}

std::optional<std::string> message(std::string_view pattern, std::span<const Cell> arguments, const std::string& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    UParseError where;
    icu::MessageFormat format(u"", icu::Locale::createCanonical(locale.c_str()), status);
    format.applyPattern(unicode(pattern), UMSGPAT_APOS_DOUBLE_REQUIRED, &where, status);
    if (U_FAILURE(status)) return std::nullopt;
    const auto values = formattables(arguments);
    icu::UnicodeString text;
    icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
    format.format(values.data(), static_cast<int32_t>(values.size()), text, position, status);
    if (U_FAILURE(status)) return std::nullopt;
    return utf8(text);
}

}  // namespace velora::engine
