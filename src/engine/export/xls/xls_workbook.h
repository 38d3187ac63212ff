#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "engine/export/xls/xls_sheet.h"
#include "values/atomic_file.h"

namespace velora::engine {

/// What a workbook says about itself.
struct XlsProperties {
    std::string title, author, subject, keywords;
};

/// Writes the workbook: the container with the properties and the stream of all records.
/// @throws Fault 75 with file name and reason, Fault 6 for a workbook beyond what its container can hold
void write_xls_workbook(AtomicFile& file, const XlsProperties& properties, const XlsStyles& styles,
                        const XlsStrings& strings, const std::vector<XlsSheet>& sheets);

}  // namespace velora::engine
