#pragma once

#include <string_view>
#include <vector>

#include "platform/painted_pages.h"
#include "platform/report_engine.h"

namespace velora::forms {

/// How often the page holds the text, letter case aside; a match ends before the next one begins. 0 for a blank text.
size_t count_on_page(const PageView& pages, size_t page, std::string_view text);

/// The letters of a page's texts that hold the text, in the same way.
std::vector<PageText::Letter> letters_found(const std::vector<PageText>& page, std::string_view text);

}  // namespace velora::forms
