#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "engine/text/font_store.h"

namespace velora::engine {

inline std::filesystem::path shipped_fonts()
{
    return std::filesystem::path(VELORA_SOURCE_DIR) / "fonts";
}

/// A store of the shipped fonts that remembers its warnings.
struct FontsForTests {
    std::vector<std::string> warnings;
    FontStore store{shipped_fonts(), [this](const std::string& message) { warnings.push_back(message); }};
};

}  // namespace velora::engine
