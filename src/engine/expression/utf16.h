#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Text positions of the language count UTF-16 units, while texts are held in UTF-8. A text of ASCII alone, the usual
/// case, needs no counting.
namespace velora::engine {

bool is_ascii(std::string_view utf8);
/// Byte offset of a UTF-16 position, moved back to the start of its character. None when it is past the end.
std::optional<size_t> utf8_offset(std::string_view utf8, int64_t utf16_position);
std::optional<char16_t> utf16_unit(std::string_view utf8, int64_t utf16_position);

}  // namespace velora::engine
