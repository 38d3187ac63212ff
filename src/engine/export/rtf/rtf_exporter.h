#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// Rich text with everything at its place on the page, for word processors.
std::unique_ptr<PageSink> make_rtf_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
