#include "engine/export/paint/bitmap.h"

#include <cairo.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cstring>
#include <memory>

#include "engine/export/common/picture_fit.h"

namespace velora::engine {
namespace {

constexpr uint64_t kMostPoints = uint64_t{64} << 20;

bool is_jpeg(std::string_view bytes)
{
    return bytes.starts_with("\xFF\xD8\xFF");
}

struct DropSurface {
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
};

cairo_status_t read_from_view(void* closure, unsigned char* data, unsigned length)
{
    auto& rest = *static_cast<std::string_view*>(closure);
    if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, rest.data(), length);
    rest.remove_prefix(length);
    return CAIRO_STATUS_SUCCESS;
}

std::optional<Bitmap> read_png(std::string_view bytes)
{
    const std::unique_ptr<cairo_surface_t, DropSurface> surface(
        cairo_image_surface_create_from_png_stream(read_from_view, &bytes));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
    const bool opaque = cairo_image_surface_get_format(surface.get()) == CAIRO_FORMAT_RGB24;
    Bitmap bitmap{cairo_image_surface_get_width(surface.get()), cairo_image_surface_get_height(surface.get()), {}, {}};
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < bitmap.height; ++y) {
        const unsigned char* row = cairo_image_surface_get_data(surface.get()) + static_cast<ptrdiff_t>(y) * stride;
        for (int x = 0; x < bitmap.width; ++x) {
            uint32_t point = 0;
            std::memcpy(&point, row + x * 4, 4);
            const uint32_t alpha = opaque ? 255 : point >> 24;
            for (const int shift : {16, 8, 0}) {  // the surface holds colours times alpha
                const uint32_t part = point >> shift & 255;
                bitmap.colors.push_back(static_cast<uint8_t>(alpha == 0 ? 0 : std::min(part * 255 / alpha, 255U)));
            }
            if (!opaque) bitmap.alphas.push_back(static_cast<uint8_t>(alpha));
        }
    }
    return bitmap;
}

struct JpegFailure {
    jpeg_error_mgr base;
    std::jmp_buf back;
};

[[noreturn]] void leave(j_common_ptr reader)
{
    std::longjmp(reinterpret_cast<JpegFailure*>(reader->err)->back, 1);
}

/// The library reports failures by a jump, so nothing with a destructor may live in here.
bool decode_jpeg(std::string_view bytes, Bitmap& bitmap, std::vector<uint8_t>& row)
{
    jpeg_decompress_struct reader{};
    JpegFailure failure{};
    reader.err = jpeg_std_error(&failure.base);
    failure.base.error_exit = leave;
    failure.base.output_message = [](j_common_ptr) {};
    if (setjmp(failure.back) != 0) {
        jpeg_destroy_decompress(&reader);
        return false;
    }
    jpeg_create_decompress(&reader);
    jpeg_mem_src(&reader, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    jpeg_read_header(&reader, TRUE);
    const bool inks = reader.num_components == 4;
    reader.out_color_space = inks ? JCS_CMYK : JCS_RGB;
    jpeg_start_decompress(&reader);
    row.resize(size_t{reader.output_width} * 4);
    bitmap.width = static_cast<int>(reader.output_width);
    bitmap.height = static_cast<int>(reader.output_height);
    bitmap.colors.reserve(size_t{reader.output_width} * reader.output_height * 3);
    while (reader.output_scanline < reader.output_height) {
        JSAMPROW target = row.data();
        jpeg_read_scanlines(&reader, &target, 1);
        for (size_t x = 0; x < reader.output_width; ++x) {
            for (size_t part = 0; part < 3; ++part) {
                // Such files hold their inks inverted.
                bitmap.colors.push_back(inks ? static_cast<uint8_t>(row[x * 4 + part] * row[x * 4 + 3] / 255)
                                             : row[x * 3 + part]);
            }
        }
    }
    jpeg_finish_decompress(&reader);
    jpeg_destroy_decompress(&reader);
    return true;
}

}  // namespace

std::optional<Bitmap> read_bitmap(std::string_view bytes)
{
    const auto size = picture_size(bytes);
    if (!size || size->width == 0 || size->height == 0) return std::nullopt;
    if (uint64_t{size->width} * size->height > kMostPoints) return std::nullopt;
    if (!is_jpeg(bytes)) return read_png(bytes);
    Bitmap bitmap;
    std::vector<uint8_t> row;
    return decode_jpeg(bytes, bitmap, row) ? std::optional(std::move(bitmap)) : std::nullopt;
}

std::optional<JpegHead> read_jpeg_head(std::string_view bytes)
{
    if (!is_jpeg(bytes)) return std::nullopt;
    const auto byte = [&](size_t at) { return static_cast<uint8_t>(bytes[at]); };
    for (size_t at = 2; at + 9 < bytes.size();) {
        if (byte(at) != 0xFF) return std::nullopt;
        const int marker = byte(at + 1);
        const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (frame) {
            return JpegHead{byte(at + 7) << 8 | byte(at + 8), byte(at + 5) << 8 | byte(at + 6), byte(at + 9)};
        }
        at += 2 + static_cast<size_t>(byte(at + 2) << 8 | byte(at + 3));
    }
    return std::nullopt;
}

}  // namespace velora::engine
