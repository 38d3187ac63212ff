#include "engine/picture/other_pictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "engine/page/picture_head.h"
#include "engine/picture/bounded_process.h"
#include "engine/picture/cairo_library.h"
#include "engine/picture/picture_libraries.h"
#include "engine/picture/png_file.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

constexpr double kMostPixels = 32 << 20;
constexpr double kDrawnPixels = 1600;  // of a drawing's longer side: 300 to the inch on half a page

[[noreturn]] void fail(const std::string& reason)
{
    throw Fault(fault::kCannotCreate, reason);
}

struct PixelKind {
    std::string_view begin;
    const char* name;  ///< as the library calls its reader
};
using namespace std::string_view_literals;
constexpr auto kPixelKinds = std::to_array<PixelKind>({
    {"GIF8"sv, "gif"},
    {"BM"sv, "bmp"},
    {"II*\0"sv, "tiff"},
    {"MM\0*"sv, "tiff"},
});

/// Null for other files.
const char* pixel_kind(std::string_view bytes)
{
    if (bytes.starts_with("RIFF") && bytes.substr(0, 12).ends_with("WEBP")) return "webp";
    for (const PixelKind& kind : kPixelKinds) {
        if (bytes.starts_with(kind.begin) && bytes.size() > 26) return kind.name;
    }
    return nullptr;
}

const ObjectLibrary& objects()
{
    static const ObjectLibrary library;
    return library;
}

const PixelLibrary& pixels()
{
    static const PixelLibrary library;
    return library;
}

const DrawingLibrary& drawings()
{
    static const DrawingLibrary library;
    return library;
}

struct Unref {
    void operator()(void* object) const noexcept { objects().g_object_unref(object); }
};

/// Called with the size before the points are read.
void note_size(GdkPixbufLoader* loader, int width, int height, gpointer too_large)
{
    if (static_cast<double>(width) * height <= kMostPixels) return;
    *static_cast<bool*>(too_large) = true;
    pixels().gdk_pixbuf_loader_set_size(loader, 1, 1);
}

ShownPicture png_of(const GdkPixbuf& read)
{
    const PixelLibrary& library = pixels();
    const int width = library.gdk_pixbuf_get_width(&read), height = library.gdk_pixbuf_get_height(&read);
    const int parts = library.gdk_pixbuf_get_n_channels(&read), stride = library.gdk_pixbuf_get_rowstride(&read);
    if (width <= 0 || height <= 0 || (parts != 3 && parts != 4) || library.gdk_pixbuf_get_bits_per_sample(&read) != 8) {
        fail("it is damaged");
    }
    const guint8* data = library.gdk_pixbuf_read_pixels(&read);
    std::vector<uint32_t> points;
    points.reserve(static_cast<size_t>(width) * static_cast<size_t>(height));
    bool opaque = true;
    for (int y = 0; y < height; ++y) {
        const guint8* at = data + static_cast<ptrdiff_t>(y) * stride;
        for (int x = 0; x < width; ++x, at += parts) {
            const uint32_t alpha = parts == 4 ? at[3] : 255;
            opaque &= alpha == 255;
            points.push_back(alpha << 24 | uint32_t{at[0]} << 16 | uint32_t{at[1]} << 8 | at[2]);
        }
    }
    const auto across = static_cast<uint32_t>(width), down = static_cast<uint32_t>(height);
    return {opaque ? engine::png_of(points, across, down) : png_with_alpha(points, across, down), 1};
}

ShownPicture pixels_read(std::string_view bytes, const char* kind)
{
    const PixelLibrary& library = pixels();
    const std::unique_ptr<GdkPixbufLoader, Unref> loader(library.gdk_pixbuf_loader_new_with_type(kind, nullptr));
    if (!loader) fail("this machine has no reader for " + std::string(kind) + " pictures");
    bool too_large = false;
    objects().g_signal_connect_data(loader.get(), "size-prepared", reinterpret_cast<GCallback>(note_size), &too_large,
                                    nullptr, GConnectFlags{});
    const auto* data = reinterpret_cast<const guchar*>(bytes.data());
    const bool written = library.gdk_pixbuf_loader_write(loader.get(), data, bytes.size(), nullptr) != 0;
    const bool closed = library.gdk_pixbuf_loader_close(loader.get(), nullptr) != 0;
    if (too_large) fail("it has more than 32 million points");
    const GdkPixbuf* read = library.gdk_pixbuf_loader_get_pixbuf(loader.get());
    if (!written || !closed || read == nullptr) fail("it is damaged");
    return png_of(*read);
}

/// The natural size of a drawing, a pixel of its own for a point; the box that it names where it gives no size.
std::pair<double, double> size_of(RsvgHandle* drawing)
{
    double width = 0, height = 0;
    if (drawings().rsvg_handle_get_intrinsic_size_in_pixels(drawing, &width, &height) == 0) {
        gboolean any_width = 0, any_height = 0, any_box = 0;
        RsvgLength across{}, down{};
        RsvgRectangle box{};
        drawings().rsvg_handle_get_intrinsic_dimensions(drawing, &any_width, &across, &any_height, &down, &any_box,
                                                        &box);
        constexpr double kUnknown = 100;
        width = any_box != 0 ? box.width : kUnknown;
        height = any_box != 0 ? box.height : kUnknown;
    }
    constexpr double kLeast = 0.01, kMost = 1e6;
    const auto is_usable = [](double length) { return length >= kLeast && length <= kMost; };
    if (!is_usable(width) || !is_usable(height)) fail("it has no usable size");
    return {width, height};
}

