#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <bit>

#include "engine/expression/functions.h"
#include "engine/expression/utf16.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

constexpr size_t kMostText = 1U << 20;        // made by repeating
constexpr size_t kMostReplaced = 256U << 20;  // made by replacing, reckoned before it is done

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

Cell text_of(const Cell& value)
{
    std::string out;
    cell::append_text(value, out);
    return cell::text(std::move(out));
}

/// Characters up to the blank count as white space, as the language has it.
Cell trimmed_text(Call& call)
{
    std::string_view text = call.text(0);
    while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ') text.remove_prefix(1);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.remove_suffix(1);
    return cell::text(std::string(text));
}

Cell upper(Call& call)
{
    std::string text = call.text(0);
    if (!is_ascii(text)) return cell::text(utf8(unicode(text).toUpper(icu::Locale(call.locale().c_str()))));
    for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    return cell::text(std::move(text));
}

Cell lower(Call& call)
{
    const std::string& text = call.text(0);
    if (!is_ascii(text)) return cell::text(utf8(unicode(text).toLower(icu::Locale(call.locale().c_str()))));
    return cell::text(lower_ascii(text));
}

/// Null when a position is outside the text.
Cell part_of(const std::string& text, int64_t from, int64_t to)
{
    const auto first = utf8_offset(text, from);
    const auto last = utf8_offset(text, to);
    if (!first || !last || *first > *last) return {};
    return cell::text(text.substr(*first, *last - *first));
}

Cell rest_of(Call& call)
{
    const auto from = utf8_offset(call.text(0), call.integer(1));
    return from ? cell::text(call.text(0).substr(*from)) : Cell{};
}

Cell position(const std::string& text, size_t found)
{
    if (found == std::string::npos) return cell::integer(-1);
    return cell::integer(static_cast<int64_t>(utf16_size(std::string_view(text).substr(0, found))));
}

Cell index_of(Call& call)
{
    return position(call.text(0), call.text(0).find(call.text(1)));
}

Cell index_of_character(Call& call)
{
    std::string one;
    cell::append_text(cell::integer(call.integer(1), ValueClass::Character), one);
    return position(call.text(0), call.text(0).find(one));
}

Cell index_from(Call& call)
{
    const auto from = utf8_offset(call.text(0), std::max<int64_t>(call.integer(2), 0));
    return position(call.text(0), from ? call.text(0).find(call.text(1), *from) : std::string::npos);
}

Cell last_index_of(Call& call)
{
    return position(call.text(0), call.text(0).rfind(call.text(1)));
}

Cell char_at(Call& call)
{
    const auto unit = utf16_unit(call.text(0), call.integer(1));
    return unit ? cell::integer(*unit, ValueClass::Character) : Cell{};
}

/// Whether replacing everything could make a text without measure.
bool replaces_too_much(Call& call)
{
    return !call.text(2).empty() && call.text(0).size() + 1 > kMostReplaced / call.text(2).size();
}

Cell replace(Call& call)
{
    if (call.text(1).empty()) return cell::text(call.text(0));
    if (replaces_too_much(call)) return {};
    return cell::text(replaced(call.text(0), call.text(1), call.text(2)));
}

/// A matcher that gives up on patterns that would run away. Null for a pattern that cannot be read.
std::unique_ptr<icu::RegexMatcher> matcher(const std::string& pattern, const icu::UnicodeString& text)
{
    constexpr int32_t kMostSteps = 1000;
    UErrorCode status = U_ZERO_ERROR;
    auto made = std::make_unique<icu::RegexMatcher>(unicode(pattern), text, 0, status);
    made->setTimeLimit(kMostSteps, status);
    return U_SUCCESS(status) ? std::move(made) : nullptr;
}

Cell replace_pattern(Call& call, bool all)
{
    if (replaces_too_much(call)) return {};
    const auto text = unicode(call.text(0));
    const auto made = matcher(call.text(1), text);
    if (!made) return {};
    UErrorCode status = U_ZERO_ERROR;
    const auto by = unicode(call.text(2));
    const auto out = all ? made->replaceAll(by, status) : made->replaceFirst(by, status);
    return U_SUCCESS(status) ? cell::text(utf8(out)) : Cell{};
}

