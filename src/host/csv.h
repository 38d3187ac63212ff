#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace velora {

/// One row of a file of values separated by commas.
struct CsvRow {
    size_t line;  ///< where it begins, counted from 1
    std::vector<std::string> cells;
};

/// Reads RFC 4180: quotes around a value, doubled inside it; lines end with LF or CRLF. The mark with which
/// spreadsheets begin UTF-8 is passed over. @throws HostError naming file and line
std::vector<CsvRow> read_csv_rows(const std::filesystem::path& file);

/// The bytes of a data file. @throws HostError naming it
std::string read_data_file(const std::filesystem::path& file);

}  // namespace velora
