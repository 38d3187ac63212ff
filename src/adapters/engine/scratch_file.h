#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "values/fault.h"

namespace velora {

/// A file that goes with its scope.
class ScratchFile {
public:
    explicit ScratchFile(const char* extension)
    {
        std::string name = (std::filesystem::temp_directory_path() / "velora-XXXXXX").string() + extension;
        const int handle = mkstemps(name.data(), static_cast<int>(std::string_view(extension).size()));
        if (handle < 0) throw fault::of(fault::kPathAccess, name);
        close(handle);
        path_ = name;
    }
    ~ScratchFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace velora
