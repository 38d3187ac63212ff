#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// The rows of the report as comma separated values: the heads of its columns once, then a line for each band of rows.
/// Numbers and dates are plain, so that a program reads them: 1234.5, 2026-02-15.
std::unique_ptr<PageSink> make_csv_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
