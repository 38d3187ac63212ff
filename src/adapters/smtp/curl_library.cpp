#include "adapters/smtp/curl_library.h"

#include "values/fault.h"

namespace velora::smtp {

CurlLibrary::CurlLibrary()
{
    if (global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        throw Fault(fault::kCannotCreate, "E-mail cannot be sent: libcurl does not start.");
    }
}

const CurlLibrary& CurlLibrary::loaded()
{
    static const CurlLibrary library;
    return library;
}

}  // namespace velora::smtp
