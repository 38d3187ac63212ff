#pragma once

#include <filesystem>

namespace velora::ini {

/// Holds off the other programs that change files of a folder through this class. Where the file system knows no
/// locks, nothing is held off.
class LockedFolder {
public:
    explicit LockedFolder(const std::filesystem::path& folder);
    LockedFolder(const LockedFolder&) = delete;
    LockedFolder& operator=(const LockedFolder&) = delete;
    ~LockedFolder();

private:
    int descriptor_;
};

}  // namespace velora::ini
