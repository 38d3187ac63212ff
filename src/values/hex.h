#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora {

/// The value of a hexadecimal digit of either case; -1 for every other sign.
constexpr int hex_value(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// Appends the lowest `digits` hexadecimal digits of a number, in capitals.
inline void append_hex(std::string& text, uint64_t number, int digits = 2)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) text += kDigits[number >> shift & 15];
}

}  // namespace velora
