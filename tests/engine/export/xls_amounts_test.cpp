#include "engine/export/sample_pages.h"
#include "support/readers.h"

namespace velora::engine {
namespace {

struct Case {
    const char *why, *text;
    const char* value;   ///< as another program reads it; null for a text
    const char* format;  ///< code
};

/// The cells of a page that shows the texts below each other.
std::vector<readers::XlsCell> cells_of(std::span<const Case> cases, HorizontalAlign align, const char* locale = "en_CA")
{
    SamplePages sample;
    sample.document.locale = locale;
    sample.document.page_height = 4000;
    Style style = sample.style();
    style.horizontal = align;
    int32_t y = 20;
    for (const Case& c : cases) sample.add_text({20, y += 20, 300, 12}, c.text, style);
    return readers::xls_book(sample.print("amounts.xls")).filled();
}

void expect_cells(std::span<const Case> cases, const char* locale = "en_CA")
{
    const auto cells = cells_of(cases, HorizontalAlign::Right, locale);
    ASSERT_EQ(cells.size(), cases.size());
    for (size_t i = 0; i < cells.size(); ++i) {
        const Case& c = cases[i];
        EXPECT_EQ(cells[i].kind, c.value != nullptr ? "number" : "text") << c.why << ": " << c.text;
        EXPECT_EQ(cells[i].value, c.value != nullptr ? c.value : "") << c.why << ": " << c.text;
        EXPECT_EQ(cells[i].format, c.value != nullptr ? c.format : "General") << c.why << ": " << c.text;
    }
}

// clang-format off
constexpr Case kCases[] = {
    {"two decimals",                         "1,234.50",       "1234.5",      "#,##0.00"},
    {"no group yet",                         "7.05",           "7.05",        "0.00"},
    {"groups upon groups",                   "12,345,678.9",   "12345678.9",  "#,##0.0"},
    {"without group marks",                  "1234.50",        "1234.5",      "0.00"},
    {"a small whole number",                 "12",             "12.0",        "0"},
    {"naught",                               "0.00",           "0.0",         "0.00"},
    {"parentheses",                          "(1,234.50)",     "-1234.5",     "#,##0.00;(#,##0.00)"},
    {"a minus in front",                     "-1,234.50",      "-1234.5",     "#,##0.00;-#,##0.00"},
    {"a minus behind",                       "1,234.50-",      "-1234.5",     "#,##0.00;#,##0.00-"},
    {"a true minus",                         "\u22125.25",     "-5.25",       "0.00;\"\u2212\"0.00"},
    {"a currency's sign",                    "$1,234.50",      "1234.5",      "\"$\"#,##0.00"},
    {"behind the minus",                     "-$5.00",         "-5.0",        "\"$\"0.00;-\"$\"0.00"},
    {"within parentheses",                   "($5.00)",        "-5.0",        "\"$\"0.00;(\"$\"0.00)"},
    {"a currency's code",                    "CAD 1,234.50",   "1234.5",      "\"CAD\" #,##0.00"},
    {"its code behind",                      "(1,234.50 CAD)", "-1234.5",     "#,##0.00 \"CAD\";(#,##0.00 \"CAD\")"},
    {"a sign behind a blank that holds",     "5.00\u00A0\u20AC", "5.0",       "0.00\"\u00A0\u20AC\""},
    {"an abbreviation",                      "Fr. 5.00",       "5.0",         "\"Fr.\" 0.00"},
    {"percent",                              "12.5%",          "0.125",       "0.0%"},
    {"percent behind a blank",               "7 %",            "0.07",        "0 %"},
    {"a unit",                               "2.50 kg",        "2.5",         "0.00 \"kg\""},
    {"decimals by a comma",                  "91.386,66",      "91386.66",    "#,##0.00"},
    {"groups by blanks",                     "91 386,66",      "91386.66",    "#,##0.00"},
    {"groups by blanks that hold",           "1\u202F386",     "1386.0",      "#,##0"},
    {"groups by apostrophes",                "91'386.66",      "91386.66",    "#,##0.00"},
    {"groups by curled ones",                "1\u2019386.66",  "1386.66",     "#,##0.00"},
    {"fifteen figures",                      "1,234,567,890,123.45", "1234567890123.45", "#,##0.00"},

    {"more figures than a number holds",     "12,345,678,901,234.56", nullptr, ""},
    {"an item number",                       "00123",          nullptr, ""},
    {"a zero in front of an amount",         "0123.50",        nullptr, ""},
    {"a zero in front of a group",           "01,234",         nullptr, ""},
    {"figures that would have been grouped", "1310",           nullptr, ""},
    {"a telephone number",                   "(905) 555-0100", nullptr, ""},
    {"a short one",                          "555-0100",       nullptr, ""},
    {"a document's number",                  "Q-10049",        nullptr, ""},
    {"a word in front of a bare number",     "No. 5",          nullptr, ""},
    {"days",                                 "30 days",        nullptr, ""},
    {"a bare number with a unit",            "12 EA",          nullptr, ""},
    {"a line's number",                      "5.",             nullptr, ""},
    {"no figure in front of the mark",       ".50",            nullptr, ""},
    {"a date",                               "12.05.2026",     nullptr, ""},
    {"another",                              "2026-06-15",     nullptr, ""},
    {"a time",                               "10:30",          nullptr, ""},
    {"a version",                            "1.2.3",          nullptr, ""},
    {"groups of four",                       "1,2345,678.00",  nullptr, ""},
    {"groups of two",                        "12,34,567.00",   nullptr, ""},
    {"a group of four figures in front",     "1234,567.00",    nullptr, ""},
    {"two marks for groups",                 "1,234'567.00",   nullptr, ""},
    {"a fraction",                           "1/2",            nullptr, ""},
    {"an inch",                              "5.5\"",          nullptr, ""},
    {"a sum",                                "1.50 + 2.50",    nullptr, ""},
    {"words",                                "5.00 per metre", nullptr, ""},
    {"two percents",                         "5.0%%",          nullptr, ""},
    {"no figure at all",                     "-",              nullptr, ""},
};
// clang-format on

TEST(XlsAmounts, ATextThatIsAnAmountBecomesANumberThatLooksTheSame)
{
    expect_cells(kCases);
}

TEST(XlsAmounts, ASpreadsheetShowsTheCharactersOfTheText)
{
    const auto cells = cells_of(kCases, HorizontalAlign::Right);
    for (size_t i = 0; i < cells.size(); ++i) {
        // A spreadsheet has the marks of its user.
        const bool own_marks =
            cells[i].kind == "text" || std::string_view(kCases[i].why).find("by ") == std::string::npos;
        if (own_marks) {
            EXPECT_EQ(cells[i].shown, kCases[i].text);
        }
    }
}

TEST(XlsAmounts, OnlyWhatStandsAtTheRightIsAnAmount)
{
    for (const auto align : {HorizontalAlign::Left, HorizontalAlign::Center, HorizontalAlign::Justified}) {
        for (const auto& cell : cells_of(kCases, align)) EXPECT_EQ(cell.kind, "text") << cell.shown;
    }
}

TEST(XlsAmounts, OneMarkAloneIsReadAsInTheRestOfTheDocument)
{
    constexpr Case kPoint[] = {{"a decimal point elsewhere", "7.05", "7.05", "0.00"},
                               {"so this one groups", "1,234", "1234.0", "#,##0"},
                               {"and this one does not", "1.234", "1.234", "0.000"},
                               {"below naught", "($1,234)", "-1234.0", "\"$\"#,##0;(\"$\"#,##0)"}};
    expect_cells(kPoint, "de_DE");
    constexpr Case kComma[] = {{"this one groups", "1.234", "1234.0", "#,##0"},
                               {"this one does not", "1,234", "1.234", "0.000"},
                               {"a decimal comma elsewhere", "7,05", "7.05", "0.00"}};
    expect_cells(kComma, "en_CA");
    constexpr Case kBoth[] = {{"a decimal point", "7.05", "7.05", "0.00"},
                              {"a decimal comma", "7,05", "7.05", "0.00"},
                              {"nobody knows", "1,234", nullptr, ""},
                              {"nor here", "1.234", nullptr, ""}};
    expect_cells(kBoth);
    constexpr Case kEnglish[] = {{"the region tells", "1,234", "1234.0", "#,##0"}};
    expect_cells(kEnglish, "en_CA");
    constexpr Case kGerman[] = {{"the region tells", "1,234", "1.234", "0.000"}};
    expect_cells(kGerman, "de_DE");
    constexpr Case kNaught[] = {{"no group begins with naught", "0,125", "0.125", "0.000"}};
    expect_cells(kNaught, "en_CA");
}

}  // namespace
}  // namespace velora::engine
