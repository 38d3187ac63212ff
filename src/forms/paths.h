#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velora::forms {

/// The parts of a path between its slashes, which may be of either kind.
std::vector<std::string> path_pieces(std::string_view path);

/// The name that a report gets whose path was typed: as many characters of the file's name as the piece four places
/// before it has. @throws Fault 9 for a path of fewer than five pieces
std::string name_from_path(std::string_view path);

/// A file's name without its last four characters. @throws Fault 5 for a shorter one
std::string title_of_file(std::string_view path);

}  // namespace velora::forms
