#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace velora::engine {

/// The fonts that the system has. Making one reads the system's font configuration, which takes a while.
class SystemFonts {
public:
    SystemFonts();
    ~SystemFonts();
    SystemFonts(const SystemFonts&) = delete;
    SystemFonts& operator=(const SystemFonts&) = delete;

    struct Found {
        std::filesystem::path path;
        unsigned index = 0;
        std::string family;  ///< the name under which it was found
    };
    /// None when the family is not there; substitutes do not count.
    std::optional<Found> find(const std::string& family, bool bold, bool italic) const;
    std::optional<Found> find_with(char32_t character, bool bold, bool italic) const;

private:
    struct Config;
    std::unique_ptr<Config> config_;
};

}  // namespace velora::engine
