#pragma once

#include <string>
#include <string_view>

#include "engine/page/page.h"

namespace velora::engine {

/// The text with its markup: as the definition wrote it where that is known, else as styled text from the runs.
std::string marked_text(std::string_view text, const TextDetail& detail, const Style& style);

}  // namespace velora::engine
