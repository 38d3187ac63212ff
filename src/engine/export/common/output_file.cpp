#include "engine/export/common/output_file.h"

#include <cerrno>
#include <cstring>
#include <random>

#include "values/fault.h"

namespace velora::engine {
namespace {

constexpr size_t kBuffer = 1 << 18;

namespace fs = std::filesystem;

/// Whether a file may take the target's place: nothing is there, or a file, or a folder, which the renaming refuses.
bool is_replaceable(const fs::path& target)
{
    std::error_code ignored;
    const auto type = fs::status(target, ignored).type();
    return type == fs::file_type::regular || type == fs::file_type::directory || type == fs::file_type::not_found ||
           type == fs::file_type::none;
}

fs::path behind_links(const fs::path& target)
{
    std::error_code error;
    fs::path place = fs::is_symlink(target, error) ? fs::canonical(target, error) : target;
    return error ? target : place;
}

/// A name that no other export takes: beside the place, or with the temporary files when nothing may be made there.
fs::path temporary_name(const fs::path& place, bool beside)
{
    std::random_device random;
    std::error_code ignored;
    fs::path name = beside ? place : fs::temp_directory_path(ignored) / "velora";
    name += "." + std::to_string(random()) + ".part";
    return name;
}

}  // namespace

OutputFile::OutputFile(fs::path target)
    : target_(std::move(target)),
      replaceable_(is_replaceable(target_)),
      place_(replaceable_ ? behind_links(target_) : target_),
      temporary_(temporary_name(place_, replaceable_)),
      file_(std::fopen(temporary_.c_str(), "wb+x"))
{
    if (!file_) fail(errno);
    std::setvbuf(file_.get(), nullptr, _IOFBF, kBuffer);
}

OutputFile::~OutputFile()
{
    if (!file_) return;
    file_.reset();
    std::error_code ignored;  // the caller already knows of the failure that led here
    fs::remove(temporary_, ignored);
}

void OutputFile::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) fail(errno);
}

void OutputFile::finish()
{
    if (std::fflush(file_.get()) != 0) fail(errno);
    if (!replaceable_) return pour_into_target();
    std::error_code error;
    fs::rename(temporary_, place_, error);
    if (error) fail(error.value());
    file_.reset();
}

void OutputFile::pour_into_target()
{
    const std::unique_ptr<std::FILE, Close> into(std::fopen(place_.c_str(), "wb"));
    if (!into) fail(errno);
    std::rewind(file_.get());
    std::string buffer(kBuffer, '\0');
    while (const size_t count = std::fread(buffer.data(), 1, buffer.size(), file_.get())) {
        if (std::fwrite(buffer.data(), 1, count, into.get()) != count) fail(errno);
    }
    if (std::ferror(file_.get()) != 0 || std::fflush(into.get()) != 0) fail(errno);
}

void OutputFile::fail(int error) const
{
    throw Fault(fault::kPathAccess, "The file cannot be written: " + target_.string() + ": " + std::strerror(error),
                target_.string());
}

}  // namespace velora::engine
