#include "engine/export/common/picture_bytes.h"

#include <algorithm>
#include <cstdint>

namespace velora::engine {

std::string base64(std::string_view bytes)
{
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - i);
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k) {
            group = group << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0);
        }
        for (size_t k = 0; k < 4; ++k) out += k <= count ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    }
    return out;
}

std::string_view image_media_type(std::string_view bytes)
{
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return "image/png";
    if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
    if (bytes.substr(0, 1024).find("<svg") != std::string_view::npos) return "image/svg+xml";
    return {};
}

}  // namespace velora::engine
