#include "adapters/ini/ini_file.h"

#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <sys/stat.h>

#include "adapters/ini/locked_folder.h"
#include "adapters/ini/text_file.h"
#include "values/atomic_file.h"
#include "values/fault.h"
#include "values/hex.h"

namespace velora::ini {

namespace {

namespace fs = std::filesystem;

Fault failed(const fs::path& path, const std::string& what)
{
    return {fault::kPathAccess, "The file " + path.string() + what, path.string()};
}

void load(CSimpleIniA& ini, const fs::path& path, const TextFile& file)
{
    ini.SetUnicode();
    ini.SetSpaces(false);
    if (!file.text.empty() && ini.LoadData(file.text) < 0)
        throw failed(path, " cannot be read: it is no settings file");
}

/// A name or a value takes one line of the file.
std::string one_line(std::string_view text)
{
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return line;
}

bool is_hexadecimal(std::string_view text)
{
    return text.size() == 2 && hex_value(text[0]) >= 0 && hex_value(text[1]) >= 0;
}

/// A name as the file can hold it: what would end it, begin something else or be trimmed is written as %XX.
std::string name_in_file(std::string_view given, std::string_view marks, std::string_view first_marks)
{
    const std::string name = one_line(given);
    std::string out;
    for (size_t at = 0; at < name.size(); ++at) {
        const char c = name[at];
        const bool at_end = at == 0 || at + 1 == name.size();
        const bool is_harmful = marks.find(c) != std::string_view::npos ||
                                (at == 0 && first_marks.find(c) != std::string_view::npos) ||
                                (at_end && (c == ' ' || c == '\t')) ||
                                (c == '%' && is_hexadecimal(std::string_view(name).substr(at + 1, 2)));
        if (is_harmful) {
            out += '%';
            append_hex(out, static_cast<unsigned char>(c));
        } else {
            out += c;
        }
    }
    return out;
}

std::string section_in_file(std::string_view name)
{
    return name_in_file(name, "]", "");
}

std::string key_in_file(std::string_view name)
{
    return name_in_file(name, "=", "[;#");
}

bool is_quoted(std::string_view text)
{
    return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

std::string encoded(std::string_view value)
{
    std::string line = one_line(value);
    const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
    const bool needs_quotes = is_quoted(line) || (!line.empty() && (is_blank(line.front()) || is_blank(line.back())));
    return needs_quotes ? "\"" + line + "\"" : line;
}

std::string decoded(std::string_view value)
{
    if (is_quoted(value)) value = value.substr(1, value.size() - 2);
    return std::string(value);
}

std::string value_in(const CSimpleIniA& ini, std::string_view section, std::string_view key, std::string_view otherwise)
{
    const char* value = ini.GetValue(section_in_file(section).c_str(), key_in_file(key).c_str());
    return value != nullptr ? decoded(value) : std::string(otherwise);
}

void set_value(CSimpleIniA& ini, std::string_view section, std::string_view key, std::string_view value)
{
    ini.SetValue(section_in_file(section).c_str(), key_in_file(key).c_str(), encoded(value).c_str());
}

/// Tells a file from the one that stood in its place before. A change through this class is always another file; one
/// in place shows in the time.
struct Identity {
    bool known = false;
    dev_t device = 0;
    ino_t number = 0;
    off_t size = 0;
    int64_t seconds = 0, nanoseconds = 0;
    bool operator==(const Identity&) const = default;
};

Identity identity_of(const fs::path& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {true, status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

}  // namespace

struct IniReader::Parsed {
    fs::path path;
    Identity identity;
    CSimpleIniA ini;
};

IniReader::IniReader() = default;
IniReader::~IniReader() = default;

std::string IniReader::read(const fs::path& path, std::string_view section, std::string_view key,
                            std::string_view otherwise)
{
    const std::lock_guard turn(mutex_);
    const Identity identity = identity_of(path);
    if (!latest_ || !identity.known || latest_->path != path || latest_->identity != identity) {
        latest_.reset();
        auto parsed = std::make_unique<Parsed>();
        parsed->path = path;
        parsed->identity = identity;
        load(parsed->ini, path, read_text_file(path));
        latest_ = std::move(parsed);
    }
    return value_in(latest_->ini, section, key, otherwise);
}

bool IniFile::exists() const
{
    std::error_code ignored;
    return fs::is_regular_file(path_, ignored);
}

std::string IniFile::read(std::string_view section, std::string_view key, std::string_view otherwise) const
{
    CSimpleIniA ini;
    load(ini, path_, read_text_file(path_));
    return value_in(ini, section, key, otherwise);
}

template <class Change>
void IniFile::change(Change change) const
{
    const LockedFolder lock(path_.has_parent_path() ? path_.parent_path() : fs::path("."));
    const TextFile file = read_text_file(path_);
    // What the parser passes over would not be there any more.
    if (const size_t line = strange_line(file.text); line > 0) {
        throw failed(path_, " is left as it is: line " + std::to_string(line) +
                                " is none of a settings file. Mend the line, or put the file aside.");
    }
    CSimpleIniA ini;
    load(ini, path_, file);
    change(ini);
    std::string content;
    ini.Save(content);
    write_file(path_, file.bytes_of(content));
}

void IniFile::write(std::string_view section, std::string_view key, std::string_view value) const
{
    change([&](CSimpleIniA& ini) { set_value(ini, section, key, value); });
}

void IniFile::apply(const ProfileChange& wanted) const
{
    change([&](CSimpleIniA& ini) {
        for (const auto& section : wanted.deleted_sections) ini.Delete(section_in_file(section).c_str(), nullptr);
        for (const auto& entry : wanted.written) set_value(ini, entry.section, entry.key, entry.value);
    });
}

void IniFile::delete_section(std::string_view section) const
{
    if (!exists()) return;
    change([&](CSimpleIniA& ini) { ini.Delete(section_in_file(section).c_str(), nullptr); });
}

}  // namespace velora::ini
