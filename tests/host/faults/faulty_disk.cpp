#include "host/faults/faulty_disk.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

// One disk at a time.
velora::testing::FaultPlan* disk_plan = nullptr;
std::string disk_folder;

bool lies_there(std::string_view path)
{
    constexpr std::string_view kNameless = " (deleted)";  // a temporary file without a name
    if (path == disk_folder + "messages") return false;   // what is told there is told on the screen as well
    return path.starts_with(disk_folder) || (path.starts_with("/tmp/") && path.ends_with(kNameless));
}

std::string path_of(int descriptor)
{
    std::array<char, 64> link{};
    std::array<char, 4096> place{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const ssize_t length = ::readlink(link.data(), place.data(), place.size());
    return {place.data(), length > 0 ? static_cast<size_t>(length) : 0};
}

std::string path_of(const char* path)
{
    return path != nullptr ? path : "";
}

/// Calls are of a kind by their name, the folder that they lie in and the ending of the file.
std::string kind_of(const char* call, const std::string& path)
{
    const std::filesystem::path file(path);
    return std::string(call) + " " + file.parent_path().filename().string() + " " + file.extension().string();
}

template <class Place>
bool fails(const char* call, Place place)
{
    if (disk_plan == nullptr) return false;
    const std::string path = path_of(place);
    if (!lies_there(path) || !disk_plan->fails(kind_of(call, path))) return false;
    errno = ENOSPC;
    return true;
}

/// The C library's own.
template <class Function>
Function* real(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

#define REAL(name)                                              \
    [] {                                                        \
        static auto* const found = real<decltype(name)>(#name); \
        return found;                                           \
    }()

bool writes(int flags)
{
    return (flags & O_CREAT) != 0;
}

mode_t mode_of(int flags, va_list more)
{
    return writes(flags) ? va_arg(more, mode_t) : 0;
}

}  // namespace

// Named as in the C library, in whose place the whole process finds them.
extern "C" {

int open(const char* path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = mode_of(flags, more);
    va_end(more);
    return writes(flags) && fails("open", path) ? -1 : REAL(open)(path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = mode_of(flags, more);
    va_end(more);
    return writes(flags) && fails("open", path) ? -1 : REAL(open64)(path, flags, mode);
}

ssize_t write(int descriptor, const void* bytes, size_t size)
{
    if (!fails("write", descriptor)) return REAL(write)(descriptor, bytes, size);
    REAL(write)(descriptor, bytes, size / 2);
    errno = ENOSPC;
    return -1;
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off64_t offset)
{
    if (!fails("pwrite64", descriptor)) return REAL(pwrite64)(descriptor, bytes, size, offset);
    REAL(pwrite64)(descriptor, bytes, size / 2, offset);
    errno = ENOSPC;
    return -1;
}

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* file)
{
    if (!fails("fwrite", ::fileno(file))) return REAL(fwrite)(bytes, size, count, file);
    const size_t written = REAL(fwrite)(bytes, size, count / 2, file);
    errno = ENOSPC;
    return written;
}

int fflush(FILE* file)
{
    return file != nullptr && fails("fflush", ::fileno(file)) ? EOF : REAL(fflush)(file);
}

int fsync(int descriptor)
{
    return fails("fsync", descriptor) ? -1 : REAL(fsync)(descriptor);
}

int fdatasync(int descriptor)
{
    return fails("fdatasync", descriptor) ? -1 : REAL(fdatasync)(descriptor);
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    return fails("ftruncate64", descriptor) ? -1 : REAL(ftruncate64)(descriptor, size);
}

int rename(const char* from, const char* to) noexcept
{
    return fails("rename", to) ? -1 : REAL(rename)(from, to);
}

int mkdir(const char* path, mode_t mode) noexcept
{
    return fails("mkdir", path) ? -1 : REAL(mkdir)(path, mode);
}

}  // extern "C"

namespace velora::testing {

FaultyDisk::FaultyDisk(const std::filesystem::path& folder, FaultPlan& plan)
{
    disk_folder = folder.string();
    disk_plan = &plan;
}

FaultyDisk::~FaultyDisk()
{
    disk_plan = nullptr;
}

}  // namespace velora::testing
