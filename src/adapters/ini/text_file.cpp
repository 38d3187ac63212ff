#include "adapters/ini/text_file.h"

#include <array>
#include <stdexcept>

#include "values/fault.h"
#include "values/ordinary_file.h"
#include "values/utf8.h"

namespace velora::ini {

namespace {

namespace fs = std::filesystem;
using Form = TextFile::Form;

constexpr uintmax_t kLargest = 4u << 20;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

struct Mark {
    std::string_view bytes;
    Form form;
};

constexpr auto kMarks = std::to_array<Mark>({
    {kUtf8Mark, Form::Utf8WithMark},
    {"\xFF\xFE", Form::Utf16Little},
    {"\xFE\xFF", Form::Utf16Big},
});

bool is_utf16(Form form)
{
    return form == Form::Utf16Little || form == Form::Utf16Big;
}

std::string from_utf16(std::string_view bytes, Form form)
{
    const size_t low = form == Form::Utf16Little ? 0 : 1;
    std::u16string units;
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto byte = [&](size_t which) { return static_cast<unsigned char>(bytes[at + which]); };
        units.push_back(static_cast<char16_t>(byte(low) | byte(1 - low) << 8));
    }
    std::string text;
    append_utf16(text, units);
    return text;
}

std::string to_utf16(std::string_view text, Form form)
{
    std::string bytes;
    for (const auto [character, size, at] : Utf8Characters(text)) {
        each_utf16_unit(character, [&](char16_t unit) {
            const char pair[] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
            bytes += form == Form::Utf16Little ? pair[0] : pair[1];
            bytes += form == Form::Utf16Little ? pair[1] : pair[0];
        });
    }
    return bytes;
}

TextFile text_of(std::string bytes)
{
    TextFile file;
    for (const Mark& mark : kMarks) {
        if (!bytes.starts_with(mark.bytes)) continue;
        const std::string_view rest = std::string_view(bytes).substr(mark.bytes.size());
        file = {is_utf16(mark.form) ? from_utf16(rest, mark.form) : std::string(rest), mark.form};
        break;
    }
    if (file.form == Form::Plain) file.text = std::move(bytes);
    file.ends_in_pairs = file.text.find("\r\n") != std::string::npos;
    return file;
}

std::string with_pairs(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '\n' && !out.ends_with('\r')) out += '\r';
        out += c;
    }
    return out;
}

/// Tells the lines of an ini file, which are asked one after the other.
class IniLines {
public:
    bool belongs(std::string_view line)
    {
        const size_t start = line.find_first_not_of(" \t");
        if (start == std::string_view::npos) return true;
        const std::string_view text = line.substr(start);
        if (text.front() == ';' || text.front() == '#') return true;
        if (text.front() != '[') return in_section_ && has_key(text);
        in_section_ = is_section(text);
        return in_section_;
    }

private:
    static bool has_key(std::string_view text)
    {
        const size_t sign = text.find('=');
        return sign != std::string_view::npos && sign > 0;
    }
    /// With a name, and nothing behind it that would be lost.
    static bool is_section(std::string_view text)
    {
        constexpr std::string_view kBlanks = " \t";
        const size_t end = text.find(']');
        return end != std::string_view::npos && text.find_first_not_of(kBlanks, 1) < end &&
               text.find_first_not_of(kBlanks, end + 1) == std::string_view::npos;
    }

    bool in_section_ = false;
};

}  // namespace

std::string TextFile::bytes_of(std::string_view given) const
{
    std::string changed = ends_in_pairs ? with_pairs(given) : std::string(given);
    for (const Mark& mark : kMarks) {
        if (mark.form != form) continue;
        return std::string(mark.bytes) + (is_utf16(form) ? to_utf16(changed, form) : changed);
    }
    return changed;
}

TextFile read_text_file(const fs::path& path)
{
    std::error_code ignored;
    if (fs::status(path, ignored).type() == fs::file_type::not_found) return {};
    try {
        const std::string bytes = read_ordinary_file(path, kLargest);
        TextFile file = text_of(bytes);
        const bool comes_back = !is_utf16(file.form) || to_utf16(file.text, file.form) == bytes.substr(2);
        if (!comes_back || file.text.find('\0') != std::string::npos) throw std::runtime_error("it holds no text");
        return file;
    } catch (const std::runtime_error& caught) {
        const std::string why = caught.what();
        throw Fault(fault::kPathAccess, "The file " + path.string() + " cannot be read: " + why, path.string());
    }
}

size_t strange_line(std::string_view text)
{
    IniLines lines;
    for (size_t number = 1; !text.empty(); ++number) {
        const size_t end = std::min(text.find_first_of("\r\n"), text.size());
        if (!lines.belongs(text.substr(0, end))) return number;
        const bool is_pair = text.substr(end).starts_with("\r\n");
        text.remove_prefix(std::min(end + (is_pair ? 2 : 1), text.size()));
    }
    return 0;
}

}  // namespace velora::ini
