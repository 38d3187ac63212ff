#include "adapters/ini/ini_file.h"

#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "adapters/ini/locked_folder.h"
#include "values/atomic_file.h"
#include "values/fault.h"
#include "values/hex.h"

namespace velora::ini {

namespace {

namespace fs = std::filesystem;

Fault unreadable(const fs::path& path, int error)
{
    return {fault::kPathAccess, "The file " + path.string() + " cannot be read: " + std::strerror(error),
            path.string()};
}

/// The text of a file; empty when there is none.
std::string content_of(const fs::path& path)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) return {};
    if (error) throw unreadable(path, error.value());
    if (fs::is_directory(status)) throw unreadable(path, EISDIR);
    std::ifstream file(path, std::ios::binary);
    if (!file) throw unreadable(path, errno);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void load(CSimpleIniA& ini, const fs::path& path)
{
    ini.SetUnicode();
    ini.SetSpaces(false);
    const std::string content = content_of(path);
    if (!content.empty() && ini.LoadData(content) < 0) throw unreadable(path, EINVAL);
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

}  // namespace

bool IniFile::exists() const
{
    std::error_code ignored;
    return fs::is_regular_file(path_, ignored);
}

std::string IniFile::read(std::string_view section, std::string_view key, std::string_view otherwise) const
{
    CSimpleIniA ini;
    load(ini, path_);
    const char* value = ini.GetValue(section_in_file(section).c_str(), key_in_file(key).c_str());
    return value != nullptr ? decoded(value) : std::string(otherwise);
}

template <class Change>
void IniFile::change(Change change) const
{
    const LockedFolder lock(path_.has_parent_path() ? path_.parent_path() : fs::path("."));
    CSimpleIniA ini;
    load(ini, path_);
    change(ini);
    std::string content;
    ini.Save(content);
    write_file(path_, content);
}

void IniFile::write(std::string_view section, std::string_view key, std::string_view value) const
{
    change([&](CSimpleIniA& ini) {
        ini.SetValue(section_in_file(section).c_str(), key_in_file(key).c_str(), encoded(value).c_str());
    });
}

void IniFile::delete_section(std::string_view section) const
{
    if (!exists()) return;
    change([&](CSimpleIniA& ini) { ini.Delete(section_in_file(section).c_str(), nullptr); });
}

}  // namespace velora::ini
