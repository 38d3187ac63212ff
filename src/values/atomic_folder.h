#pragma once

#include <filesystem>
#include <optional>

#include "values/part.h"

namespace velora {

/// A folder that comes into being as a whole: it is filled beside its place and renamed at the end. Destroyed
/// unfinished, it goes with all that is in it.
class AtomicFolder {
public:
    /// Makes the folders above it as well. @throws std::filesystem::filesystem_error
    explicit AtomicFolder(std::filesystem::path place);
    ~AtomicFolder();
    AtomicFolder(const AtomicFolder&) = delete;
    AtomicFolder& operator=(const AtomicFolder&) = delete;

    /// Where it is filled.
    [[nodiscard]] const std::filesystem::path& path() const { return part_->path(); }

    /// Gives it its name; takes the place of an empty folder. @throws std::filesystem::filesystem_error
    void finish();

private:
    std::filesystem::path place_;
    std::optional<Part> part_;
    int descriptor_ = -1;  ///< holds the part
};

}  // namespace velora
