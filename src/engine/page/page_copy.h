#pragma once

#include "engine/page/page.h"

namespace velora::engine {

// For a sink that takes away what its owner keeps.

Element copy_of(const Element& element);
Page copy_of(const Page& page);

}  // namespace velora::engine
