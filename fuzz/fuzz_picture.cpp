#include "engine/export/common/picture_fit.h"
#include "engine/export/paint/bitmap.h"

/// Any bytes as a picture: taken apart, or none; a size that is told is never empty.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace velora::engine;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const auto bitmap = read_bitmap(bytes)) {
        const auto points = static_cast<size_t>(bitmap->width) * static_cast<size_t>(bitmap->height);
        if (bitmap->colors.size() != 3 * points) __builtin_trap();
    }
    const auto told = shown_picture(bytes);
    if (told && (told->width == 0 || told->height == 0)) __builtin_trap();
    return 0;
}
