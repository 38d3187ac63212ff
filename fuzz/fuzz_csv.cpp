#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "host/host_error.h"
#include "host/tables.h"

/// Any bytes as a file of values separated by commas: refused with a message, or rows that all have every field.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const auto file = std::filesystem::temp_directory_path() / ("fuzz-" + std::to_string(getpid()) + ".csv");
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    try {
        auto table = velora::read_csv(file);
        while (table.next()) {
            for (size_t field = 0; field < table.fields().size(); ++field) static_cast<void>(table.cell(field));
        }
    } catch (const velora::HostError&) {
    }
    std::filesystem::remove(file);
    return 0;
}
