#include "engine/fill/book/scratch_bytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "values/fault.h"

namespace velora::engine {

namespace {

[[noreturn]] void throw_no_room(const std::filesystem::path& folder)
{
    throw Fault(fault::kPathAccess,
                "The folder for temporary files has no room for the pages of the report: " + folder.string() + " (" +
                    std::generic_category().message(errno) + "). Make room there, or name another folder in TMPDIR.");
}

std::filesystem::path folder()
{
    std::error_code none;
    auto named = std::filesystem::temp_directory_path(none);
    return none ? "/tmp" : named;
}

/// Open for its owner alone, and without a name.
int open_nameless()
{
    std::string name = (folder() / "velora-XXXXXX").string();
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) throw_no_room(folder());
    unlink(name.c_str());
    return file;
}

}  // namespace

ScratchBytes::~ScratchBytes()
{
    if (file_ >= 0) close(file_);
}

uint64_t ScratchBytes::append(std::string_view bytes)
{
    if (waiting_.size() + bytes.size() > kBuffer) write_out();
    const uint64_t at = in_file_ + waiting_.size();
    waiting_ += bytes;
    return at;
}

void ScratchBytes::write_out()
{
    if (file_ < 0) file_ = open_nameless();
    for (size_t done = 0; done < waiting_.size();) {
        const auto written =
            pwrite(file_, waiting_.data() + done, waiting_.size() - done, static_cast<off_t>(in_file_ + done));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) throw_no_room(folder());
        done += static_cast<size_t>(written);
    }
    in_file_ += waiting_.size();
    waiting_.clear();
}

std::string ScratchBytes::read(uint64_t at, size_t size) const
{
    if (at >= in_file_) return waiting_.substr(at - in_file_, size);  // a piece stands here or there as a whole
    std::string bytes(size, '\0');
    for (size_t done = 0; done < size;) {
        const auto got = pread(file_, bytes.data() + done, size - done, static_cast<off_t>(at + done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) throw_no_room(folder());
        done += static_cast<size_t>(got);
    }
    return bytes;
}

}  // namespace velora::engine
