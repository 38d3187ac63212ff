#include "values/confined_path.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

/// Links are resolved where they lead to something; one that is still there leads to nothing, and perhaps elsewhere.
bool holds_link(const fs::path& root, const fs::path& below)
{
    std::error_code ignored;
    fs::path reached = root;
    for (const fs::path& step : below) {
        reached /= step;
        if (fs::is_symlink(reached, ignored)) return true;
    }
    return false;
}

}  // namespace

std::optional<fs::path> confined_path(const fs::path& folder, const fs::path& name)
{
    if (name.is_absolute() || name.native().find('\0') != std::string::npos) return std::nullopt;
    std::error_code error;
    const fs::path root = fs::weakly_canonical(folder.empty() ? fs::path(".") : folder, error);
    if (error) return std::nullopt;
    fs::path file = fs::weakly_canonical(root / name, error);
    if (error) return std::nullopt;
    const fs::path below = file.lexically_relative(root);
    if (below.empty() || *below.begin() == ".." || holds_link(root, below)) return std::nullopt;
    return file;
}

}  // namespace velora
