#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace velora::engine {

/// How a PNG file holds its points.
enum class PngColors : uint8_t { Grey = 0, Rgb = 2, Palette = 3, GreyAlpha = 4, Rgba = 6 };

namespace made_png {

inline void append_number(std::string& out, uint32_t number)
{
    for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>(number >> shift & 255);
}

inline uint32_t crc(std::string_view bytes)
{
    uint32_t sum = 0xFFFFFFFF;
    for (const char each : bytes) {
        sum ^= static_cast<unsigned char>(each);
        for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

inline void append_chunk(std::string& out, std::string_view name, std::string_view bytes)
{
    append_number(out, static_cast<uint32_t>(bytes.size()));
    const std::string chunk = std::string(name).append(bytes);
    out += chunk;
    append_number(out, crc(chunk));
}

/// The bytes as a zlib stream that packs nothing.
inline std::string stored(std::string_view bytes)
{
    uint32_t low = 1, high = 0;
    for (const char each : bytes) {
        low = (low + static_cast<unsigned char>(each)) % 65521;
        high = (high + low) % 65521;
    }
    std::string out = "\x78\x01\x01";
    const auto size = static_cast<uint16_t>(bytes.size());
    for (const uint16_t half : {size, static_cast<uint16_t>(~size)}) {
        out += static_cast<char>(half & 255);
        out += static_cast<char>(half >> 8);
    }
    out += bytes;
    append_number(out, high << 16 | low);
    return out;
}

}  // namespace made_png

/// A PNG picture of so many points, row by row, each with its parts; a palette holds red, green, blue and alpha.
/// At most some ten thousand bytes.
inline std::string made_png_picture(PngColors colors, uint32_t width, uint32_t height, std::string_view points,
                                    std::string_view palette = {}, char depth = 8)
{
    std::string out = "\x89PNG\r\n\x1A\n";
    std::string head;
    made_png::append_number(head, width);
    made_png::append_number(head, height);
    head += depth;
    head += static_cast<char>(colors);
    head.append(3, '\0');
    made_png::append_chunk(out, "IHDR", head);
    std::string entries, alphas;
    for (size_t at = 0; at + 4 <= palette.size(); at += 4) {
        entries += palette.substr(at, 3);
        alphas += palette[at + 3];
    }
    if (!entries.empty()) made_png::append_chunk(out, "PLTE", entries);
    if (!alphas.empty()) made_png::append_chunk(out, "tRNS", alphas);
    const size_t row = height == 0 ? 0 : points.size() / height;
    std::string rows;
    for (uint32_t y = 0; row > 0 && y < height; ++y) rows.append(1, '\0').append(points.substr(y * row, row));
    made_png::append_chunk(out, "IDAT", made_png::stored(rows));
    made_png::append_chunk(out, "IEND", {});
    return out;
}

}  // namespace velora::engine
