#include "engine/picture/cairo_library.h"

namespace velora::engine {

const CairoLibrary& cairo()
{
    static const CairoLibrary library;
    return library;
}

}  // namespace velora::engine
