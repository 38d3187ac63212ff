#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// One HTML file that looks like the pages in a browser.
std::unique_ptr<PageSink> make_html_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
