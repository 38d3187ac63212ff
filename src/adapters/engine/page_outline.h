#pragma once

#include <vector>

#include "engine/page/page.h"
#include "platform/report_engine.h"

namespace velora {

/// The bookmarks of the pages; where the definition sets none, the first text of each group header.
std::vector<OutlineEntry> page_outline(const engine::PageList& pages);

}  // namespace velora
