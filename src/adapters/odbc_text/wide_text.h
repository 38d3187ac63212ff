#pragma once

#include <string>
#include <string_view>

#include "values/utf8.h"

namespace velora::odbc {

/// Text goes to and comes from drivers as UTF-16, so that no code page of the client has a say in it.
inline std::u16string to_wide(std::string_view text)
{
    std::u16string wide;
    wide.reserve(text.size());
    for (const auto [character, size, at] : Utf8Characters(text)) {
        each_utf16_unit(character, [&](char16_t unit) { wide += unit; });
    }
    return wide;
}

inline std::string from_wide(std::u16string_view wide)
{
    std::string text;
    text.reserve(wide.size());
    size_t at = 0;
    while (at < wide.size() && wide[at] < 0x80) text += static_cast<char>(wide[at++]);
    append_utf16(text, wide.substr(at));
    return text;
}

}  // namespace velora::odbc
