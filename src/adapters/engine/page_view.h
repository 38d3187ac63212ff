#pragma once

#include <functional>
#include <memory>

#include "adapters/engine/stored_pages.h"
#include "platform/printers.h"
#include "platform/report_engine.h"

namespace velora {

namespace engine {
class FontStore;
}

/// The pages of a run for a window, which may look at them while they are made.
/// @param print  where there is a way to print; @param job  as the report goes onto paper
std::shared_ptr<PageView> make_page_view(std::shared_ptr<StoredPages> pages, std::shared_ptr<engine::FontStore> fonts,
                                         std::function<void(const PrintJob&)> print, PrintJob job);

}  // namespace velora
