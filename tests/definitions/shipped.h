#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "engine/definition/reader.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/exporter.h"
#include "engine/fill/fill.h"
#include "engine/plan/resources.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"
#include "host/tables.h"
#include "support/print_xml_reader.h"

namespace velora {

inline const std::filesystem::path kDefinitions = std::filesystem::path(VELORA_SOURCE_DIR) / "definitions";
inline const std::filesystem::path kGolden = std::filesystem::path(VELORA_SOURCE_DIR) / "tests/golden/definitions";

/// The kind that each shipped definition is drawn for.
struct Shipped {
    const char* name;
    const char* kind;

    friend void PrintTo(const Shipped& shipped, std::ostream* out) { *out << shipped.name; }
};
// clang-format off
inline constexpr auto kShipped = std::to_array<Shipped>({
    {"Quote",               "quote"},
    {"Quote, Taxes",        "quote"},
    {"Confirmation, Taxes", "confirmation"},
    {"Picking Slip",        "picking-slip"},
    {"Order Checklist",     "checklist"},
    {"Customer List",       "customers"},
    {"Item List",           "items"},
    {"Win Loss",            "win-loss"},
    {"Lost Reason",         "lost-reasons"},
    {"Quote Overview",      "overview"},
    {"Quote Expiration",    "expiration"},
    {"Back Order Items",    "back-orders"},
});
// clang-format on

class EachDefinition : public testing::TestWithParam<Shipped> {};

/// Rows in memory that a test may change before the report reads them.
class HeldRows final : public TableSource {
public:
    HeldRows() = default;
    explicit HeldRows(TableSource& from) : columns(from.fields())
    {
        for (from.rewind(); from.next();) {
            auto& row = rows.emplace_back();
            for (size_t at = 0; at < columns.size(); ++at) row.push_back(from.cell(at));
        }
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return columns; }
    bool next() override { return at_ < rows.size() && ++at_; }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t field) const override { return rows[at_ - 1][field]; }

    [[nodiscard]] size_t column(std::string_view name) const
    {
        for (size_t at = 0; at < columns.size(); ++at) {
            if (columns[at].name == name) return at;
        }
        throw std::runtime_error("the rows have no field " + std::string(name));
    }

    std::vector<Field> columns;
    std::vector<std::vector<Value>> rows;

private:
    size_t at_ = 0;
};

inline std::filesystem::path definition_file(const std::string& name)
{
    return kDefinitions / (name + ".rpt");
}

/// The made-up rows that stand beside the golden pages of a definition.
inline HeldRows golden_rows(const std::string& name)
{
    auto rows = read_pipe_json(kGolden / (name + ".json"));
    return HeldRows(rows);
}

struct Filled {
    engine::PageList pages;
    std::vector<std::string> warnings;

    [[nodiscard]] size_t count() const { return pages.pages.size(); }
};

using Parameters = std::map<std::string, Value, std::less<>>;

/// Fills a shipped definition; what it warns of is returned.
inline std::vector<std::string> fill_shipped(const std::string& name, TableSource& rows, engine::PageSink& sink,
                                             const std::string& locale = "en_US", const Parameters& parameters = {})
{
    static engine::FontStore fonts(VELORA_SOURCE_DIR "/fonts");
    static engine::Measurer measurer(fonts);
    std::vector<std::string> warnings;
    std::vector<engine::Warning> met;
    const engine::CompiledReport report(
        std::make_shared<engine::model::Definition>(engine::read_definition_file(definition_file(name), met)));
    for (const auto& warning : met) warnings.push_back(warning.line());
    warnings.insert(warnings.end(), report.warnings().begin(), report.warnings().end());

    engine::FillOptions options;
    options.surroundings.now = *DateTime::from_ymd(2026, 6, 8);
    options.surroundings.locale = locale;
    options.created = options.surroundings.now;
    options.parameters = parameters;
    options.resources = engine::read_resources(report.definition(), locale, warnings);
    options.warn = [&](const std::string& text) { warnings.push_back(text); };
    engine::fill(report, rows, measurer, options, sink);
    return warnings;
}

inline Filled fill_shipped(const std::string& name, TableSource& rows, const std::string& locale = "en_US",
                           const Parameters& parameters = {})
{
    Filled out;
    out.warnings = fill_shipped(name, rows, out.pages, locale, parameters);
    return out;
}

/// A text as it stands on a page.
struct Placed {
    std::string text;
    engine::Place place;
    bool cut = false;
};

inline std::vector<Placed> texts_of(const engine::Page& page)
{
    std::vector<Placed> out;
    engine::walk_elements(page.elements, [&](const engine::Element& element, const engine::Place& place) {
        const auto* text = std::get_if<engine::Text>(&element.content);
        if (text == nullptr || text->text.empty()) return;
        out.push_back({std::string(text->shown()), place, text->shown().size() != text->text.size()});
    });
    return out;
}

inline bool shows(const engine::Page& page, std::string_view text)
{
    const auto texts = texts_of(page);
    return std::ranges::any_of(texts, [&](const Placed& placed) { return placed.text == text; });
}

inline size_t times_shown(const Filled& report, std::string_view text)
{
    size_t times = 0;
    for (const auto& page : report.pages.pages) {
        for (const auto& placed : texts_of(page)) times += placed.text == text ? 1 : 0;
    }
    return times;
}

inline std::string file_text(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace velora
