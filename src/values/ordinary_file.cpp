#include "values/ordinary_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace velora {

namespace fs = std::filesystem;

std::string read_ordinary_file(const fs::path& file, uintmax_t most)
{
    std::error_code error;
    const auto status = fs::status(file, error);
    if (error) throw std::runtime_error(error.message());
    if (fs::is_directory(status)) throw std::runtime_error(std::strerror(EISDIR));
    if (!fs::is_regular_file(status)) throw std::runtime_error("it is no ordinary file");
    const uintmax_t size = fs::file_size(file, error);
    if (error) throw std::runtime_error(error.message());
    if (size > most) throw std::runtime_error("it has more than " + std::to_string(most >> 20) + " MB");
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw std::runtime_error(std::strerror(errno));
    std::string bytes(size, '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(stream.gcount()));
    return bytes;
}

}  // namespace velora
