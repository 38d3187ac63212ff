#include "adapters/sqlite/server_answers.h"

#include <array>

#include "values/text.h"

namespace velora::sqlite {

namespace {

struct Language {
    int id;
    std::string_view name, alias, dateformat;
    DateOrder order;
};

// clang-format off
constexpr auto kLanguages = std::to_array<Language>({
    {0,  "us_english", "English",         "mdy", DateOrder::MonthDayYear},
    {1,  "Deutsch",    "German",          "dmy", DateOrder::DayMonthYear},
    {2,  "Français",   "French",          "dmy", DateOrder::DayMonthYear},
    {3,  "日本語",     "Japanese",        "ymd", DateOrder::YearMonthDay},
    {5,  "Español",    "Spanish",         "dmy", DateOrder::DayMonthYear},
    {6,  "Italiano",   "Italian",         "dmy", DateOrder::DayMonthYear},
    {7,  "Nederlands", "Dutch",           "dmy", DateOrder::DayMonthYear},
    {23, "British",    "British English", "dmy", DateOrder::DayMonthYear},
});
// clang-format on

std::string configured_language(int language)
{
    const std::string id = std::to_string(language);
    return "SELECT 'default language' AS name, 0 AS minimum, 9999 AS maximum, " + id + " AS config_value, " + id +
           " AS run_value";
}

std::string language_list()
{
    std::string sql =
        "SELECT column1 AS langid, column2 AS dateformat, column3 AS name, column4 AS alias FROM (VALUES ";
    for (const auto& language : kLanguages) {
        if (language.id != kLanguages.front().id) sql += ", ";
        sql += "(" + std::to_string(language.id);
        for (const auto text : {language.dateformat, language.name, language.alias}) {
            sql += ", '" + std::string(text) + "'";
        }
        sql += ")";
    }
    return sql + ")";
}

}  // namespace

std::optional<std::string> batch_statement(std::string_view text, int default_language)
{
    while (text.ends_with(';') || text.ends_with(' ')) text.remove_suffix(1);
    if (same_name(text, "sp_configure 'default language'")) return configured_language(default_language);
    if (same_name(text, "sp_helplanguage")) return language_list();
    return std::nullopt;
}

DateOrder date_order_of(int language)
{
    for (const auto& candidate : kLanguages) {
        if (candidate.id == language) return candidate.order;
    }
    return DateOrder::MonthDayYear;
}

}  // namespace velora::sqlite
