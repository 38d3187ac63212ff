#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "adapters/ini/ini_file.h"
#include "host/host_config.h"
#include "host/host_error.h"
#include "values/fault.h"

namespace {

namespace fs = std::filesystem;

/// Where a file costs no disk, if the machine has such a place.
fs::path scratch()
{
    const fs::path memory = "/dev/shm";
    const fs::path place = fs::is_directory(memory) ? memory : fs::temp_directory_path();
    const fs::path folder = place / ("fuzz-ini-" + std::to_string(getpid()));
    fs::create_directories(folder);
    return folder;
}

struct Folder {
    fs::path path = scratch();
    Folder() = default;
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { fs::remove_all(path); }
};

std::string bytes_of(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

/// Any bytes as the settings, as a list file and as velora.ini: read within bounds; a change is there afterwards and
/// leaves every other key as it was, or is refused and leaves the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Folder folder;
    const fs::path file = folder.path / "velora.ini";
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::ofstream(file, std::ios::binary) << text;

    const velora::ini::IniFile ini(file);
    const std::string first = text.size() > 20 ? std::string(text.substr(10, 5)) : "Company";
    try {
        const std::string other = ini.read("Host", "Company", "none");
        const std::string same = ini.read("Report1", "Location", "none");
        ini.write("Report1", "Name", first);
        if (ini.read("Host", "Company", "none") != other) __builtin_trap();
        if (ini.read("Report1", "Location", "none") != same) __builtin_trap();
        const std::string once = ini.read("Report1", "Name", "none");
        ini.write("Report1", "Name", once);
        if (ini.read("Report1", "Name", "none") != once) __builtin_trap();
        ini.delete_section("Report1");
        if (ini.read("Report1", "Name", "none") != "none") __builtin_trap();
    } catch (const velora::Fault&) {
        if (bytes_of(file) != text) __builtin_trap();
    }
    std::ofstream(file, std::ios::binary) << text;
    try {
        static_cast<void>(velora::read_host_config(folder.path));
    } catch (const velora::HostError&) {
        // refused in words
    } catch (const velora::Fault&) {
        if (bytes_of(file) != text) __builtin_trap();
    }
    return 0;
}
