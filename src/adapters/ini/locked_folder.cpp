#include "adapters/ini/locked_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace velora::ini {

LockedFolder::LockedFolder(const std::filesystem::path& folder)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_CLOEXEC))
{
    if (descriptor_ >= 0) ::flock(descriptor_, LOCK_EX);
}

LockedFolder::~LockedFolder()
{
    if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace velora::ini
