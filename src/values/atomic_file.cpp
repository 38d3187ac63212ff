#include "values/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "values/fault.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

constexpr size_t kBuffer = 1 << 18;
constexpr int kMostLinks = 40;

fs::path folder_of(const fs::path& place)
{
    return place.has_parent_path() ? place.parent_path() : fs::path(".");
}

/// What the process holds open, such as "/dev/stdout", looks like a link to a file that could be replaced.
bool is_open_stream(const fs::path& link)
{
    std::error_code error;
    const fs::path folder = fs::canonical(folder_of(link), error);
    return !error && folder.native().starts_with("/proc/");
}

/// A writer to what the name stands for. What this process holds open itself goes on where it stands: opened anew, a
/// file behind standard output would have two writers that do not know of each other.
int open_stream(const fs::path& place)
{
    std::error_code error;
    const std::string number = place.filename().string();
    const bool own = fs::equivalent(folder_of(place), "/proc/self/fd", error) && !number.empty() &&
                     number.find_first_not_of("0123456789") == std::string::npos && number.size() < 9;
    return own ? ::fcntl(std::stoi(number), F_DUPFD_CLOEXEC, 0)
               : ::open(place.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
}

/// Where the links of a name lead, also when nothing is there yet.
fs::path behind_links(const fs::path& name)
{
    fs::path place = name;
    std::error_code error;
    for (int links = 0; links < kMostLinks && !is_open_stream(place) && fs::is_symlink(place, error); ++links) {
        place = place.parent_path() / fs::read_symlink(place, error);
    }
    return place;
}

/// Whether a file may take the place: nothing is there, or a file, or a folder, which the renaming refuses.
bool is_replaceable(const fs::path& place)
{
    if (is_open_stream(place)) return false;
    std::error_code ignored;
    const auto type = fs::status(place, ignored).type();
    return type == fs::file_type::regular || type == fs::file_type::directory || type == fs::file_type::not_found ||
           type == fs::file_type::none;
}

/// Owner and permissions of the file that is replaced. What cannot be given away to its owner also loses the bits that
/// would lend this user's rights to others.
void inherit(int descriptor, const struct stat& earlier)
{
    mode_t permissions = earlier.st_mode & 07777;
    if (::fchown(descriptor, earlier.st_uid, earlier.st_gid) != 0 &&
        ::fchown(descriptor, static_cast<uid_t>(-1), earlier.st_gid) != 0) {
        permissions &= 0777;
    }
    ::fchmod(descriptor, permissions);
}

/// Whether the bytes of a file or the names of a folder have reached the disk, as far as its file system can tell.
bool is_flushed(int descriptor)
{
    return ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}

void flush_folder(const fs::path& folder)
{
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;  // may be written to and not listed
    ::fsync(descriptor);
    ::close(descriptor);
}

}  // namespace

AtomicFile::AtomicFile(fs::path target, Options options)
    : target_(std::move(target)), place_(behind_links(target_)), options_(options)
{
    if (!is_replaceable(place_)) {
        file_.reset(std::tmpfile());
    } else if (std::error_code ignored; fs::is_symlink(place_, ignored)) {
        fail(ELOOP);
    } else {
        open_part();
    }
    if (!file_) fail(errno);
    std::setvbuf(file_.get(), nullptr, options_.leaves_copies ? _IOFBF : _IONBF, kBuffer);
}

void AtomicFile::open_part()
{
    struct stat earlier {};
    const bool has_earlier = ::stat(place_.c_str(), &earlier) == 0 && S_ISREG(earlier.st_mode);
    int descriptor = -1;
    for (bool is_held = false; !is_held;) {
        part_.emplace(place_);
        const mode_t at_first = has_earlier ? 0600 : options_.permissions;
        descriptor = ::open(part_->path().c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, at_first);
        if (descriptor < 0) fail(errno);
        is_held = Part::hold(descriptor);
        if (!is_held) ::close(descriptor);
    }
    if (has_earlier) inherit(descriptor, earlier);
    file_.reset(::fdopen(descriptor, "wb"));
    if (!file_) ::close(descriptor);
}

void AtomicFile::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) fail(errno);
}

void AtomicFile::finish()
{
    if (std::fflush(file_.get()) != 0) fail(errno);
    if (!part_) return pour_into_target();
    if (!is_flushed(::fileno(file_.get()))) fail(errno);
    take_place();
    flush_folder(folder_of(place_));
}

void AtomicFile::take_place()
{
    if (options_.first_wins) {
        if (::link(part_->path().c_str(), place_.c_str()) != 0 && errno != EEXIST) fail(errno);
        return;
    }
    if (::rename(part_->path().c_str(), place_.c_str()) != 0) fail(errno);
    part_->finished();
}

void AtomicFile::pour_into_target()
{
    const int descriptor = open_stream(place_);
    const File into(descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb"));
    if (!into) fail(errno);
    std::rewind(file_.get());
    std::string buffer(kBuffer, '\0');
    while (const size_t count = std::fread(buffer.data(), 1, buffer.size(), file_.get())) {
        if (std::fwrite(buffer.data(), 1, count, into.get()) != count) fail(errno);
    }
    if (std::ferror(file_.get()) != 0 || std::fflush(into.get()) != 0) fail(errno);
}

void AtomicFile::fail(int error) const
{
    throw Fault(fault::kPathAccess, "The file cannot be written: " + target_.string() + ": " + std::strerror(error),
                target_.string());
}

void write_file(const fs::path& target, std::string_view content)
{
    AtomicFile file(target);
    file.write(content);
    file.finish();
}

}  // namespace velora
