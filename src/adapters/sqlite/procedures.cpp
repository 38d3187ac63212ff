#include "adapters/sqlite/procedures.h"

#include "values/text.h"

namespace velora::sqlite {

namespace {

struct Procedure {
    std::string_view name;
    std::string_view statement;
};

// clang-format off
constexpr auto kProcedures = std::to_array<Procedure>({
    {"sprQuoteStatus",           "SELECT * FROM QuoteStatus ORDER BY QuoteStatusID"},
    {"sprQuoteStatusActive",     "SELECT * FROM QuoteStatus WHERE qsActive = 1 ORDER BY QuoteStatusID"},
    {"sprQuoteType",             "SELECT * FROM QuoteType ORDER BY QuoteTypeID"},
    {"sprQuoteTypeActive",       "SELECT * FROM QuoteType WHERE qtActive = 1 ORDER BY QuoteTypeID"},
    {"sprQuoteConfidence",       "SELECT * FROM QuoteConfidence ORDER BY QuoteConfidID"},
    {"sprQuoteConfidenceActive", "SELECT * FROM QuoteConfidence WHERE qcActive = 1 ORDER BY QuoteConfidID"},
    {"sprReasons",               "SELECT * FROM Reason ORDER BY ReasonID"},
    {"sprReasonsActive",         "SELECT * FROM Reason WHERE reActive = 1 ORDER BY ReasonID"},
    {"sprQuoteDefaults",         "SELECT * FROM Defaults WHERE Company = ?1"},
    {"sprQuoteOneID",            "SELECT * FROM Quote WHERE QuoteID = ?1"},
    {"sprMiscChargeAll",         "SELECT * FROM DMiscCharge WHERE QuoteID = ?1 ORDER BY Line"},
    {"sprBillToOne",             "SELECT * FROM BillTo WHERE BillToID = ?1"},
    {"sprShipToOne",             "SELECT * FROM ShipTo WHERE ShipToID = ?1"},
    {"sprCustomerOneID",         "SELECT * FROM Customer WHERE CustomerID = ?1"},
    {"sprDetailAll",             "SELECT * FROM Details WHERE QuoteID = ?1 ORDER BY QuoteID, Line"},
    {"sprDetailsCommInsAll",
     "SELECT Details.*, CommIns.CoInType, CommIns.CommIns FROM Details LEFT OUTER JOIN CommIns"
     " ON Details.QuoteID = CommIns.QuoteID AND Details.Line = CommIns.Line"
     " WHERE Details.QuoteID = ?1 ORDER BY Details.QuoteID, Details.Line"},
});

struct Language {
    int id;
    std::string_view name, alias, dateformat;
    DateOrder order;
};

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

std::optional<std::string_view> procedure_statement(std::string_view name)
{
    for (const auto& procedure : kProcedures) {
        if (same_name(procedure.name, name)) return procedure.statement;
    }
    return std::nullopt;
}

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
