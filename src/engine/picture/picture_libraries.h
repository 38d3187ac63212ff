#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <librsvg/rsvg.h>

#include "values/loaded_library.h"

namespace velora::engine {

/// What is called of the libraries that read pictures; each is loaded when the first such picture comes.
#define VELORA_CALLED(name) decltype(::name)* name = library.function<decltype(::name)>(#name)

struct ObjectLibrary {
    LoadedLibrary library{"libgobject-2.0.so.0", "The picture cannot be read"};
    VELORA_CALLED(g_object_unref);
    VELORA_CALLED(g_signal_connect_data);
};

struct PixelLibrary {
    LoadedLibrary library{"libgdk_pixbuf-2.0.so.0", "The picture cannot be read"};
    VELORA_CALLED(gdk_pixbuf_loader_new_with_type);
    VELORA_CALLED(gdk_pixbuf_loader_write);
    VELORA_CALLED(gdk_pixbuf_loader_close);
    VELORA_CALLED(gdk_pixbuf_loader_set_size);
    VELORA_CALLED(gdk_pixbuf_loader_get_pixbuf);
    VELORA_CALLED(gdk_pixbuf_get_width);
    VELORA_CALLED(gdk_pixbuf_get_height);
    VELORA_CALLED(gdk_pixbuf_get_rowstride);
    VELORA_CALLED(gdk_pixbuf_get_n_channels);
    VELORA_CALLED(gdk_pixbuf_get_bits_per_sample);
    VELORA_CALLED(gdk_pixbuf_read_pixels);
};

struct DrawingLibrary {
    LoadedLibrary library{"librsvg-2.so.2", "The drawing cannot be read"};
    VELORA_CALLED(rsvg_handle_new_from_data);
    VELORA_CALLED(rsvg_handle_get_intrinsic_size_in_pixels);
    VELORA_CALLED(rsvg_handle_get_intrinsic_dimensions);
    VELORA_CALLED(rsvg_handle_set_dpi);
    VELORA_CALLED(rsvg_handle_render_document);
};

#undef VELORA_CALLED

}  // namespace velora::engine
