#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "engine/expression/functions.h"
#include "engine/expression/utf16.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

std::string upper(const std::string& text, const std::string& locale)
{
    std::string out;
    unicode(text).toUpper(icu::Locale(locale.c_str())).toUTF8String(out);
    return out;
}

/// One directive of a format: %[position$][flags][width][.places]letter.
struct Directive {
    std::optional<size_t> position;
    bool again = false;  ///< of the argument before
    std::string_view flags;
    size_t width = 0;
    std::optional<int> places;
    char letter = 0;  ///< the small one
    bool capitals = false;
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

void read_position(std::string_view text, size_t& at, Directive& out)
{
    const size_t start = at;
    if (at < text.size() && text[at] == '<') {
        out.again = true;
        ++at;
        return;
    }
    const size_t number = take_number(text, at);
    if (at > start && at < text.size() && text[at] == '$' && number > 0) {
        out.position = number - 1;
        ++at;
    } else {
        at = start;
    }
}

/// Reads what stands behind a percent sign.
std::optional<Directive> read_directive(std::string_view text, size_t& at)
{
    Directive out;
    read_position(text, at, out);
    const size_t flags = at;
    at = std::min(text.find_first_not_of("-#+ 0,(", at), text.size());
    out.flags = text.substr(flags, at - flags);
    out.width = take_number(text, at);
    if (at < text.size() && text[at] == '.') {
        out.places = static_cast<int>(std::min<size_t>(take_number(text, ++at), 60));
    }
    if (at == text.size()) return std::nullopt;
    out.letter = text[at++];
    if (std::string_view("SXEGHTBC").find(out.letter) != std::string_view::npos) {
        out.capitals = true;
        out.letter = static_cast<char>(out.letter + ('a' - 'A'));
    }
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
void fill_with_zeros(std::string& text, size_t width, const std::string& locale)
{
    const size_t length = utf16_size(text);
    if (length >= width) return;
    const auto wide = unicode(text);
    int32_t first = 0;
    while (first < wide.length() && !u_isdigit(wide.char32At(first))) ++first;
    if (first == wide.length()) return;
    const std::string zero = make_number_formatter("0", locale)->format(cell::integer(0)).value_or("0");
    std::string zeros;
    for (size_t at = length; at < width; ++at) zeros += zero;
    text.insert(utf8_offset(text, first).value_or(0), zeros);
}

/// The digits of a whole number's bits to the base 8 or 16, as many as its class has.
std::string bits_text(const Cell& value, const Directive& directive, int base)
{
    auto bits = static_cast<uint64_t>(cell::to_integer(value));
    if (value.value_class != ValueClass::Long) bits &= 0xFFFFFFFFU;
    std::array<char, 24> buffer{};
    std::string text(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), bits, base).ptr);
    const std::string mark = directive.has('#') ? base == 16 ? "0x" : "0" : "";
    if (directive.has('0') && text.size() + mark.size() < directive.width) {
        text.insert(0, directive.width - mark.size() - text.size(), '0');
    }
    return mark + text;
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
    auto text = make_number_formatter(pattern, locale)->format(exact ? cell::decimal(exact) : value);
    if (!text) return std::nullopt;
    if (directive.has('+') && cell::to_double(value) >= 0) text->insert(0, "+");
    if (directive.has(' ') && cell::to_double(value) >= 0) text->insert(0, " ");
    if (directive.has('0')) fill_with_zeros(*text, directive.width, locale);
    return text;
}

std::string scientific_text(double value, const Directive& directive, int places, const std::string& locale)
{
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), directive.has('+') ? "%+.*e" : "%.*e", std::min(places, 20), value);
    std::string text(buffer.data());
    if (directive.has('0')) fill_with_zeros(text, directive.width, locale);
    return text;
}

/// As many digits as asked for: plain where the number is neither tiny nor longer than them.
std::optional<std::string> general_text(const Cell& value, const Directive& directive, const std::string& locale)
{
    const int digits = std::max(directive.places.value_or(6), 1);
    const double number = cell::to_double(value);
    if (!std::isfinite(number)) return number_text(value, directive, 0, locale);
    std::array<char, 96> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*e", std::min(digits, 60) - 1, number);
    const double rounded = std::strtod(buffer.data(), nullptr);
    const double magnitude = std::abs(rounded);
    if (magnitude != 0 && (magnitude < 1e-4 || magnitude >= std::pow(10, digits))) {
        return scientific_text(number, directive, digits - 1, locale);
    }
    const int before = magnitude == 0 ? 1 : static_cast<int>(std::floor(std::log10(magnitude))) + 1;
    return number_text(value, directive, std::clamp(digits - before, 0, 60), locale);
}

