#pragma once

#include <filesystem>
#include <vector>

#include "engine/definition/model.h"
#include "engine/definition/warning.h"

namespace velora::engine {

/// Reads a definition file with the styles of its templates. @throws DefinitionError
model::Definition load_definition(const std::filesystem::path& file, std::vector<Warning>& warnings);

}  // namespace velora::engine
