#pragma once

#include <string>

#include "engine/page/page.h"

namespace velora::engine {

class FontStore;

/// A page as a PNG picture.
/// @param resolution  pixels for an inch; 72 gives one for each point
/// @throws Fault 6 for a page that has no size or needs more than 64 million pixels
std::string page_picture(const Document& document, const Page& page, double resolution, FontStore& fonts);

}  // namespace velora::engine
