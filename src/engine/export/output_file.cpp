#include "engine/export/output_file.h"

#include <cerrno>
#include <cstring>
#include <random>

#include "values/fault.h"

namespace velora::engine {
namespace {

constexpr size_t kBuffer = 1 << 18;

/// A name beside the target that no other export takes.
std::filesystem::path temporary_beside(const std::filesystem::path& target)
{
    std::random_device random;
    std::filesystem::path name = target;
    name += "." + std::to_string(random()) + ".part";
    return name;
}

}  // namespace

OutputFile::OutputFile(std::filesystem::path target)
    : target_(std::move(target)), temporary_(temporary_beside(target_)), file_(std::fopen(temporary_.c_str(), "wbx"))
{
    if (!file_) fail(errno);
    std::setvbuf(file_.get(), nullptr, _IOFBF, kBuffer);
}

OutputFile::~OutputFile()
{
    if (!file_) return;
    file_.reset();
    std::error_code ignored;  // the caller already knows of the failure that led here
    std::filesystem::remove(temporary_, ignored);
}

void OutputFile::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) fail(errno);
}

void OutputFile::finish()
{
    if (std::fflush(file_.get()) != 0) fail(errno);
    std::error_code error;
    std::filesystem::rename(temporary_, target_, error);
    if (error) fail(error.value());
    file_.reset();
}

void OutputFile::fail(int error) const
{
    throw Fault(fault::kPathAccess, "The file cannot be written: " + target_.string() + ": " + std::strerror(error),
                target_.string());
}

}  // namespace velora::engine
