#pragma once

#include <string>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

/// Pages as the expected pages of the layout cases are written: an element on a line with its place, what is unusual
/// about its looks, and its text.
std::vector<std::string> page_lines(const std::vector<Page>& pages);
std::vector<std::string> page_lines(const Page& page);

}  // namespace velora::engine
