#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "definitions/shipped.h"

namespace velora {
namespace {

std::string text_of(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

auto words_of(const std::string& language)
{
    return engine::read_properties(text_of(kDefinitions / ("velora" + language + ".properties")));
}

std::set<std::string> keys_of(const std::string& language)
{
    std::set<std::string> keys;
    for (const auto& [key, word] : words_of(language)) keys.insert(key);
    return keys;
}

TEST(Language, EveryWordOfADefinitionIsThereInEveryLanguageAndNoneIsLeftOver)
{
    std::set<std::string> asked;
    const std::regex reference(R"(\$R\{([^}]*)\})");
    for (const auto& shipped : kShipped) {
        const std::string text = text_of(definition_file(shipped.name));
        for (std::sregex_iterator found(text.begin(), text.end(), reference), end; found != end; ++found) {
            asked.insert((*found)[1]);
        }
        const std::regex written(R"(<text>(?:<!\[CDATA\[)?[^<]*[A-Za-z]{2})");
        EXPECT_FALSE(std::regex_search(text, written)) << shipped.name << " holds a word of its own";
    }
    for (const char* language : {"", "_fr", "_de", "_es"}) EXPECT_EQ(keys_of(language), asked) << language;
}

TEST(Language, AreThoseOfTheRegionWithItsDates)
{
    struct Case {
        const char *locale, *title, *date, *page;
    };
    for (const Case& c :
         {Case{"en_US", "QUOTE", "Jun 8, 2026", "Page 1 of"}, Case{"fr_CA", "DEVIS", "8 juin 2026", "Page 1 de"},
          Case{"de_AT", "ANGEBOT", "08.06.2026", "Seite 1 von"},
          Case{"es", "PRESUPUESTO", "8 jun 2026", "P\xC3\xA1gina 1 de"},
          Case{"nl_NL", "QUOTE", "8 jun 2026", "Page 1 of"}}) {
        HeldRows rows = golden_rows("Quote");
        rows.rewind();
        const Filled report = fill_shipped("Quote", rows, c.locale);
        const auto& page = report.pages.pages.front();
        EXPECT_TRUE(shows(page, c.title)) << c.locale;
        EXPECT_TRUE(shows(page, c.date)) << c.locale;
        EXPECT_TRUE(shows(page, c.page)) << c.locale;
        EXPECT_EQ(report.warnings, std::vector<std::string>{}) << c.locale;
    }
}

TEST(Language, TheFileIsCalledAfterItsDocumentInTheWordsOfTheRegion)
{
    struct Case {
        const char *definition, *locale;
        Parameters parameters;
        const char* title;
    };
    const Parameters numbered{{"Document Number", "Q-10052"}};
    for (const Case& c :
         {Case{"Quote", "en_US", numbered, "Quote Q-10052"}, Case{"Quote, Taxes", "fr_CA", numbered, "Devis Q-10052"},
          Case{"Confirmation, Taxes", "de_DE", numbered, "Auftragsbest\xC3\xA4tigung Q-10052"},
          Case{"Picking Slip", "en_US", {}, "Picking slip"}, Case{"Customer List", "es_ES", {}, "Lista de clientes"}}) {
        HeldRows rows = golden_rows(c.definition);
        EXPECT_EQ(fill_shipped(c.definition, rows, c.locale, c.parameters).pages.document.title, c.title);
    }
}

}  // namespace
}  // namespace velora