/// Points of a surface, which holds colours times alpha, as colours beside alpha.
std::vector<uint32_t> straight_points(cairo_surface_t& surface, int width, int height, bool& opaque)
{
    cairo().surface_flush(&surface);
    std::vector<uint32_t> points(static_cast<size_t>(width) * static_cast<size_t>(height));
    std::memcpy(points.data(), cairo().image_surface_get_data(&surface), points.size() * 4);
    for (uint32_t& point : points) {
        const uint32_t alpha = point >> 24;
        opaque &= alpha == 255;
        if (alpha == 255 || alpha == 0) continue;
        uint32_t straight = alpha << 24;
        for (const int shift : {16, 8, 0}) {
            straight |= std::min<uint32_t>((point >> shift & 255) * 255 / alpha, 255) << shift;
        }
        point = straight;
    }
    return points;
}

struct DropSurface {
    void operator()(cairo_surface_t* surface) const noexcept { cairo().surface_destroy(surface); }
};
struct DropContext {
    void operator()(cairo_t* context) const noexcept { cairo().destroy(context); }
};

ShownPicture drawing_read(std::string_view bytes)
{
    const DrawingLibrary& library = drawings();
    // Read from memory it has no folder: nothing that it names outside of itself is opened.
    const auto* data = reinterpret_cast<const guint8*>(bytes.data());
    const std::unique_ptr<RsvgHandle, Unref> drawing(library.rsvg_handle_new_from_data(data, bytes.size(), nullptr));
    if (!drawing) fail("it is damaged");
    constexpr double kPixelsToTheInch = 96;
    library.rsvg_handle_set_dpi(drawing.get(), kPixelsToTheInch);
    const auto [width, height] = size_of(drawing.get());
    const double density = kDrawnPixels / std::max(width, height);
    const auto pixels_of = [&](double length) { return std::max(1, static_cast<int>(std::lround(length * density))); };
    const int across = pixels_of(width), down = pixels_of(height);
    const std::unique_ptr<cairo_surface_t, DropSurface> surface(
        cairo().image_surface_create(CAIRO_FORMAT_ARGB32, across, down));
    const std::unique_ptr<cairo_t, DropContext> context(cairo().create(surface.get()));
    const RsvgRectangle whole{0, 0, static_cast<double>(across), static_cast<double>(down)};
    if (library.rsvg_handle_render_document(drawing.get(), context.get(), &whole, nullptr) == 0) {
        fail("it is damaged or asks for too much");
    }
    bool opaque = true;
    const auto points = straight_points(*surface, across, down, opaque);
    const auto columns = static_cast<uint32_t>(across), rows = static_cast<uint32_t>(down);
    return {opaque ? engine::png_of(points, columns, rows) : png_with_alpha(points, columns, rows), density};
}

bool is_drawing(std::string_view bytes)
{
    return image_media_type(bytes) == "image/svg+xml";
}

void load_libraries(std::string_view bytes)
{
    (void)objects();
    if (is_drawing(bytes)) {
        (void)drawings();
        (void)cairo();
    } else {
        (void)pixels();
    }
}

/// The answer of the process that reads: a letter for how it went, then the density and the file, or the reason.
std::string answer_to(std::string_view bytes)
{
    try {
        const ShownPicture picture = picture_read_here(bytes);
        std::string answer(1 + sizeof picture.density, '+');
        std::memcpy(answer.data() + 1, &picture.density, sizeof picture.density);
        return answer + picture.png;
    } catch (const std::exception& error) {
        return std::string("-") + error.what();
    }
}

ShownPicture from_answer(const std::string& answer)
{
    ShownPicture picture;
    constexpr size_t kHead = 1 + sizeof picture.density;
    if (answer.size() < kHead || answer[0] != '+') {
        fail(answer.empty() ? "it is damaged or takes too long" : answer.substr(1));
    }
    std::memcpy(&picture.density, answer.data() + 1, sizeof picture.density);
    picture.png = answer.substr(kHead);
    return picture;
}

}  // namespace

bool is_other_picture(std::string_view bytes)
{
    return is_drawing(bytes) || pixel_kind(bytes) != nullptr;
}

ShownPicture picture_read_here(std::string_view bytes)
{
    if (is_drawing(bytes)) return drawing_read(bytes);
    const char* kind = pixel_kind(bytes);
    if (kind == nullptr) fail("it is none of the kinds that are read");
    return pixels_read(bytes, kind);
}

ShownPicture shown_picture_of(std::string_view bytes)
{
    struct Known {
        std::string bytes;
        ShownPicture picture;
    };
    constexpr size_t kMostKnown = 4;
    static std::mutex guard;
    static std::deque<Known> recent;
    const std::lock_guard lock(guard);
    for (const Known& known : recent) {
        if (known.bytes == bytes) return known.picture;
    }
    load_libraries(bytes);
    ShownPicture picture = from_answer(answer_of_process([&] { return answer_to(bytes); }));
    if (recent.size() == kMostKnown) recent.pop_front();
    return recent.emplace_back(Known{std::string(bytes), std::move(picture)}).picture;
}

}  // namespace velora::engine
