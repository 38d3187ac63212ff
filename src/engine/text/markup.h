#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

/// Takes markup apart: the plain text is returned, its runs go to `runs`. What is no markup stays as it is.
enum class Markup : uint8_t { None, Styled, Html };
std::string plain_text_of(std::string_view marked, Markup markup, const Style& style, std::vector<TextRun>& runs);

}  // namespace velora::engine
