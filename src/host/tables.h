#pragma once

#include <filesystem>
#include <memory>

#include "values/table_source.h"

namespace velora {

/// So many rows without a field.
std::unique_ptr<TableSource> empty_rows(size_t count);

/// A file of values separated by commas; its columns are the texts COLUMN_0, COLUMN_1, ...
/// @throws HostError naming file and line
std::unique_ptr<TableSource> read_csv(const std::filesystem::path& file);

/// A file in the form that `--pipe` writes. @throws HostError naming file and place
std::unique_ptr<TableSource> read_pipe_json(const std::filesystem::path& file);

}  // namespace velora
