#include "values/deflate.h"

#include <libdeflate.h>

#include <new>

namespace velora {

void Deflater::Drop::operator()(libdeflate_compressor* compressor) const noexcept
{
    libdeflate_free_compressor(compressor);
}

Deflater::Deflater(int level) : compressor_(libdeflate_alloc_compressor(level))
{
    if (!compressor_) throw std::bad_alloc();
}

std::string_view Deflater::pack(std::string_view bytes, size_t most, Pack how)
{
    if (room_ < most) {
        packed_ = std::make_unique_for_overwrite<char[]>(most);
        room_ = most;
    }
    return {packed_.get(), how(compressor_.get(), bytes.data(), bytes.size(), packed_.get(), room_)};
}

std::string_view Deflater::with_check(std::string_view bytes)
{
    return pack(bytes, libdeflate_zlib_compress_bound(compressor_.get(), bytes.size()), libdeflate_zlib_compress);
}

std::string_view Deflater::bare(std::string_view bytes)
{
    return pack(bytes, libdeflate_deflate_compress_bound(compressor_.get(), bytes.size()), libdeflate_deflate_compress);
}

uint32_t archive_check(std::string_view bytes)
{
    return libdeflate_crc32(0, bytes.data(), bytes.size());
}

}  // namespace velora
