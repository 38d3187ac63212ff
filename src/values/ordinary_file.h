#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace velora {

/// The bytes of an ordinary file. Folders, devices and pipes, which might never end, and files of more than `most`
/// bytes are refused before anything is read.
/// @throws std::runtime_error with the reason alone, for a message that names the file
std::string read_ordinary_file(const std::filesystem::path& file, uintmax_t most);

}  // namespace velora
