#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace velora::engine {

/// A PNG file of opaque points, 0xRRGGBB each (the upper byte does not count), packed fast. Drawings have few colours:
/// up to 256 are kept as they are in a palette, of more the most frequent, and the others become the nearest of them.
/// Pictures of very many colours, photos, are written without a palette.
std::string png_of(std::span<const uint32_t> points, uint32_t width, uint32_t height);

/// The same of points that let their ground through, 0xAARRGGBB each, colours as they are without alpha.
std::string png_with_alpha(std::span<const uint32_t> points, uint32_t width, uint32_t height);

}  // namespace velora::engine
