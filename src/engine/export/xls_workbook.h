#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "engine/export/xls_sheet.h"

namespace velora::engine {

/// What a workbook says about itself.
struct XlsProperties {
    std::string title, author, subject, keywords;
};

/// Writes the workbook: the container with the properties and the stream of all records.
/// @throws Fault 75 with file name and reason
void write_xls_workbook(const std::filesystem::path& path, const XlsProperties& properties, const XlsStyles& styles,
                        const XlsStrings& strings, const std::vector<XlsSheet>& sheets);

}  // namespace velora::engine
