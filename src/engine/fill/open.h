#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/definition/reader.h"
#include "engine/fill/report.h"

namespace velora::engine {

/// Reads a definition file with the styles of its templates. @throws DefinitionError
model::Definition load_definition(const std::filesystem::path& file, std::vector<Warning>& warnings);

/// The file of that name beside a definition; none for a relative name that leads out of the definition's folder.
std::optional<std::filesystem::path> beside(const model::Definition& definition, const std::string& name);

/// Opens a definition file with the style templates that it names, ready to be filled.
///
/// @param warnings  what a designer should know, with line and column
/// @throws DefinitionError  when the file is missing, is no definition or holds an expression outside the language
std::unique_ptr<Report> open_report(const std::filesystem::path& file, std::vector<std::string>& warnings);

/// The texts of a definition's resource bundle: NAME.properties beside it, under NAME_xx and NAME_xx_YY for the
/// locale. Empty when it names none; a bundle that is missing is a warning.
std::map<std::string, std::string, std::less<>> read_resources(const model::Definition& definition,
                                                               std::string_view locale,
                                                               std::vector<std::string>& warnings);

/// The texts of a properties file: `key=value` or `key: value`, `#` and `!` begin remarks, a backslash at the end of a
/// line joins the next one, `\n`, `\t` and `\uXXXX` stand for characters.
std::map<std::string, std::string, std::less<>> read_properties(std::string_view text);

/// The values that the parameters have in a run with these options; defaults where none is given.
std::map<std::string, Value, std::less<>> parameter_values(const Report& report, const FillOptions& options);

}  // namespace velora::engine
