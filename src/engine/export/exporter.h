#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "engine/export/common/export_context.h"

namespace velora::engine {

/// A sink that writes the pages to `target` in the format that files of this extension have ("pdf", "XLS").
///
/// The pages go to a temporary file beside the target, which takes the target's name in `end`. A sink that is
/// destroyed before leaves the earlier file as it was.
/// @throws Fault 429 for an extension that no exporter writes
/// @throws Fault 75 with file name and reason, here and from the sink, when the file cannot be written
std::unique_ptr<PageSink> make_exporter(std::string_view extension, const std::filesystem::path& target,
                                        const ExportContext& context);

}  // namespace velora::engine
