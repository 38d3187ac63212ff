#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/stores.h"

namespace velora::ini {

/// A text file of sections and keys, in UTF-8 where its mark does not say otherwise. Every call reads the file anew; a
/// change is made under a lock on its folder and comes into being as a whole, so that several programs may write at the
/// same time. Order and comments stay. A value with blanks at its ends stands between double quotes in the file; line
/// ends in it become blanks. Marks in a section's or key's name that would mean something else in the file stand there
/// as %XX. A file with lines that are neither remarks nor keys of a section is read as far as it goes and not changed.
class IniFile {
public:
    explicit IniFile(std::filesystem::path path) : path_(std::move(path)) {}

    [[nodiscard]] bool exists() const;
    /// `otherwise` where file, section or key are missing. @throws Fault 75 for a file that cannot be read
    [[nodiscard]] std::string read(std::string_view section, std::string_view key, std::string_view otherwise) const;
    /// @throws Fault 75 with path and reason
    void write(std::string_view section, std::string_view key, std::string_view value) const;
    void delete_section(std::string_view section) const;
    /// All of it or nothing.
    void apply(const ProfileChange& change) const;

private:
    template <class Change>
    void change(Change change) const;

    std::filesystem::path path_;
};

/// Reads many values of a file, which is parsed again only when another one stands in its place.
class IniReader {
public:
    IniReader();
    ~IniReader();
    IniReader(const IniReader&) = delete;
    IniReader& operator=(const IniReader&) = delete;

    /// As `IniFile::read`.
    std::string read(const std::filesystem::path& path, std::string_view section, std::string_view key,
                     std::string_view otherwise);

private:
    struct Parsed;
    std::mutex mutex_;
    std::unique_ptr<Parsed> latest_;
};

}  // namespace velora::ini
