#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// The pages on a grid of characters, a form feed between them.
std::unique_ptr<PageSink> make_txt_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
