#pragma once

#include <string>

namespace velora {

/// A shared library of the system that is loaded when it is first used: a run that does not need it pays nothing for
/// it, and a machine without it runs everything else. It stays loaded until the program ends.
class LoadedLibrary {
public:
    /// @param file     as the loader finds it, with the number of its interface: "libcurl.so.4"
    /// @param purpose  what cannot be done without it, as a sentence's beginning: "E-mail cannot be sent"
    /// @throws Fault 429 with the purpose and the loader's words
    LoadedLibrary(const char* file, std::string purpose);

    /// @throws Fault 429 for a library that lacks the function
    template <class Function>
    [[nodiscard]] Function* function(const char* name) const
    {
        return reinterpret_cast<Function*>(address(name));
    }

private:
    [[nodiscard]] void* address(const char* name) const;

    void* handle_;
    std::string purpose_;
};

}  // namespace velora
