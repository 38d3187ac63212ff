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

/// Puts the content in the place of the file, whole or not at all; an earlier file's permissions stay.
/// @throws Fault 75 with path and reason
void replace_file(const std::filesystem::path& path, const std::string& content);

}  // namespace velora::ini
