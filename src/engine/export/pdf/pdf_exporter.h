#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// A PDF file (ISO 32000): fonts embedded and cut down, text that can be found and copied, links and bookmarks.
std::unique_ptr<PageSink> make_pdf_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
