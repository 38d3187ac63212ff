#include "adapters/ini/locked_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <random>

#include "values/fault.h"

namespace velora::ini {

namespace {

namespace fs = std::filesystem;

Fault refusal(const fs::path& path, int error)
{
    return {fault::kPathAccess, "The file " + path.string() + " cannot be written: " + std::strerror(error),
            path.string()};
}

bool write_all(int descriptor, std::string_view content)
{
    while (!content.empty()) {
        const auto written = ::write(descriptor, content.data(), content.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        content.remove_prefix(static_cast<size_t>(written));
    }
    return ::fsync(descriptor) == 0;
}

/// A new file beside the target; an earlier target hands its permissions on.
int open_beside(const fs::path& target, std::string& temporary)
{
    temporary = target.string() + "." + std::to_string(std::random_device()()) + ".part";
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    struct stat status {};
    if (descriptor >= 0 && ::stat(target.c_str(), &status) == 0) ::fchmod(descriptor, status.st_mode & 07777);
    return descriptor;
}

}  // namespace

LockedFolder::LockedFolder(const fs::path& folder) : descriptor_(::open(folder.c_str(), O_RDONLY | O_CLOEXEC))
{
    if (descriptor_ >= 0) ::flock(descriptor_, LOCK_EX);
}

LockedFolder::~LockedFolder()
{
    if (descriptor_ >= 0) ::close(descriptor_);
}

void replace_file(const fs::path& path, const std::string& content)
{
    std::error_code ignored;
    const fs::path target = fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : path;
    if (fs::is_directory(target, ignored)) throw refusal(path, EISDIR);
    std::string temporary;
    const int descriptor = open_beside(target, temporary);
    if (descriptor < 0) throw refusal(path, errno);
    int error = write_all(descriptor, content) ? 0 : errno;
    ::close(descriptor);
    if (error == 0 && ::rename(temporary.c_str(), target.c_str()) != 0) error = errno;
    if (error == 0) return;
    ::unlink(temporary.c_str());
    throw refusal(path, error);
}

}  // namespace velora::ini
