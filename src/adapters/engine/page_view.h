#pragma once

#include <functional>
#include <memory>

#include "engine/page/page.h"
#include "platform/printers.h"
#include "platform/report_engine.h"

namespace velora {

namespace engine {
class FontStore;
}

/// The pages of a finished run for a window.
/// @param print  where there is a way to print; @param job  as the report goes onto paper
std::shared_ptr<PageView> make_page_view(std::shared_ptr<engine::PageList> pages,
                                         std::shared_ptr<engine::FontStore> fonts,
                                         std::function<void(const PrintJob&)> print, PrintJob job);

}  // namespace velora
