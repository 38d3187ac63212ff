#pragma once

#include <string>
#include <string_view>

namespace velora {

/// The user's settings: text under application, section and key.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    [[nodiscard]] virtual std::string get(std::string_view application, std::string_view section, std::string_view key,
                                          std::string_view otherwise) const = 0;
    virtual void set(std::string_view application, std::string_view section, std::string_view key,
                     std::string_view value) = 0;
};

/// Files of sections and keys, shared by the users of a company.
class ProfileFile {
public:
    virtual ~ProfileFile() = default;
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;
    /// The empty text for a file, section or key that is not there.
    [[nodiscard]] virtual std::string read(const std::string& path, std::string_view section,
                                           std::string_view key) const = 0;
    virtual void write(const std::string& path, std::string_view section, std::string_view key,
                       std::string_view value) = 0;
    virtual void delete_section(const std::string& path, std::string_view section) = 0;
};

/// Scrambles a password so that it can be kept in the settings store.
class PasswordCipher {
public:
    virtual ~PasswordCipher() = default;
    [[nodiscard]] virtual std::string scramble(std::string_view text) = 0;
    /// The empty text for what this cipher did not write.
    [[nodiscard]] virtual std::string unscramble(std::string_view text) = 0;
};

}  // namespace velora
