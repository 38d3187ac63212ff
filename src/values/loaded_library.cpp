#include "values/loaded_library.h"

#include <dlfcn.h>

#include "values/fault.h"

namespace velora {
namespace {

[[noreturn]] void fail(const std::string& purpose)
{
    const char* reason = ::dlerror();
    throw Fault(fault::kCannotCreate, purpose + ": " + (reason != nullptr ? reason : "unknown reason") + ".");
}

}  // namespace

LoadedLibrary::LoadedLibrary(const char* file, std::string purpose)
    : handle_(::dlopen(file, RTLD_NOW | RTLD_LOCAL)), purpose_(std::move(purpose))
{
    if (handle_ == nullptr) fail(purpose_);
}

void* LoadedLibrary::address(const char* name) const
{
    void* found = ::dlsym(handle_, name);
    if (found == nullptr) fail(purpose_);
    return found;
}

}  // namespace velora