Cell matches(Call& call)
{
    const auto text = unicode(call.text(0));
    const auto made = matcher(call.text(1), text);
    if (!made) return {};
    UErrorCode status = U_ZERO_ERROR;
    const bool found = made->matches(status) != 0;
    return U_SUCCESS(status) ? cell::boolean(found) : Cell{};
}

/// The parts between matches, at most as many as the third argument says; without one, or with 0, empty parts at the
/// end are dropped.
std::optional<std::vector<std::string>> split(Call& call)
{
    const auto text = unicode(call.text(0));
    const auto made = matcher(call.text(1), text);
    if (!made) return std::nullopt;
    const int64_t limit = call.arguments.size() > 2 ? call.integer(2) : 0;
    std::vector<std::string> parts;
    int32_t from = 0;
    UErrorCode status = U_ZERO_ERROR;
    while ((limit <= 0 || static_cast<int64_t>(parts.size()) + 1 < limit) && made->find(status) && U_SUCCESS(status)) {
        const int32_t start = made->start(status);
        const int32_t end = made->end(status);
        if (end == 0) continue;
        parts.push_back(utf8(text.tempSubStringBetween(from, start)));
        from = end;
    }
    if (U_FAILURE(status)) return std::nullopt;
    parts.push_back(utf8(text.tempSubString(from)));
    while (limit == 0 && parts.size() > 1 && parts.back().empty()) parts.pop_back();
    return parts;
}

Cell split_list(Call& call)
{
    const auto parts = split(call);
    if (!parts) return {};
    std::vector<Cell> cells;
    for (const auto& part : *parts) cells.push_back(cell::text(part));
    return cell::list(std::move(cells));
}

Cell repeated(Call& call)
{
    const auto times = static_cast<size_t>(std::max<int64_t>(call.integer(1), 0));
    if (call.text(0).empty() || times == 0) return cell::text("");
    if (times > kMostText / call.text(0).size()) return {};
    std::string out;
    for (size_t at = 0; at < times; ++at) out += call.text(0);
    return cell::text(std::move(out));
}

Cell joined_all(Call& call)
{
    std::string out;
    for (const Cell& part : call.arguments) {
        if (!part.is_null()) cell::append_text(part, out);
    }
    return cell::text(std::move(out));
}

Cell joined_with(Call& call)
{
    std::string out;
    for (size_t at = 1; at < call.arguments.size(); ++at) {
        if (at > 1) out += call.text(0);
        cell::append_text(call.cell(at), out);
    }
    return cell::text(std::move(out));
}

Cell plus_text(Call& call)
{
    std::string out = call.text(0);
    cell::append_text(call.cell(1), out);
    return cell::text(std::move(out));
}

Cell first_characters(Call& call)
{
    const auto end = utf8_offset(call.text(0), call.integer(1));
    return cell::text(end ? call.text(0).substr(0, *end) : call.text(0));
}

Cell last_characters(Call& call)
{
    const auto length = static_cast<int64_t>(utf16_size(call.text(0)));
    const auto from = utf8_offset(call.text(0), std::max<int64_t>(0, length - std::max<int64_t>(call.integer(1), 0)));
    return cell::text(call.text(0).substr(from.value_or(0)));
}

Cell middle_characters(Call& call)
{
    const auto length = static_cast<int64_t>(utf16_size(call.text(0)));
    const int64_t from = std::clamp<int64_t>(call.integer(1), 1, length + 1) - 1;
    return part_of(call.text(0), from, from + std::clamp<int64_t>(call.integer(2), 0, length - from));
}

Cell title_case(Call& call)
{
    auto text = unicode(call.text(0));
    return cell::text(utf8(text.toTitle(nullptr, icu::Locale(call.locale().c_str()))));
}

/// How far the first two UTF-16 units that differ lie apart, else the lengths.
int64_t text_distance(const icu::UnicodeString& left, const icu::UnicodeString& right)
{
    const int32_t common = std::min(left.length(), right.length());
    for (int32_t at = 0; at < common; ++at) {
        if (left[at] != right[at]) return left[at] - right[at];
    }
    return left.length() - right.length();
}

Cell compare_to(Call& call)
{
    if (is_text(call.cell(0).value_class) && is_text(call.cell(1).value_class)) {
        return cell::integer(text_distance(unicode(*text_of(call.cell(0)).get_if<std::string>()),
                                           unicode(*text_of(call.cell(1)).get_if<std::string>())));
    }
    const auto order = cell::compared(call.cell(0), call.cell(1));
    return order ? cell::integer(*order < 0 ? -1 : *order > 0 ? 1 : 0) : Cell{};
}

