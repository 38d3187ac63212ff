#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora::engine {

/// What is no base64 is passed over.
inline std::string from_base64(std::string_view text)
{
    constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    uint32_t bits = 0;
    int filled = 0;
    for (const char c : text) {
        const size_t value = kBase64.find(c);
        if (value == std::string_view::npos) continue;
        bits = bits << 6 | static_cast<uint32_t>(value);
        filled += 6;
        if (filled < 8) continue;
        filled -= 8;
        bytes += static_cast<char>(bits >> filled & 0xFF);
    }
    return bytes;
}

}  // namespace velora::engine
