#include "host/shipped.h"

#include "host/host_error.h"

namespace velora {

std::filesystem::path shipped_folder(const std::filesystem::path& program, const std::string& name)
{
    const auto beside = program.parent_path() / name;
    const auto installed = program.parent_path().parent_path() / "share" / "velora-report" / name;
    for (const auto& folder : {beside, installed}) {
        if (std::filesystem::is_directory(folder)) return folder;
    }
    throw HostError("Installation", "The folder \"" + name +
                                        "\" that belongs to this program is missing. It should be \"" +
                                        beside.string() + "\" or \"" + installed.string() + "\".");
}

}  // namespace velora
