#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "engine/definition/model.h"
#include "engine/definition/warning.h"

namespace velora::engine {

/// Reads a definition in either written form.
///
/// Names that the reader does not know, numbers out of range and elements that the engine does not draw are added to
/// `warnings`. Expressions are kept as texts with their place and not compiled.
/// @throws DefinitionError  naming element, line and reason: what is no XML, no report, nested without end, inherits
///                          from itself, lacks a name that another part asks for, or pastes text into a statement
model::Definition read_definition(std::string_view xml, std::vector<Warning>& warnings);

/// Reads a file; `path` and `folder` are set. @throws DefinitionError also when the file cannot be read
model::Definition read_definition_file(const std::filesystem::path& file, std::vector<Warning>& warnings);

/// Reads the styles of a style template. @throws DefinitionError
std::vector<model::Style> read_template(std::string_view xml, std::vector<Warning>& warnings);

/// The styles of a template file and of the templates that it includes, which are looked up beside it and, unless
/// they are named absolutely, not outside its folder. @throws DefinitionError also when a file cannot be read
std::vector<model::Style> read_template_file(const std::filesystem::path& file, std::vector<Warning>& warnings);

}  // namespace velora::engine
