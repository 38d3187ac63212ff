#pragma once

#include "engine/page/page.h"

namespace velora::engine {

/// Same looks, texts and places; styles are compared by what they say.
bool same_page(const Page& left, const Page& right);

}  // namespace velora::engine
