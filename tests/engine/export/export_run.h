#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "engine/export/exporter.h"
#include "engine/export/output_file.h"
#include "engine/text/font_store.h"

namespace velora::engine {

/// Sends the pages through one exporter and gives the path of the file.
inline std::filesystem::path run_export(auto make, PageList pages, const std::string& name)
{
    std::filesystem::create_directories(VELORA_TEST_SCRATCH);
    const std::filesystem::path path = std::filesystem::path(VELORA_TEST_SCRATCH) / name;
    FontStore fonts(VELORA_SOURCE_DIR "/fonts");
    const auto sink = make(std::make_unique<OutputFile>(path), ExportContext{fonts, {}});
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
