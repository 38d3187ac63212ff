#include <gtest/gtest.h>

#include "definitions/shipped.h"
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

}  // namespace
}  // namespace velora
