#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// A workbook of today's form on the same grid as the older one: numbers and dates as such, the heads of the columns
/// stay in view.
std::unique_ptr<PageSink> make_xlsx_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
