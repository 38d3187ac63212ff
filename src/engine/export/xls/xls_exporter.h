#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// An Excel 97 workbook: cells on a grid found from the boxes.
std::unique_ptr<PageSink> make_xls_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