int order_ignoring_case(Call& call)
{
    if (is_ascii(call.text(0)) && is_ascii(call.text(1))) {
        return lower_ascii(call.text(0)).compare(lower_ascii(call.text(1)));
    }
    return unicode(call.text(0)).caseCompare(unicode(call.text(1)), U_FOLD_CASE_DEFAULT);
}

Cell resource(Call& call)
{
    auto text = call.environment.resource(call.text(0));
    return text ? cell::text(std::move(*text)) : Cell{};
}

/// Bytes written into a definition, for an image: the address that names them.
Cell embedded_bytes(const std::string& base64)
{
    return cell::text("data:;base64," + base64);
}

bool is_blank(const std::string& text)
{
    return text.find_first_not_of(" \t\r\n\f") == std::string::npos;
}

using enum ValueClass;

// clang-format off
constexpr auto kFunctions = std::to_array<Function>({
    {".", "equals",    "ao", Boolean, [](Call& c) { return cell::boolean(same(c.cell(0), c.cell(1))); }},
    {".", "compareTo", "aa", Integer, compare_to},
    {".", "toString",  "a",  Text,    [](Call& c) { return text_of(c.cell(0)); }},
    {".", "trim",      "t",  Text,    trimmed_text},
    {".", "strip",     "t",  Text,    trimmed_text},
    {".", "intern",    "t",  Text,    [](Call& c) { return c.cell(0); }},
    {".", "isEmpty",   "t",  Boolean, [](Call& c) { return cell::boolean(c.text(0).empty()); }},
    {".", "isBlank",   "t",  Boolean, [](Call& c) { return cell::boolean(is_blank(c.text(0))); }},
    {".", "length",    "t",  Integer, [](Call& c) { return cell::integer(static_cast<int64_t>(utf16_size(c.text(0)))); }},
    {".", "equalsIgnoreCase",    "to", Boolean, [](Call& c) { return cell::boolean(c.cell(1).get_if<std::string>() != nullptr && order_ignoring_case(c) == 0); }},
    {".", "compareToIgnoreCase", "tt", Integer, [](Call& c) { return cell::integer(order_ignoring_case(c)); }},
    {".", "substring",   "ti",  Text, rest_of},
    {".", "substring",   "tii", Text, [](Call& c) { return part_of(c.text(0), c.integer(1), c.integer(2)); }},
    {".", "toUpperCase", "t",   Text, upper, true},
    {".", "toLowerCase", "t",   Text, lower, true},
    {".", "indexOf",     "tt",  Integer, index_of},
    {".", "indexOf",     "tti", Integer, index_from},
    {".", "indexOf",     "ti",  Integer, index_of_character},
    {".", "lastIndexOf", "tt",  Integer, last_index_of},
    {".", "charAt",      "ti",  Character, char_at},
    {".", "contains",    "tt",  Boolean, [](Call& c) { return cell::boolean(c.text(0).find(c.text(1)) != std::string::npos); }},
    {".", "startsWith",  "tt",  Boolean, [](Call& c) { return cell::boolean(c.text(0).starts_with(c.text(1))); }},
    {".", "endsWith",    "tt",  Boolean, [](Call& c) { return cell::boolean(c.text(0).ends_with(c.text(1))); }},
    {".", "concat",      "tt",  Text, plus_text},
    {".", "append",      "to",  Text, plus_text},
    {".", "repeat",      "ti",  Text, repeated},
    {".", "replace",     "ttt", Text, replace},
    {".", "replaceAll",  "ttt", Text, [](Call& c) { return replace_pattern(c, true); }},
    {".", "replaceFirst", "ttt", Text, [](Call& c) { return replace_pattern(c, false); }},
    {".", "matches",     "tt",  Boolean, matches},
    {".", "split",       "tt",  List, split_list},
    {".", "split",       "tti", List, split_list},
    {".", "contentEquals", "tt", Boolean, [](Call& c) { return cell::boolean(c.text(0) == c.text(1)); }},
    {".", "hashCode",    "a",   Integer, [](Call& c) { return cell::integer(hash_code(c.cell(0))); }},
    {".", "formatted",   "t*",  Text, [](Call& c) { auto made = formatted(c.text(0), c.arguments.subspan(1), c.locale()); return made ? cell::text(std::move(*made)) : Cell{}; }, true},
    {".", "booleanValue", "b",  Boolean, [](Call& c) { return c.cell(0); }},
    {".", "charValue",   "i",   Character, [](Call& c) { return cell::integer(c.integer(0), Character); }},

    {"String", "valueOf", "o",  Text, [](Call& c) { return text_of(c.cell(0)); }},
    {"String", "join",    "t*", Text, joined_with},
    {"Boolean", "valueOf",      "b", Boolean, [](Call& c) { return c.cell(0); }},
    {"Boolean", "valueOf",      "t", Boolean, [](Call& c) { return cell::converted(c.cell(0), Boolean); }},
    {"Boolean", "parseBoolean", "t", Boolean, [](Call& c) { return cell::converted(c.cell(0), Boolean); }},
    {"Boolean", "toString",     "b", Text,    [](Call& c) { return text_of(c.cell(0)); }},
    {"Objects", "equals",   "oo", Boolean, [](Call& c) { return cell::boolean(same(c.cell(0), c.cell(1))); }},
    {"Objects", "isNull",   "o",  Boolean, [](Call& c) { return cell::boolean(c.cell(0).is_null()); }},
    {"Objects", "nonNull",  "o",  Boolean, [](Call& c) { return cell::boolean(!c.cell(0).is_null()); }},
    {"Objects", "toString", "o",  Text,    [](Call& c) { return text_of(c.cell(0)); }},
    {"Objects", "toString", "oo", Text,    [](Call& c) { return c.cell(0).is_null() ? c.cell(1) : text_of(c.cell(0)); }},
    {"Character", "toString",    "i", Text,    [](Call& c) { return text_of(cell::integer(c.integer(0), Character)); }},
    {"Character", "valueOf",     "i", Character, [](Call& c) { return cell::integer(c.integer(0), Character); }},
    {"Character", "isDigit",     "i", Boolean, [](Call& c) { return cell::boolean(c.integer(0) >= '0' && c.integer(0) <= '9'); }},
    {"Character", "isLetter",    "i", Boolean, [](Call& c) { return cell::boolean(u_isalpha(static_cast<UChar32>(c.integer(0))) != 0); }},
    {"Character", "isLetterOrDigit", "i", Boolean, [](Call& c) { return cell::boolean(u_isalnum(static_cast<UChar32>(c.integer(0))) != 0); }},
    {"Character", "isWhitespace", "i", Boolean, [](Call& c) { return cell::boolean(u_isWhitespace(static_cast<UChar32>(c.integer(0))) != 0); }},
    {"Character", "isUpperCase", "i", Boolean, [](Call& c) { return cell::boolean(u_isupper(static_cast<UChar32>(c.integer(0))) != 0); }},
    {"Character", "isLowerCase", "i", Boolean, [](Call& c) { return cell::boolean(u_islower(static_cast<UChar32>(c.integer(0))) != 0); }},
    {"Character", "getNumericValue", "i", Integer, [](Call& c) { return cell::integer(u_digit(static_cast<UChar32>(c.integer(0)), 36)); }},
    {"Character", "toLowerCase", "i", Character, [](Call& c) { return cell::integer(u_tolower(static_cast<UChar32>(c.integer(0))), Character); }},
    {"Character", "toUpperCase", "i", Character, [](Call& c) { return cell::integer(u_toupper(static_cast<UChar32>(c.integer(0))), Character); }},

    {"new", "String",  "",  Text,    [](Call&)   { return cell::text(""); }},
    {"new", "String",  "t", Text,    [](Call& c) { return c.cell(0); }},
    {"new", "Boolean", "b", Boolean, [](Call& c) { return c.cell(0); }},
    {"new", "Boolean", "t", Boolean, [](Call& c) { return cell::converted(c.cell(0), Boolean); }},
    {"new", "StringBuilder", "",  Text, [](Call&)   { return cell::text(""); }},
    {"new", "StringBuilder", "t", Text, [](Call& c) { return c.cell(0); }},
    {"new", "StringBuffer",  "",  Text, [](Call&)   { return cell::text(""); }},
    {"new", "StringBuffer",  "t", Text, [](Call& c) { return c.cell(0); }},
    {"new", "File",         "t", Text, [](Call& c) { return c.cell(0); }},
    {"new", "java.io.File", "t", Text, [](Call& c) { return c.cell(0); }},
    {"new", "ByteArrayInputStream",         "t", Text, [](Call& c) { return c.cell(0); }},
    {"new", "java.io.ByteArrayInputStream", "t", Text, [](Call& c) { return c.cell(0); }},
    {".", "getBytes", "t",  Text, [](Call& c) { return c.cell(0); }},
    {".", "decode",   "tt", Text, [](Call& c) { return embedded_bytes(c.text(1)); }},
    {"Base64", "getDecoder",     "",  Text, [](Call&) { return cell::text("base64"); }},
    {"Base64", "getMimeDecoder", "",  Text, [](Call&) { return cell::text("base64"); }},
    {"Base64", "decodeBase64",   "t", Text, [](Call& c) { return embedded_bytes(c.text(0)); }},
    {"org.apache.commons.codec.binary.Base64", "decodeBase64", "t", Text, [](Call& c) { return embedded_bytes(c.text(0)); }},
    {"Locale", "forLanguageTag", "t", Text, [](Call& c) { return cell::text(replaced(c.text(0), "-", "_")); }},
    {"Locale", "getDefault", "", Text, [](Call& c) { return cell::text(c.locale()); }, true},
    {"new", "Locale", "t",  Text, [](Call& c) { return c.cell(0); }},
    {"new", "Locale", "tt", Text, [](Call& c) { return cell::text(c.text(0) + "_" + c.text(1)); }},

    {"", "str",         "t",   Text,    resource, true},
    {"", "EQUALS",      "oo",  Boolean, [](Call& c) { return cell::boolean(same(c.cell(0), c.cell(1))); }},
    {"", "ISNULL",      "o",   Boolean, [](Call& c) { return cell::boolean(c.cell(0).is_null()); }},
    {"", "ISBLANK",     "o",   Boolean, [](Call& c) { return cell::boolean(c.cell(0).is_null() || (c.cell(0).get_if<std::string>() != nullptr && is_blank(c.text(0)))); }},
    {"", "CONCATENATE", "*",   Text,    joined_all},
    {"", "UPPER",       "t",   Text,    upper, true},
    {"", "LOWER",       "t",   Text,    lower, true},
    {"", "PROPER",      "t",   Text,    title_case, true},
    {"", "TRIM",        "t",   Text,    trimmed_text},
    {"", "LEN",         "t",   Integer, [](Call& c) { return cell::integer(static_cast<int64_t>(utf16_size(c.text(0)))); }},
    {"", "LEFT",        "ti",  Text,    first_characters},
    {"", "RIGHT",       "ti",  Text,    last_characters},
    {"", "MID",         "tii", Text,    middle_characters},
    {"", "REPT",        "ti",  Text,    repeated},
    {"", "SUBSTITUTE",  "ttt", Text,    replace},
});
// clang-format on

}  // namespace

