#include "engine/export/xls/gsf_library.h"

namespace velora::engine {

const GsfLibrary& GsfLibrary::loaded()
{
    static const GsfLibrary library;
    return library;
}

}  // namespace velora::engine
