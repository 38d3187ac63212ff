#include "adapters/cups/cups_library.h"

namespace velora::cups {
namespace {

/// A queue that asks for a password is refused in words; nobody is asked in the middle of a run.
const char* no_password(const char*, http_t*, const char*, const char*, void*)
{
    return nullptr;
}

}  // namespace

CupsLibrary::CupsLibrary()
{
    set_password_cb2(&no_password, nullptr);
}

const CupsLibrary& CupsLibrary::loaded()
{
    static const CupsLibrary library;
    return library;
}

}  // namespace velora::cups
