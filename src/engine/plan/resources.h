#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/definition/model.h"

namespace velora::engine {

/// The texts of a definition's resource bundle: NAME.properties beside it, under NAME_xx and NAME_xx_YY for the
/// locale. Empty when it names none; a bundle that is missing is a warning.
std::map<std::string, std::string, std::less<>> read_resources(const model::Definition& definition,
                                                               std::string_view locale,
                                                               std::vector<std::string>& warnings);

/// The texts of a properties file: `key=value` or `key: value`, `#` and `!` begin remarks, a backslash at the end of a
/// line joins the next one, `\n`, `\t` and `\uXXXX` stand for characters.
std::map<std::string, std::string, std::less<>> read_properties(std::string_view text);

}  // namespace velora::engine
