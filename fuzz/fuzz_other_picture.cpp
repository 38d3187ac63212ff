#include "engine/page/picture_head.h"
#include "engine/picture/other_pictures.h"
#include "values/fault.h"

/// Any bytes as a picture of a kind that is turned into PNG: a file that others can read, or a reason.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace velora::engine;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        const ShownPicture shown = picture_read_here(bytes);
        if (!picture_head(shown.png) || shown.density <= 0) __builtin_trap();
    } catch (const velora::Fault& fault) {
        if (fault.description().empty()) __builtin_trap();
    }
    return 0;
}
