#include <algorithm>
#include <array>

#include "engine/expression/functions.h"

namespace velora::engine {

namespace {

using enum ValueClass;

Cell formatter(std::shared_ptr<const Formatter> made)
{
    if (!made) return {};
    return {Object, std::move(made)};
}

Cell dates(Call& call, std::string_view pattern, const std::string& locale)
{
    return formatter(
        call.formatters.get(FormatterCache::Kind::Date, pattern, locale, call.environment.surroundings().time_zone));
}

Cell numbers(Call& call, std::string_view pattern, const std::string& locale)
{
    return formatter(call.formatters.get(FormatterCache::Kind::Number, pattern, locale, {}));
}

/// A style by its number: full, long, medium, short.
std::string_view style_name(int64_t style)
{
    constexpr std::array<std::string_view, 4> kNames{"full", "long", "medium", "short"};
    return kNames[static_cast<size_t>(std::clamp<int64_t>(style, 0, 3))];
}

Cell date_style(Call& call, std::string_view style)
{
    return dates(call, std::string(style) + ",hide", call.locale());
}

Cell date_and_time_style(Call& call)
{
    return dates(call, std::string(style_name(call.integer(0))) + "," + std::string(style_name(call.integer(1))),
                 call.locale());
}

/// Styles of the day and of the time, "hide" for none of one.
Cell styled(Call& call, std::string_view day, std::string_view time, const std::string& locale)
{
    return dates(call, std::string(day) + "," + std::string(time), locale);
}

Cell format(Call& call)
{
    auto text = call.formatter(0).format(call.cell(1));
    return text ? cell::text(std::move(*text)) : Cell{};
}

Cell format_date(Call& call)
{
    const Cell made = dates(call, call.text(1), call.locale());
    if (made.is_null()) return {};
    auto text = (*made.get_if<std::shared_ptr<const Formatter>>())->format(call.cell(0));
    return text ? cell::text(std::move(*text)) : Cell{};
}

Cell print(const std::optional<std::string>& text)
{
    return text ? cell::text(*text) : Cell{};
}

constexpr std::string_view kNumber = "#,##0.###";
constexpr std::string_view kPercent = "#,##0%";

// clang-format off
constexpr auto kFunctions = std::to_array<Function>({
    {"new", "SimpleDateFormat", "",   Object, [](Call& c) { return dates(c, "", c.locale()); }, true},
    {"new", "SimpleDateFormat", "t",  Object, [](Call& c) { return dates(c, c.text(0), c.locale()); }, true},
    {"new", "SimpleDateFormat", "tt", Object, [](Call& c) { return dates(c, c.text(0), c.text(1)); }, true},
    {"new", "DecimalFormat",    "",   Object, [](Call& c) { return numbers(c, kNumber, c.locale()); }, true},
    {"new", "DecimalFormat",    "t",  Object, [](Call& c) { return numbers(c, c.text(0), c.locale()); }, true},
    {"new", "DecimalFormat",    "tt", Object, [](Call& c) { return numbers(c, c.text(0), c.text(1)); }, true},
    {"new", "DecimalFormatSymbols", "t", Text, [](Call& c) { return c.cell(0); }},
    {"DecimalFormatSymbols", "getInstance", "t", Text, [](Call& c) { return c.cell(0); }},

    {"DateFormat", "getDateInstance",     "",   Object, [](Call& c) { return date_style(c, "medium"); }, true},
    {"DateFormat", "getDateInstance",     "i",  Object, [](Call& c) { return date_style(c, style_name(c.integer(0))); }, true},
    {"DateFormat", "getDateInstance",     "it", Object, [](Call& c) { return dates(c, std::string(style_name(c.integer(0))) + ",hide", c.text(1)); }, true},
    {"DateFormat", "getTimeInstance",     "",   Object, [](Call& c) { return styled(c, "hide", "medium", c.locale()); }, true},
    {"DateFormat", "getTimeInstance",     "it", Object, [](Call& c) { return styled(c, "hide", style_name(c.integer(0)), c.text(1)); }, true},
    {"DateFormat", "getDateTimeInstance", "iit", Object, [](Call& c) { return styled(c, style_name(c.integer(0)), style_name(c.integer(1)), c.text(2)); }, true},
    {"DateTimeFormatter", "ofPattern",    "t",  Object, [](Call& c) { return dates(c, c.text(0), c.locale()); }, true},
    {"DateTimeFormatter", "ofPattern",    "tt", Object, [](Call& c) { return dates(c, c.text(0), c.text(1)); }, true},
    {"DateFormat", "getTimeInstance",     "i",  Object, [](Call& c) { return dates(c, "hide," + std::string(style_name(c.integer(0))), c.locale()); }, true},
    {"DateFormat", "getDateTimeInstance", "",   Object, [](Call& c) { return dates(c, "medium", c.locale()); }, true},
    {"DateFormat", "getDateTimeInstance", "ii", Object, date_and_time_style, true},
    {"DateFormat", "getInstance",         "",   Object, [](Call& c) { return dates(c, "", c.locale()); }, true},
    {"NumberFormat", "getInstance",         "",  Object, [](Call& c) { return numbers(c, kNumber, c.locale()); }, true},
    {"NumberFormat", "getInstance",         "t", Object, [](Call& c) { return numbers(c, kNumber, c.text(0)); }, true},
    {"NumberFormat", "getNumberInstance",   "",  Object, [](Call& c) { return numbers(c, kNumber, c.locale()); }, true},
    {"NumberFormat", "getNumberInstance",   "t", Object, [](Call& c) { return numbers(c, kNumber, c.text(0)); }, true},
    {"NumberFormat", "getIntegerInstance",  "",  Object, [](Call& c) { return numbers(c, "#,##0", c.locale()); }, true},
    {"NumberFormat", "getPercentInstance",  "",  Object, [](Call& c) { return numbers(c, kPercent, c.locale()); }, true},
    {"NumberFormat", "getPercentInstance",  "t", Object, [](Call& c) { return numbers(c, kPercent, c.text(0)); }, true},
    {"NumberFormat", "getCurrencyInstance", "",  Object, [](Call& c) { return numbers(c, kCurrencyPattern, c.locale()); }, true},
    {"NumberFormat", "getCurrencyInstance", "t", Object, [](Call& c) { return numbers(c, kCurrencyPattern, c.text(0)); }, true},
    {".", "format", "Fa", Text,   format, true},
    {".", "format", "dF", Text,   [](Call& c) { return print(c.formatter(1).format(c.cell(0))); }},
    {"new", "MessageFormat", "t",  Object, [](Call& c) { return formatter(make_message_formatter(c.text(0), c.locale())); }, true},
    {"new", "MessageFormat", "tt", Object, [](Call& c) { return formatter(make_message_formatter(c.text(0), c.text(1))); }, true},
    {".", "parse",  "Ft", Object, [](Call& c) { return c.formatter(0).parse(c.text(1)); }, true},

    {"String", "format", "t*", Text, [](Call& c) { return print(formatted(c.text(0), c.arguments.subspan(1), c.locale())); }, true},
    {"MessageFormat", "format", "t*", Text, [](Call& c) { return print(message(c.text(0), c.arguments.subspan(1), c.locale())); }, true},
    {"", "msg",        "t*", Text, [](Call& c) { return print(message(c.text(0), c.arguments.subspan(1), c.locale())); }, true},
    {"", "DATEFORMAT", "dt", Text, format_date, true},
});
// clang-format on

}  // namespace

std::span<const Function> format_functions()
{
    return kFunctions;
}

}  // namespace velora::engine
