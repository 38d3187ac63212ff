#include "engine/export/paint/bitmap.h"

#include <turbojpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "engine/export/common/picture_fit.h"
#include "engine/export/paint/cairo_handles.h"

namespace velora::engine {
namespace {

constexpr uint64_t kMostPoints = uint64_t{64} << 20;

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
    const CairoSurface surface(cairo().image_surface_create_from_png_stream(read_from_view, &bytes));
    if (cairo().surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
    const bool opaque = cairo().image_surface_get_format(surface.get()) == CAIRO_FORMAT_RGB24;
    Bitmap bitmap{
        cairo().image_surface_get_width(surface.get()), cairo().image_surface_get_height(surface.get()), {}, {}};
    const int stride = cairo().image_surface_get_stride(surface.get());
    for (int y = 0; y < bitmap.height; ++y) {
        const unsigned char* row = cairo().image_surface_get_data(surface.get()) + static_cast<ptrdiff_t>(y) * stride;
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

struct DropReader {
    void operator()(void* reader) const noexcept { tjDestroy(reader); }
};

bool is_small_enough(int width, int height)
{
    return static_cast<uint64_t>(width) * static_cast<uint64_t>(height) <= kMostPoints;
}

/// Four inks a point, which such files hold inverted, become the three colours that they leave.
void mix_inks(std::vector<uint8_t>& parts)
{
    for (size_t from = 0, to = 0; from < parts.size(); from += 4) {
        for (size_t part = 0; part < 3; ++part) {
            parts[to++] = static_cast<uint8_t>(parts[from + part] * parts[from + 3] / 255);
        }
    }
    parts.resize(parts.size() / 4 * 3);
}

/// A file that ends too early is shown as far as it goes.
std::optional<Bitmap> read_jpeg(std::string_view bytes)
{
    const std::unique_ptr<void, DropReader> reader(tjInitDecompress());
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    Bitmap bitmap;
    int sampling = 0;
    int space = 0;
    const bool read = reader && tjDecompressHeader3(reader.get(), data, bytes.size(), &bitmap.width, &bitmap.height,
                                                    &sampling, &space) == 0;
    if (!read || !is_small_enough(bitmap.width, bitmap.height)) return std::nullopt;
    const int format = space == TJCS_CMYK || space == TJCS_YCCK ? TJPF_CMYK : TJPF_RGB;
    bitmap.colors.resize(static_cast<size_t>(bitmap.width) * static_cast<size_t>(bitmap.height) *
                         static_cast<size_t>(tjPixelSize[format]));
    const int end = tjDecompress2(reader.get(), data, bytes.size(), bitmap.colors.data(), bitmap.width, 0,
                                  bitmap.height, format, TJFLAG_LIMITSCANS);
    if (end != 0 && tjGetErrorCode(reader.get()) != TJERR_WARNING) return std::nullopt;
    if (format == TJPF_CMYK) mix_inks(bitmap.colors);
    return bitmap;
}

}  // namespace

std::optional<Bitmap> read_bitmap(std::string_view bytes)
{
    const auto head = shown_picture(bytes);
    if (!head || !is_small_enough(head->width, head->height)) return std::nullopt;
    return head->kind == PictureKind::Jpeg ? read_jpeg(bytes) : read_png(bytes);
}

}  // namespace velora::engine
