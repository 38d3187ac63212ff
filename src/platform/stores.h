#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velora {

struct NamedText {
    std::string key, value;
};

/// The user's settings: text under application, section and key.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    [[nodiscard]] virtual std::string get(std::string_view application, std::string_view section, std::string_view key,
                                          std::string_view otherwise) const = 0;
    virtual void set(std::string_view application, std::string_view section, std::string_view key,
                     std::string_view value) = 0;
    /// Several at once. A store that can does all or nothing.
    virtual void set_all(std::string_view application, std::string_view section, std::span<const NamedText> values)
    {
        for (const auto& [key, value] : values) set(application, section, key, value);
    }
};

/// What becomes of a profile file: sections go first, then values come.
struct ProfileChange {
    struct Entry {
        std::string section, key, value;
    };
    std::vector<std::string> deleted_sections;
    std::vector<Entry> written;
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
    /// Several at once. A store that can does all or nothing.
    virtual void change(const std::string& path, const ProfileChange& change)
    {
        for (const auto& section : change.deleted_sections) delete_section(path, section);
        for (const auto& entry : change.written) write(path, entry.section, entry.key, entry.value);
    }
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
