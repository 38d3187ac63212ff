#include <gtest/gtest.h>

#include "definitions/shipped.h"
#include "support/tool_run.h"
#include "support/word_check.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

TEST_P(EachDefinition, SaysTheSameInEveryFormat)
{
    const std::string name = GetParam().name;
    fs::create_directories(VELORA_TEST_SCRATCH);
    readers::Formats files;
    for (const char* extension : {"pdf", "html", "xls", "doc", "rtf", "txt", "xml"}) {
        const fs::path file = fs::path(VELORA_TEST_SCRATCH) / ("words." + std::string(extension));
        engine::FontStore fonts(VELORA_SOURCE_DIR "/fonts");
        HeldRows rows = golden_rows(name);
        fill_shipped(name, rows, *engine::make_exporter(extension, file, {fonts, {}}));
        files[extension] = file;
    }
    EXPECT_EQ(readers::difference_of_words({files}), "");
}

TEST_P(EachDefinition, IsReadOutInOrderAndKeptInArchives)
{
    const std::string name = GetParam().name;
    fs::create_directories(VELORA_TEST_SCRATCH);
    const fs::path file = fs::path(VELORA_TEST_SCRATCH) / "told.pdf";
    engine::FontStore fonts(VELORA_SOURCE_DIR "/fonts");
    HeldRows rows = golden_rows(name);
    fill_shipped(name, rows, *engine::make_exporter("pdf", file, {fonts, {}}));
    for (const char* check : {"tags_check", "archive_check"}) {
        const std::string script = VELORA_SOURCE_DIR "/tests/support/" + std::string(check) + ".py";
        EXPECT_EQ(engine::run_tool("/usr/bin/python3 " + engine::word(script) + " " + engine::word(file)).output, "");
    }
    const std::string told = engine::run_tool("pdfinfo -struct-text " + engine::word(file)).output;
    for (const char* part : {"\n  H1", "\n  Table", "\n      TH", "\n      TD"}) {
        EXPECT_NE(told.find(part), std::string::npos) << part + 1 << " in\n" << told;
    }
}

}  // namespace
}  // namespace velora
