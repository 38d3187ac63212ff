#pragma once

#include <memory>

#include "engine/page/page.h"
#include "platform/report_engine.h"

namespace velora {

namespace engine {
class FontStore;
}

/// The pages of a finished run for a window.
std::shared_ptr<PageView> make_page_view(std::shared_ptr<engine::PageList> pages,
                                         std::shared_ptr<engine::FontStore> fonts);

}  // namespace velora
