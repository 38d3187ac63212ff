#include "engine/export/common/two_part_file.h"

#include <cerrno>
#include <system_error>

#include "values/fault.h"

namespace velora::engine {

TwoPartFile::TwoPartFile(std::unique_ptr<AtomicFile> file) : file_(std::move(file)), spool_(std::tmpfile())
{
    if (!spool_) fail(errno);
}

void TwoPartFile::body(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), spool_.get()) != bytes.size()) fail(errno);
}

void TwoPartFile::finish(std::string_view head, std::string_view tail)
{
    file_->write(head);
    if (std::fflush(spool_.get()) != 0) fail(errno);
    std::rewind(spool_.get());
    std::string buffer(size_t{1} << 16, '\0');
    while (const size_t count = std::fread(buffer.data(), 1, buffer.size(), spool_.get())) {
        file_->write(std::string_view(buffer).substr(0, count));
    }
    if (std::ferror(spool_.get()) != 0) fail(errno);
    file_->write(tail);
    file_->finish();
}

void TwoPartFile::fail(int error) const
{
    throw Fault(fault::kPathAccess,
                "Temporary file for " + file_->target().string() + ": " + std::generic_category().message(error));
}

}  // namespace velora::engine