std::optional<std::string> date_text(const Cell& value, char part, const std::string& locale)
{
    struct Part {
        char letter;
        std::string_view pattern;
    };
    // clang-format off
    static constexpr auto kParts = std::to_array<Part>({
        {'Y', "yyyy"}, {'y', "yy"},   {'m', "MM"},   {'d', "dd"},   {'e', "d"},        {'H', "HH"},         {'M', "mm"},
        {'S', "ss"},   {'B', "MMMM"}, {'b', "MMM"},  {'A', "EEEE"}, {'a', "EEE"},      {'D', "MM/dd/yy"},   {'F', "yyyy-MM-dd"},
        {'T', "HH:mm:ss"}, {'R', "HH:mm"}, {'I', "hh"}, {'l', "h"}, {'p', "a"},        {'h', "MMM"},        {'k', "H"},
        {'j', "DDD"},  {'L', "SSS"},  {'r', "hh:mm:ss a"},
    });
    // clang-format on
    const auto found = std::ranges::find(kParts, part, &Part::letter);
    if (found == kParts.end()) return std::nullopt;
    auto text = make_date_formatter(found->pattern, locale, "GMT")->format(value);
    if (text && part == 'p') unicode(*text).toLower(icu::Locale(locale.c_str())).toUTF8String(*(text = ""));
    return text;
}

std::optional<std::string> whole_text(const Cell& value, const Directive& directive, const std::string& locale)
{
    if (!is_integer(value.value_class)) return std::nullopt;
    switch (directive.letter) {
        case 'd':
            return number_text(value, directive, 0, locale);
        case 'c': {
            std::string text;
            cell::append_text(cell::converted(value, ValueClass::Character), text);
            return text;
        }
        default:
            return bits_text(value, directive, directive.letter == 'o' ? 8 : 16);
    }
}

std::optional<std::string> real_text(const Cell& value, const Directive& directive, const std::string& locale)
{
    if (!is_number(value.value_class)) return std::nullopt;
    const int places = directive.places.value_or(6);
    if (directive.letter == 'f') return number_text(value, directive, places, locale);
    if (directive.letter == 'e') return scientific_text(cell::to_double(value), directive, places, locale);
    return general_text(value, directive, locale);
}

std::optional<std::string> directive_text(const Cell& value, const Directive& directive, const std::string& locale)
{
    const auto cut = [&](std::string text) {
        if (directive.places) text.resize(utf8_offset(text, *directive.places).value_or(text.size()));
        return text;
    };
    if (directive.letter == 'b') {
        const bool* flag = value.get_if<bool>();
        return cut((flag != nullptr ? *flag : !value.is_null()) ? "true" : "false");
    }
    if (value.is_null()) return cut("null");
    switch (directive.letter) {
        case 's': {
            std::string text;
            cell::append_text(value, text);
            return cut(std::move(text));
        }
        case 'h':
            return cut(bits_text(cell::integer(hash_code(value)), {}, 16));
        case 'd':
        case 'c':
        case 'o':
        case 'x':
            return whole_text(value, directive, locale);
        case 'f':
        case 'e':
        case 'g':
            return real_text(value, directive, locale);
        case 't':
            return date_text(value, directive.date_part, locale);
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<std::string> formatted(std::string_view pattern, std::span<const Cell> arguments,
                                     const std::string& locale)
{
    if (arguments.size() == 1 && arguments.front().value_class == ValueClass::List) {
        arguments = **arguments.front().get_if<Cell::List>();
    }
    std::string out;
    size_t next_argument = 0;
    std::optional<size_t> last;
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
        if (directive->again && !last) return std::nullopt;
        last = directive->again ? *last : directive->position ? *directive->position : next_argument++;
        if (*last >= arguments.size()) return std::nullopt;
        auto text = directive_text(arguments[*last], *directive, locale);
        if (!text) return std::nullopt;
        out += padded(directive->capitals ? upper(*text, locale) : std::move(*text), *directive);
    }
    return out;
}

}  // namespace velora::engine
