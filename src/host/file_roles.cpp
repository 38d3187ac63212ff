#include "host/file_roles.h"

#include <algorithm>

#include "host/host_error.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

bool is_same_file(const fs::path& a, const fs::path& b)
{
    std::error_code unknown;
    if (fs::is_character_file(a, unknown)) return false;
    if (fs::equivalent(a, b, unknown)) return true;
    std::error_code unresolved;
    return fs::weakly_canonical(fs::absolute(a), unknown) == fs::weakly_canonical(fs::absolute(b), unresolved);
}

}  // namespace

void FileRoles::reads(const fs::path& file, const std::string& what)
{
    take({file, what, false});
}

void FileRoles::writes(const fs::path& file, const std::string& what)
{
    take({file, what, true});
}

void FileRoles::take(Role role)
{
    for (const Role& other : roles_) {
        if (!role.is_output && !other.is_output) continue;
        if (!is_same_file(role.file, other.file)) continue;
        const Role& output = role.is_output ? role : other;
        const Role& held = role.is_output ? other : role;
        throw UsageError(output.what + " names the file \"" + output.file.string() + "\", which is " +
                         (held.is_output ? "that of " : "") + held.what + ". Name another file.");
    }
    roles_.push_back(std::move(role));
}

std::string FileRoles::role_of(const fs::path& file) const
{
    const auto found = std::ranges::find_if(roles_, [&](const Role& role) { return is_same_file(role.file, file); });
    return found == roles_.end() ? std::string() : found->what;
}

}  // namespace velora
