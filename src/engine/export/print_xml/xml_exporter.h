#pragma once

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// The pages in the print form that users of definitions know; complete, so that they can be read back.
std::unique_ptr<PageSink> make_xml_exporter(std::unique_ptr<AtomicFile> file, const ExportContext& context);

}  // namespace velora::engine