int64_t hash_code(const Cell& value)
{
    if (const auto* text = value.get_if<std::string>()) {
        const auto units = unicode(*text);
        uint32_t hash = 0;
        for (int32_t at = 0; at < units.length(); ++at) hash = hash * 31 + units[at];
        return static_cast<int32_t>(hash);
    }
    if (const auto* flag = value.get_if<bool>()) return *flag ? 1231 : 1237;
    const auto* number = value.get_if<double>();
    const auto bits =
        number != nullptr ? std::bit_cast<uint64_t>(*number) : static_cast<uint64_t>(cell::to_integer(value));
    const bool wide = number != nullptr || value.value_class == ValueClass::Long;
    return static_cast<int32_t>(wide ? bits ^ (bits >> 32) : bits);
}

bool same(const Cell& left, const Cell& right)
{
    if (left.is_null() || right.is_null()) return left.is_null() && right.is_null();
    if (is_date(left.value_class) && is_date(right.value_class)) return cell::equal(left, right);
    const bool texts = is_text(left.value_class) && is_text(right.value_class);
    if (left.value_class != right.value_class && !texts) return false;
    if (const auto* decimal = left.get_if<engine::Decimal>()) {
        if (decimal->scale() != right.get_if<engine::Decimal>()->scale()) return false;
    }
    return cell::equal(left, right);
}

std::span<const Function> text_functions()
{
    return kFunctions;
}

}  // namespace velora::engine
