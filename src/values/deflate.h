#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

struct libdeflate_compressor;

namespace velora {

/// Packs bytes by the deflate method, each piece by itself.
class Deflater {
public:
    static constexpr int kFast = 1;   ///< for pages, which are many; the higher levels save little there
    static constexpr int kSmall = 6;  ///< for what is written once and sent
    explicit Deflater(int level);

    /// The piece as PDF and PNG want it: with a head and a check sum (RFC 1950). Valid until the next call.
    std::string_view with_check(std::string_view bytes);
    /// The bare piece as archives want it (RFC 1951). Valid until the next call.
    std::string_view bare(std::string_view bytes);

private:
    using Pack = size_t (*)(libdeflate_compressor*, const void*, size_t, void*, size_t);
    std::string_view pack(std::string_view bytes, size_t most, Pack how);

    struct Drop {
        void operator()(libdeflate_compressor* compressor) const noexcept;
    };
    std::unique_ptr<libdeflate_compressor, Drop> compressor_;
    std::unique_ptr<char[]> packed_;
    size_t room_ = 0;
};

/// The check sum of a part of an archive or of a PNG file.
uint32_t archive_check(std::string_view bytes);

}  // namespace velora
