#include "adapters/ini/stores.h"

#include <filesystem>

#include "adapters/ini/ini_file.h"
#include "values/fault.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora {

namespace {

using ini::IniFile;

constexpr size_t kProfileValueCharacters = 256;  // as they have always been read; longer paths are cut

class IniSettings final : public SettingsStore {
public:
    explicit IniSettings(std::string path) : path_(std::move(path)) {}

    std::string get(std::string_view, std::string_view section, std::string_view key,
                    std::string_view otherwise) const override
    {
        return reader_.read(path_, section, key, otherwise);
    }

    void set(std::string_view, std::string_view section, std::string_view key, std::string_view value) override
    {
        make_folder();
        IniFile(path_).write(section, key, value);
    }

    void set_all(std::string_view, std::string_view section, std::span<const NamedText> values) override
    {
        make_folder();
        ProfileChange change;
        for (const auto& [key, value] : values) change.written.push_back({std::string(section), key, value});
        IniFile(path_).apply(change);
    }

private:
    void make_folder() const
    {
        const auto folder = path_.parent_path();
        std::error_code error;
        if (!folder.empty()) std::filesystem::create_directories(folder, error);
        if (error) {
            throw Fault(fault::kPathAccess,
                        "The settings folder " + folder.string() + " cannot be made: " + error.message(),
                        folder.string());
        }
    }

    std::filesystem::path path_;
    mutable ini::IniReader reader_;
};

class IniProfiles final : public ProfileFile {
public:
    bool exists(const std::string& path) const override { return IniFile(path).exists(); }

    std::string read(const std::string& path, std::string_view section, std::string_view key) const override
    {
        return std::string(cut_to_characters(reader_.read(path, section, key, ""), kProfileValueCharacters));
    }

    void write(const std::string& path, std::string_view section, std::string_view key, std::string_view value) override
    {
        IniFile(path).write(section, key, value);
    }

    void delete_section(const std::string& path, std::string_view section) override
    {
        IniFile(path).delete_section(section);
    }

    void change(const std::string& path, const ProfileChange& change) override { IniFile(path).apply(change); }

private:
    mutable ini::IniReader reader_;
};

}  // namespace

std::unique_ptr<SettingsStore> ini_settings(std::string path)
{
    return std::make_unique<IniSettings>(std::move(path));
}

std::unique_ptr<ProfileFile> ini_profiles()
{
    return std::make_unique<IniProfiles>();
}

}  // namespace velora
