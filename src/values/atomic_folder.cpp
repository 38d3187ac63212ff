#include "values/atomic_folder.h"

#include <fcntl.h>
#include <unistd.h>

namespace velora {
namespace fs = std::filesystem;

AtomicFolder::AtomicFolder(fs::path place) : place_(std::move(place))
{
    if (place_.has_parent_path()) fs::create_directories(place_.parent_path());
    for (bool is_held = false; !is_held;) {
        part_.emplace(place_);
        fs::create_directory(part_->path());
        descriptor_ = ::open(part_->path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        is_held = descriptor_ < 0 || Part::hold(descriptor_);
        if (!is_held) ::close(descriptor_);
    }
}

AtomicFolder::~AtomicFolder()
{
    if (descriptor_ >= 0) ::close(descriptor_);
}

void AtomicFolder::finish()
{
    fs::rename(part_->path(), place_);
    part_->finished();
}

}  // namespace velora
