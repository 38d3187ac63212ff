#include "definitions/shipped.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

#include "reports/kinds.h"
#include "support/same_page.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

std::string test_name(const testing::TestParamInfo<Shipped>& info)
{
    std::string name = info.param.name;
    std::erase_if(name, [](char c) { return c == ' ' || c == ','; });
    return name;
}

INSTANTIATE_TEST_SUITE_P(Shipped, EachDefinition, testing::ValuesIn(kShipped), test_name);

/// The pages as the print form keeps them.
engine::PageList read_back(const fs::path& file)
{
    engine::PageList pages;
    engine::read_print_xml(file_text(file), pages);
    return pages;
}

void write_print_form(Filled report, const fs::path& file)
{
    engine::FontStore fonts(VELORA_SOURCE_DIR "/fonts");
    const auto sink = engine::make_exporter("xml", file, {fonts, {}});
    sink->begin(report.pages.document);
    for (auto& page : report.pages.pages) sink->page(std::move(page));
    sink->end();
}

/// The first text that one of the pages has and the other lacks, for the message.
std::string difference(const engine::Page& golden, const engine::Page& now)
{
    const auto before = texts_of(golden);
    const auto after = texts_of(now);
    for (size_t at = 0; at < std::max(before.size(), after.size()); ++at) {
        const std::string old_text = at < before.size() ? before[at].text : "nothing";
        const std::string new_text = at < after.size() ? after[at].text : "nothing";
        if (old_text != new_text) return "\"" + old_text + "\" became \"" + new_text + "\"";
        if (before[at].place != after[at].place) return "\"" + old_text + "\" moved";
    }
    return "a look, a line or a drawing differs";
}

/// Pages are compared as they are read back, so that the golden files outlive changes of the file's form.
/// VELORA_RENEW_GOLDEN=1 writes them anew.
TEST_P(EachDefinition, GivesTheGoldenPages)
{
    const std::string name = GetParam().name;
    HeldRows rows = golden_rows(name);
    const Filled report = fill_shipped(name, rows);
    EXPECT_EQ(report.warnings, std::vector<std::string>{});

    const fs::path golden = kGolden / (name + ".xml");
    if (std::getenv("VELORA_RENEW_GOLDEN") != nullptr) {
        HeldRows again = golden_rows(name);
        write_print_form(fill_shipped(name, again), golden);
        GTEST_SKIP() << "renewed " << golden;
    }
    fs::create_directories(VELORA_TEST_SCRATCH);
    const fs::path now = fs::path(VELORA_TEST_SCRATCH) / (name + ".xml");
    HeldRows again = golden_rows(name);
    write_print_form(fill_shipped(name, again), now);

    const auto expected = read_back(golden);
    const auto given = read_back(now);
    ASSERT_EQ(given.pages.size(), expected.pages.size()) << "see " << now;
    for (size_t page = 0; page < expected.pages.size(); ++page) {
        EXPECT_TRUE(engine::same_page(expected.pages[page], given.pages[page]))
            << "page " << page + 1 << ": " << difference(expected.pages[page], given.pages[page]) << ", see " << now;
    }
}

/// The class that a designer gives to a field of the pipe.
std::string class_of(ado::Type type)
{
    switch (type) {
        case ado::Integer:
        case ado::TinyInt:
            return "java.lang.Integer";
        case ado::Single:
            return "java.lang.Float";
        case ado::Date:
        case ado::DBTimeStamp:
            return "java.util.Date";
        case ado::Boolean:
            return "java.lang.Boolean";
        default:
            return "java.lang.String";
    }
}

