#pragma once

#include "engine/definition/model.h"
#include "engine/definition/source.h"

namespace velora::engine {

/// Whether the parts of a definition fit together. What only spoils the looks is a warning.
/// @throws DefinitionError for a name that a calculation rests on and nobody declares, and for pages without room
void check_definition(model::Definition& definition, SourceText& source);

}  // namespace velora::engine
