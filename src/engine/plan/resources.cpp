#include "engine/plan/resources.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "engine/definition/file_beside.h"
#include "values/ordinary_file.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

constexpr uintmax_t kLargestBundle = 1u << 20;

/// Appends what the `\uXXXX` at `at` and those right behind it stand for, and leaves `at` behind them. False when there
/// is none.
bool take_unicode(std::string_view text, size_t& at, std::string& plain)
{
    std::u16string units;
    while (text.substr(at).starts_with("\\u") && text.size() - at >= 6) {
        uint32_t unit = 0;
        const char* digits = text.data() + at + 2;
        const auto [end, error] = std::from_chars(digits, digits + 4, unit, 16);
        if (error != std::errc() || end != digits + 4) break;
        units += static_cast<char16_t>(unit);
        at += 6;
    }
    append_utf16(plain, units);
    return !units.empty();
}

/// What a letter behind a backslash means; signs mean themselves.
char meaning(char c)
{
    return c == 'n' ? '\n' : (c == 't' ? '\t' : (c == 'r' ? '\r' : c));
}

std::string unescaped(std::string_view text)
{
    std::string plain;
    for (size_t at = 0; at < text.size();) {
        if (take_unicode(text, at, plain)) continue;
        const char c = text[at++];
        plain += c == '\\' && at < text.size() ? meaning(text[at++]) : c;
    }
    return plain;
}

bool ends_in_backslash(std::string_view line)
{
    const size_t last = line.find_last_not_of('\\');
    const size_t count = line.size() - (last == std::string_view::npos ? 0 : last + 1);
    return count % 2 == 1;
}

}  // namespace

std::map<std::string, std::string, std::less<>> read_properties(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\f";
    std::map<std::string, std::string, std::less<>> properties;
    std::istringstream lines{std::string(text)};
    std::string line;
    for (std::string part; std::getline(lines, part);) {
        if (part.ends_with('\r')) part.pop_back();
        line += part.substr(std::min(part.size(), part.find_first_not_of(kBlanks)));
        if (ends_in_backslash(line)) {
            line.pop_back();
            continue;
        }
        if (!line.empty() && line[0] != '#' && line[0] != '!') {
            size_t end = 0;
            while (end < line.size() && std::string_view("=: \t").find(line[end]) == std::string_view::npos) {
                end += line[end] == '\\' ? 2 : 1;
            }
            end = std::min(end, line.size());
            size_t value = std::min(line.find_first_not_of(kBlanks, end), line.size());
            if (value < line.size() && (line[value] == '=' || line[value] == ':')) {
                value = std::min(line.find_first_not_of(kBlanks, value + 1), line.size());
            }
            properties[unescaped(std::string_view(line).substr(0, end))] =
                unescaped(std::string_view(line).substr(value));
        }
        line.clear();
    }
    return properties;
}

std::map<std::string, std::string, std::less<>> read_resources(const model::Definition& definition,
                                                               std::string_view locale,
                                                               std::vector<std::string>& warnings)
{
    std::map<std::string, std::string, std::less<>> resources;
    const std::string& bundle = definition.data.resource_bundle;
    if (bundle.empty()) return resources;
    bool found = false;
    for (const auto& suffix : {std::string(), "_" + std::string(locale.substr(0, 2)), "_" + std::string(locale)}) {
        const auto file = file_beside(definition.folder, bundle + suffix + ".properties");
        std::error_code unknown;
        if (!file || !std::filesystem::exists(*file, unknown)) continue;
        found = true;
        try {
            for (auto& [key, text] : read_properties(read_ordinary_file(*file, kLargestBundle))) {
                resources[key] = std::move(text);
            }
        } catch (const std::runtime_error& caught) {
            warnings.push_back("the resource bundle " + file->string() + " cannot be read: " + caught.what());
        }
    }
    if (!found) warnings.push_back("there is no resource bundle '" + bundle + "' beside the definition");
    return resources;
}

}  // namespace velora::engine
