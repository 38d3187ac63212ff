#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "engine/expression/environment.h"
#include "engine/page/page.h"
#include "engine/plan/plan.h"

namespace velora::engine {

struct FileSurroundings {
    const Environment& environment;  ///< parameters and words are known by now, and no row
    std::filesystem::path folder;    ///< of the definition
    std::function<void(const std::string&)> warn;
};

/// What the definition's properties ask of the finished file beside its pages: title and author, tags, a lock, files
/// that go along. What cannot be kept is told.
void read_file_properties(Document& document, const ReportPlan& plan, const FileSurroundings& around);

}  // namespace velora::engine
