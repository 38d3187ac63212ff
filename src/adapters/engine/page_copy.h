#pragma once

#include "engine/page/page.h"

namespace velora {

/// A page for a sink that takes it away from its owner.
engine::Page copy_of(const engine::Page& page);

}  // namespace velora