TEST_P(EachDefinition, AsksOnlyForFieldsOfItsKindInTheirClass)
{
    const auto* kind = find_report_kind(GetParam().kind);
    ASSERT_NE(kind, nullptr);
    if (kind->fields == nullptr) GTEST_SKIP() << "the builder of " << kind->name << " is not part of this build";
    const auto list = kind->fields();
    std::vector<engine::Warning> met;
    for (const auto& field : engine::read_definition_file(definition_file(GetParam().name), met).data.fields) {
        const auto found = std::ranges::find(list, field.name, &PipeField::name);
        const bool optional = engine::model::property_value(field.properties, "velora.optional") == "true";
        if (found == list.end() && optional) continue;
        ASSERT_NE(found, list.end()) << field.name;
        // slips of whole quantities hand them over as numbers; as text both kinds of slip can be shown
        if (field.name == "Detail Quantity") continue;
        EXPECT_EQ(field.class_name, class_of(found->type)) << field.name;
    }
}

bool overlap(const engine::Place& a, const engine::Place& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

void expect_tidy(const Filled& report, const std::string& what)
{
    const auto& document = report.pages.document;
    for (size_t number = 0; number < report.count(); ++number) {
        const auto texts = texts_of(report.pages.pages[number]);
        for (size_t at = 0; at < texts.size(); ++at) {
            const auto& [text, place, cut] = texts[at];
            EXPECT_FALSE(cut) << what << ": cut: " << text;
            EXPECT_LE(place.x + place.width, document.page_width - document.right_margin) << what << ": " << text;
            EXPECT_LE(place.y + place.height, document.page_height - document.bottom_margin) << what << ": " << text;
            for (size_t other = at + 1; other < texts.size(); ++other) {
                EXPECT_FALSE(overlap(place, texts[other].place))
                    << what << ", page " << number + 1 << ": " << text << " | " << texts[other].text;
            }
        }
    }
}

TEST_P(EachDefinition, NothingOverlapsAndNothingLeavesThePage)
{
    const std::string name = GetParam().name;
    HeldRows rows = golden_rows(name);
    for (const char* locale : {"en_US", "en_CA", "fr_CA", "de_DE", "es_ES"}) {
        expect_tidy(fill_shipped(name, rows, locale), name + " in " + locale);
    }

    HeldRows many = golden_rows(name);
    const auto once = many.rows;
    while (many.rows.size() < 60) many.rows.insert(many.rows.end(), once.begin(), once.end());
    const Filled report = fill_shipped(name, many);
    EXPECT_GT(report.count(), 1U);
    expect_tidy(report, name + " with many rows");

    HeldRows wide = golden_rows(name);
    const std::string words = "An unusually long entry that somebody typed into this field without much thought";
    for (auto& row : wide.rows) {
        for (size_t at = 0; at < row.size(); ++at) {
            const std::string& field = wide.columns[at].name;
            const bool prose = field.ends_with("Name") || field.ends_with("Desc") || field.ends_with("Description") ||
                               field.find("Address") != std::string::npos || field.ends_with("Notes");
            if (prose && !row[at].is_null()) row[at] = words;
        }
    }
    expect_tidy(fill_shipped(name, wide), name + " with long texts");
}

TEST_P(EachDefinition, NullsAreBlank)
{
    const std::string name = GetParam().name;
    HeldRows rows = golden_rows(name);
    rows.rows.resize(1);
    std::ranges::fill(rows.rows.front(), Value());
    const Filled report = fill_shipped(name, rows);
    ASSERT_EQ(report.count(), 1U);
    for (const auto& placed : texts_of(report.pages.pages.front())) {
        EXPECT_EQ(placed.text.find("null"), std::string::npos) << placed.text;
    }
    EXPECT_EQ(report.warnings, std::vector<std::string>{});
}

TEST(ShippedDefinitions, NoneIsLeftOutOfTheTests)
{
    std::set<std::string> drawn;
    for (const auto& entry : fs::directory_iterator(kDefinitions)) {
        if (entry.path().extension() == ".rpt") drawn.insert(entry.path().stem().string());
    }
    std::set<std::string> tested;
    for (const auto& shipped : kShipped) tested.insert(shipped.name);
    EXPECT_EQ(drawn, tested);
}

}  // namespace
}  // namespace velora
