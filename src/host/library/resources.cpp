#include "host/library/resources.h"

#include <dlfcn.h>

namespace velora {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProgram = "velora-report";

fs::path own_folder()
{
    static const char here = 0;
    Dl_info about{};
    if (::dladdr(&here, &about) == 0 || about.dli_fname == nullptr) return fs::current_path();
    std::error_code unknown;
    const auto file = fs::weakly_canonical(about.dli_fname, unknown);
    return unknown ? fs::current_path() : file.parent_path();
}

}  // namespace

fs::path program_of(const std::string& resources)
{
    if (!resources.empty()) return fs::absolute(resources) / kProgram;
    const fs::path beside = own_folder();
    if (fs::is_directory(beside / "fonts")) return beside / kProgram;
    for (fs::path prefix = beside; prefix.has_relative_path(); prefix = prefix.parent_path()) {
        if (fs::is_directory(prefix / "share" / kProgram / "fonts")) return prefix / "bin" / kProgram;
    }
    return beside / kProgram;  // where a message names what is missing
}

}  // namespace velora
