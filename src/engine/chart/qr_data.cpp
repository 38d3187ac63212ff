#include "engine/chart/qr_data.h"

#include <algorithm>
#include <array>

namespace velora::engine {
namespace {

using PerVersion = std::array<uint8_t, kMostQrVersion>;

// Error correction codewords of a block, and blocks, by level and version.
// clang-format off
constexpr std::array<PerVersion, 4> kCorrection = {{
    {7, 10, 15, 20, 26, 18, 20, 24, 30, 18, 20, 24, 26, 30, 22, 24, 28, 30, 28, 28,
     28, 28, 30, 30, 26, 28, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30},
    {10, 16, 26, 18, 24, 16, 18, 22, 22, 26, 30, 22, 22, 24, 24, 28, 28, 26, 26, 26,
     26, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28},
    {13, 22, 18, 26, 18, 24, 18, 22, 20, 24, 28, 26, 24, 20, 30, 24, 28, 28, 26, 30,
     28, 30, 30, 30, 30, 28, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30},
    {17, 28, 22, 16, 22, 28, 26, 26, 24, 28, 24, 28, 22, 24, 24, 30, 28, 28, 26, 28,
     30, 24, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30},
}};
constexpr std::array<PerVersion, 4> kBlocks = {{
    {1, 1, 1, 1, 1, 2, 2, 2, 2, 4, 4, 4, 4, 4, 6, 6, 6, 6, 7, 8,
     8, 9, 9, 10, 12, 12, 12, 13, 14, 15, 16, 17, 18, 19, 19, 20, 21, 22, 24, 25},
    {1, 1, 1, 2, 2, 4, 4, 4, 5, 5, 5, 8, 9, 9, 10, 10, 11, 13, 14, 16,
     17, 17, 18, 20, 21, 23, 25, 26, 28, 29, 31, 33, 35, 37, 38, 40, 43, 45, 47, 49},
    {1, 1, 2, 2, 4, 4, 6, 6, 8, 8, 8, 10, 12, 16, 12, 17, 16, 18, 21, 20,
     23, 23, 25, 27, 29, 34, 34, 35, 38, 40, 43, 45, 48, 51, 53, 56, 59, 62, 65, 68},
    {1, 1, 2, 4, 4, 4, 5, 6, 8, 8, 11, 11, 16, 16, 18, 16, 19, 21, 25, 25,
     25, 34, 30, 32, 35, 37, 40, 42, 45, 48, 51, 54, 57, 60, 63, 66, 70, 74, 77, 81},
}};
// clang-format on

int of(const std::array<PerVersion, 4>& table, int version, QrLevel level)
{
    return table[static_cast<size_t>(level)][static_cast<size_t>(version - 1)];
}

int length_bits(int version)
{
    return version < 10 ? 8 : 16;
}

/// Product in the field of 256 elements with the polynomial x^8 + x^4 + x^3 + x^2 + 1.
uint8_t product(uint8_t left, uint8_t right)
{
    unsigned result = 0;
    for (int bit = 7; bit >= 0; --bit) {
        result = (result << 1) ^ ((result >> 7) * 0x11d);
        if (right >> bit & 1) result ^= left;
    }
    return static_cast<uint8_t>(result);
}

std::vector<uint8_t> generator(int degree)
{
    std::vector<uint8_t> factors(static_cast<size_t>(degree));
    factors.back() = 1;
    uint8_t root = 1;
    for (int round = 0; round < degree; ++round) {
        for (size_t at = 0; at < factors.size(); ++at) {
            factors[at] = product(factors[at], root);
            if (at + 1 < factors.size()) factors[at] ^= factors[at + 1];
        }
        root = product(root, 2);
    }
    return factors;
}

class BitWriter {
public:
    void put(unsigned value, int bits)
    {
        for (int bit = bits - 1; bit >= 0; --bit) {
            if (count_ % 8 == 0) bytes_.push_back(0);
            bytes_.back() = static_cast<uint8_t>(bytes_.back() | (value >> bit & 1) << (7 - count_ % 8));
            ++count_;
        }
    }
    [[nodiscard]] size_t count() const { return count_; }
    std::vector<uint8_t>& bytes() { return bytes_; }

private:
    std::vector<uint8_t> bytes_;
    size_t count_ = 0;
};

std::vector<uint8_t> data_codewords(std::string_view text, int version, QrLevel level)
{
    constexpr unsigned kByteMode = 4;
    const auto capacity = static_cast<size_t>(qr_data_codewords(version, level));
    BitWriter bits;
    bits.put(kByteMode, 4);
    bits.put(static_cast<unsigned>(text.size()), length_bits(version));
    for (const char c : text) bits.put(static_cast<unsigned char>(c), 8);
    bits.put(0, static_cast<int>(std::min<size_t>(4, capacity * 8 - bits.count())));
    for (uint8_t filler = 0xec; bits.bytes().size() < capacity; filler ^= 0xec ^ 0x11) bits.bytes().push_back(filler);
    return std::move(bits.bytes());
}

}  // namespace

int qr_raw_bits(int version)
{
    int bits = (16 * version + 128) * version + 64;
    if (version >= 2) {
        const int marks = version / 7 + 2;
        bits -= (25 * marks - 10) * marks - 55;
        if (version >= 7) bits -= 36;
    }
    return bits;
}

int qr_data_codewords(int version, QrLevel level)
{
    return qr_raw_bits(version) / 8 - of(kCorrection, version, level) * of(kBlocks, version, level);
}

int qr_version_for(size_t bytes, QrLevel level)
{
    for (int version = 1; version <= kMostQrVersion; ++version) {
        const size_t bits = 4 + static_cast<size_t>(length_bits(version)) + bytes * 8;
        if (bits <= static_cast<size_t>(qr_data_codewords(version, level)) * 8) return version;
    }
    throw BarcodeError("a text of " + std::to_string(bytes) + " bytes is too long for a QR code of its level");
}

std::vector<uint8_t> qr_correction(const std::vector<uint8_t>& data, int degree)
{
    const auto divisor = generator(degree);
    std::vector<uint8_t> rest(divisor.size());
    for (const uint8_t byte : data) {
        const uint8_t factor = byte ^ rest.front();
        rest.erase(rest.begin());
        rest.push_back(0);
        for (size_t at = 0; at < rest.size(); ++at) rest[at] ^= product(divisor[at], factor);
    }
    return rest;
}

std::vector<uint8_t> qr_codewords(std::string_view text, int version, QrLevel level)
{
    const auto data = data_codewords(text, version, level);
    const auto blocks = static_cast<size_t>(of(kBlocks, version, level));
    const int degree = of(kCorrection, version, level);
    const size_t short_size = data.size() / blocks;
    const size_t short_blocks = blocks - data.size() % blocks;  // the others hold one byte more
    std::vector<std::vector<uint8_t>> parts, corrections;
    for (size_t block = 0, at = 0; block < blocks; ++block) {
        const size_t size = short_size + (block < short_blocks ? 0 : 1);
        const auto from = data.begin() + static_cast<std::ptrdiff_t>(at);
        parts.emplace_back(from, from + static_cast<std::ptrdiff_t>(size));
        corrections.push_back(qr_correction(parts.back(), degree));
        at += size;
    }
    std::vector<uint8_t> result;
    const auto interleave = [&](const std::vector<std::vector<uint8_t>>& all, size_t longest) {
        for (size_t at = 0; at < longest; ++at) {
            for (const auto& part : all) {
                if (at < part.size()) result.push_back(part[at]);
            }
        }
    };
    interleave(parts, short_size + 1);
    interleave(corrections, static_cast<size_t>(degree));
    return result;
}

}  // namespace velora::engine
