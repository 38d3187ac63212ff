#include "host/windows_module.h"

#include <dlfcn.h>

#include "host/host_error.h"

namespace velora {
namespace {

constexpr const char* kTitle = "Windows";
constexpr const char* kFile = "velora-windows.so";

/// The module stays loaded: a toolkit cannot be taken out of a program again.
forms::MakeToolkit load(const std::filesystem::path& module)
{
    if (!std::filesystem::exists(module)) {
        throw HostError(kTitle, "This installation has no windows: the file \"" + module.string() +
                                    "\" is missing. It is built where Qt 6 is installed; the Debian package of it is "
                                    "velora-report-windows. "
                                    "All other commands work without it.");
    }
    void* library = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* made = library != nullptr ? dlsym(library, forms::kMakeToolkit) : nullptr;
    if (made == nullptr) throw HostError(kTitle, std::string("The windows cannot be loaded: ") + dlerror());
    return reinterpret_cast<forms::MakeToolkit>(made);
}

}  // namespace

std::filesystem::path windows_module(const std::filesystem::path& program)
{
    const auto beside = program.parent_path() / kFile;
    const auto installed = program.parent_path().parent_path() / "lib" / "velora-report" / kFile;
    return std::filesystem::exists(installed) && !std::filesystem::exists(beside) ? installed : beside;
}

std::unique_ptr<forms::Toolkit> open_toolkit(const std::filesystem::path& module, forms::Desk& desk,
                                             const forms::ToolkitOptions& options)
{
    std::string why;
    std::unique_ptr<forms::Toolkit> toolkit(load(module)(desk, options, why));
    if (!toolkit) throw HostError(kTitle, why + " All commands that open no window work without it.");
    return toolkit;
}

}  // namespace velora
