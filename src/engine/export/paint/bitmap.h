#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velora::engine {

/// A picture taken apart into its points.
struct Bitmap {
    int width = 0, height = 0;
    std::vector<uint8_t> colors;  ///< red, green, blue for each point, row by row
    std::vector<uint8_t> alphas;  ///< one for each point; empty when all are opaque
};

/// None for what is no PNG or JPEG picture, for damaged ones and for those of more than 64 million points.
std::optional<Bitmap> read_bitmap(std::string_view bytes);

}  // namespace velora::engine
