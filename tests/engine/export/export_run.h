#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "engine/export/exporter.h"
#include "engine/text/font_store.h"

namespace velora::engine {

/// Writes the pages to a file of that name, in the format of its extension, and gives its path.
inline std::filesystem::path run_export(PageList pages, const std::string& name)
{
    std::filesystem::create_directories(VELORA_TEST_SCRATCH);
    const std::filesystem::path path = std::filesystem::path(VELORA_TEST_SCRATCH) / name;
    FontStore fonts(VELORA_SOURCE_DIR "/fonts");
    const auto sink = make_exporter(path.extension().string().substr(1), path, {fonts, {}});
    sink->begin(pages.document);
    for (Page& page : pages.pages) sink->page(std::move(page));
    sink->end();
    return path;
}

inline std::string bytes_of(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace velora::engine
