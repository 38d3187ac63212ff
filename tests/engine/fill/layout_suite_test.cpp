#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "support.h"

namespace velora::engine {
namespace {

namespace fs = std::filesystem;

fs::path suite_folder()
{
    const char* named = std::getenv("VELORA_LAYOUT_SUITE");
    return named ? fs::path(named) : fs::path(VELORA_SOURCE_DIR) / ".." / "shared" / "layout-suite";
}

std::string placed(const char* kind, int x, int y, int width, int height)
{
    return std::string(kind) + " " + std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
           std::to_string(height) + " ";
}

void list_expected(pugi::xml_node parent, std::string& list)
{
    for (const pugi::xml_node node : parent) {
        const pugi::xml_node box = node.child("reportElement");
        if (!box) continue;
        list += placed(node.name(), box.attribute("x").as_int(), box.attribute("y").as_int(),
                       box.attribute("width").as_int(), box.attribute("height").as_int());
        const pugi::xml_node content = node.child("textContent");
        std::string text;
        for (const pugi::xml_node part : content) text += part.value();
        if (const auto cut = content.attribute("truncateIndex")) text.resize(cut.as_uint());
        list += text + "\n";
        if (std::string_view(node.name()) == "frame") list_expected(node, list += "{"), list += "}";
    }
}

void list_got(const std::vector<Element>& elements, std::string& list)
{
    constexpr const char* kKinds[] = {"text", "line", "rectangle", "ellipse", "image", "frame", "image"};
    for (const auto& element : elements) {
        const Place& place = element.place;
        list += placed(kKinds[element.content.index()], place.x, place.y, place.width, place.height);
        if (const auto* text = std::get_if<Text>(&element.content)) list += text->shown();
        list += "\n";
        if (const auto* frame = std::get_if<Frame>(&element.content)) {
            list_got(frame->children, list += "{");
            list += "}";
        }
    }
}

TestTable table_of(const nlohmann::json& entry)
{
    if (!entry.contains("csv")) return TestTable(entry["rows"].get<size_t>());
    std::ifstream file(suite_folder() / entry["csv"].get<std::string>());
    std::vector<std::vector<Value>> rows;
    for (std::string line; std::getline(file, line);) rows.push_back({Value(line)});
    return {{{"COLUMN_0", Value::Type::Text}}, std::move(rows)};
}

/// Empty when the pages are the expected ones, else both lists of the first page that differs.
std::string difference(const fs::path& definition, const nlohmann::json& entry)
{
    pugi::xml_document print;
    print.load_file((suite_folder() / (entry["name"].get<std::string>() + ".jrpxml")).c_str(),
                    pugi::parse_default | pugi::parse_ws_pcdata);
    std::vector<std::string> expected;
    for (const pugi::xml_node page : print.child("jasperPrint").children("page")) {
        list_expected(page, expected.emplace_back());
    }
    std::ifstream file(definition, std::ios::binary);
    const std::string xml{std::istreambuf_iterator<char>(file), {}};
    TestTable table = table_of(entry);
    const auto pages = filled(xml, table).pages;
    if (pages.size() != expected.size()) return std::to_string(pages.size()) + " pages";
    for (size_t page = 0; page < pages.size(); ++page) {
        std::string got;
        list_got(pages[page].elements, got);
        if (got != expected[page])
            return "page " + std::to_string(page + 1) + " is\n" + got + "but should be\n" + expected[page];
    }
    return {};
}

TEST(LayoutSuite, EveryDefinitionGivesItsPagesInBothWrittenForms)
{
    if (!fs::exists(suite_folder() / "manifest.json")) {
        GTEST_SKIP() << "no layout suite in " << suite_folder() << "; set VELORA_LAYOUT_SUITE to its folder";
    }
    std::ifstream file(suite_folder() / "manifest.json");
    for (const auto& entry : nlohmann::json::parse(file)) {
        const std::string name = entry["name"].get<std::string>() + ".jrxml";
        EXPECT_EQ(difference(suite_folder() / name, entry), "") << name;
        if (entry["classic"].get<bool>()) {
            EXPECT_EQ(difference(suite_folder() / "classic" / name, entry), "") << "classic " << name;
        }
    }
}

}  // namespace
}  // namespace velora::engine
