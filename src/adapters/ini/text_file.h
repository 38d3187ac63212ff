#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace velora::ini {

/// The text of a file as programs of several systems leave it, with the form to write it in again.
struct TextFile {
    enum class Form : uint8_t { Plain, Utf8WithMark, Utf16Little, Utf16Big };

    std::string text;  ///< UTF-8; bytes of another code page stay as they are
    Form form = Form::Plain;
    bool ends_in_pairs = false;  ///< "\r\n" in the file

    /// A changed text as the file holds it.
    [[nodiscard]] std::string bytes_of(std::string_view changed) const;
};

/// An empty text for a file that is not there.
/// @throws Fault 75 for what is no ordinary file, is larger than any settings are, or holds no text that could be
/// written back
TextFile read_text_file(const std::filesystem::path& path);

/// The first line that is none of an ini file: neither blank, a remark, a section nor a section's key. 0 when there is
/// none.
size_t strange_line(std::string_view text);

}  // namespace velora::ini
