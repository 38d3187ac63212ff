#include "values/base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "values/characters.h"

namespace velora {
namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr auto kValues = [] {
    std::array<int8_t, 256> values{};
    values.fill(-1);
    for (size_t at = 0; at < kDigits.size(); ++at) {
        values[static_cast<unsigned char>(kDigits[at])] = static_cast<int8_t>(at);
    }
    return values;
}();

}  // namespace

std::string to_base64(std::string_view bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t from = 0; from < bytes.size(); from += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - from);
        uint32_t group = 0;
        for (size_t at = 0; at < 3; ++at) {
            group = group << 8 | (at < count ? static_cast<unsigned char>(bytes[from + at]) : 0);
        }
        for (size_t at = 0; at < 4; ++at) text += at <= count ? kDigits[group >> (18 - 6 * at) & 63] : '=';
    }
    return text;
}

std::optional<std::string> from_base64(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        if (is_blank(c)) continue;
        if (c == '=') break;
        const int value = kValues[static_cast<unsigned char>(c)];
        if (value < 0) return std::nullopt;
        bits = (bits << 6 | static_cast<uint32_t>(value)) & 0xFFFFFF;
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    return bytes;
}

}  // namespace velora
