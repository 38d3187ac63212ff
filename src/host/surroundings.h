#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>

namespace velora {

struct Adapters;

/// What the program is started in.
struct Surroundings {
    std::ostream& out;
    std::ostream& err;
    std::function<std::string(const char*)> environment;  ///< blank for a variable that is not set
    std::filesystem::path program;
    bool at_terminal = false;  ///< a person watches `err`
    /// May put something else behind the ports before they are used; empty for nothing.
    std::function<void(Adapters&)> adapt = {};
};

}  // namespace velora
