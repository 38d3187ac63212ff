#include "engine/definition/file_beside.h"

#include "values/confined_path.h"

namespace velora::engine {

std::optional<std::filesystem::path> file_beside(const std::filesystem::path& folder, const std::filesystem::path& name)
{
    return name.is_absolute() ? name : confined_path(folder, name);
}

}  // namespace velora::engine
