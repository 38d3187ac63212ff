#include "engine/expression/utf16.h"

#include <algorithm>

#include "values/utf8.h"

namespace velora::engine {

bool is_ascii(std::string_view utf8)
{
    return std::ranges::all_of(utf8, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::optional<size_t> utf8_offset(std::string_view utf8, int64_t utf16_position)
{
    if (utf16_position < 0) return std::nullopt;
    auto left = static_cast<size_t>(utf16_position);
    for (const auto [character, size, at] : Utf8Characters(utf8)) {
        const size_t units = character > 0xFFFF ? 2 : 1;
        if (units > left) return at;
        left -= units;
    }
    return left == 0 ? std::optional(utf8.size()) : std::nullopt;
}

std::optional<char16_t> utf16_unit(std::string_view utf8, int64_t utf16_position)
{
    const auto at = utf8_offset(utf8, utf16_position);
    if (!at || *at == utf8.size()) return std::nullopt;
    std::u16string units;
    each_utf16_unit(utf8_at(utf8, *at).character, [&](char16_t unit) { units += unit; });
    const bool is_first = static_cast<size_t>(utf16_position) == utf16_size(utf8.substr(0, *at));
    return is_first ? units.front() : units.back();
}

}  // namespace velora::engine
