#pragma once

#include <vector>

#include "engine/definition/model.h"
#include "engine/definition/warning.h"

namespace velora::engine {

class SourceText;

/// Whether the parts of a definition fit together. What only spoils the looks is a warning.
/// @throws DefinitionError for a name that a calculation rests on and nobody declares, and for pages without room
void check_definition(model::Definition& definition, SourceText& source);

/// Checks the inheritance of styles, once those of the templates have joined. @throws DefinitionError naming a cycle
void check_styles(const std::vector<model::Style>& styles, std::vector<Warning>& warnings);

}  // namespace velora::engine
