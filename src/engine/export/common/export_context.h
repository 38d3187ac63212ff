#pragma once

#include <functional>
#include <memory>
#include <string>

#include "engine/page/page.h"
#include "values/atomic_file.h"

namespace velora::engine {

class FontStore;

/// What an exporter is given besides the pages. It outlives the exporter.
struct ExportContext {
    FontStore& fonts;
    std::function<void(const std::string&)> warn;  ///< may be empty
};

}  // namespace velora::engine
