#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace velora::readers {

/// The files of one document by their extension.
using Formats = std::map<std::string, std::filesystem::path>;

/// Where a format has other words than the PDF file, or has them in another order. Empty when all of them say the same.
std::string difference_of_words(const std::vector<Formats>& documents);

}  // namespace velora::readers
