#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// A word processor's document of today's form with the pages of the report: each text is a paragraph in a frame at its
/// place, grounds, lines and pictures lie behind it.
std::unique_ptr<PageSink> make_docx_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
