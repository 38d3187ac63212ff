#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "engine/plan/compiled_report.h"
#include "page_lines.h"
#include "support.h"

/// The layout cases: small definitions under tests/golden/layout, each for one rule, with the pages that the peer of
/// `bench/peer` makes of them. `bench/peer/make-layout-pages` writes the expected pages.
namespace velora::engine {
namespace {

namespace fs = std::filesystem;

const fs::path kCases = fs::path(VELORA_SOURCE_DIR) / "tests/golden/layout";

std::vector<std::string> split(const std::string& line, char at)
{
    std::vector<std::string> parts(1);
    for (const char c : line) c == at ? void(parts.emplace_back()) : parts.back().push_back(c);
    return parts;
}

std::vector<std::string> lines_of(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// The rows that a case names in its property "rows": a CSV file beside it, or a number of rows without fields.
TestTable rows_of(const model::Definition& definition)
{
    const std::string source(model::property_value(definition.data.properties, "rows").value_or("1"));
    if (!source.ends_with(".csv")) return TestTable(std::stoul(source));
    std::vector<TableSource::Field> fields;
    std::vector<std::vector<Value>> rows;
    for (const auto& line : lines_of(fs::path(definition.folder) / source)) {
        if (fields.empty()) {
            for (const auto& name : split(line, ',')) fields.push_back({name, Value::Type::Text});
            continue;
        }
        auto& cells = rows.emplace_back();
        for (const auto& cell : split(line, ',')) cells.push_back(cell.empty() ? Value() : Value(cell));
    }
    return {std::move(fields), std::move(rows)};
}

/// Where the pages differ first; empty when they are the same.
std::string difference(const std::vector<std::string>& expected, const std::vector<std::string>& got)
{
    size_t page = 0;
    size_t element = 0;
    for (size_t at = 0; at < std::max(expected.size(), got.size()); ++at) {
        const std::string want = at < expected.size() ? expected[at] : "nothing";
        const std::string have = at < got.size() ? got[at] : "nothing";
        if (have == "<page>" && want == have) {
            ++page;
            element = 0;
            continue;
        }
        ++element;
        if (want != have) {
            return "page " + std::to_string(page) + ", element " + std::to_string(element) + "\n  expected " + want +
                   "\n  got      " + have;
        }
    }
    return {};
}

std::vector<std::string> filled_lines(const fs::path& file)
{
    std::vector<std::string> warnings;
    const auto report = open_report(file, warnings);
    TestTable table = rows_of(report->definition());
    FillOptions options;
    options.warn = [&](const std::string& text) { warnings.push_back(text); };
    PageList pages;
    fill(*report, table, test_measurer(), options, pages);
    EXPECT_EQ(warnings, std::vector<std::string>{});
    return page_lines(pages.pages);
}

class LayoutCases : public testing::TestWithParam<std::string> {};

std::vector<std::string> families()
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(kCases)) {
        if (entry.is_directory()) names.insert(entry.path().filename().string());
    }
    return {names.begin(), names.end()};
}

INSTANTIATE_TEST_SUITE_P(Each, LayoutCases, testing::ValuesIn(families()),
                         [](const auto& family) { return family.param; });

/// What is made is kept in the test's scratch folder, to be compared as a whole.
TEST_P(LayoutCases, GiveThePagesThatTheyMust)
{
    const fs::path made = fs::path(VELORA_TEST_SCRATCH) / "layout" / GetParam();
    fs::create_directories(made);
    for (const auto& entry : fs::directory_iterator(kCases / GetParam())) {
        if (entry.path().extension() != ".jrxml") continue;
        const fs::path pages = fs::path(entry.path()).replace_extension(".xml");
        SCOPED_TRACE(GetParam() + "/" + entry.path().filename().string());
        const auto got = filled_lines(entry.path());
        std::ofstream copy(made / pages.filename(), std::ios::binary);
        for (const auto& line : got) copy << line << '\n';
        EXPECT_EQ(difference(lines_of(pages), got), "");
    }
}

}  // namespace
}  // namespace velora::engine
