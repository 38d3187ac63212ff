#include "engine/export/paint/cairo_faces.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include "engine/text/face.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

/// An open font file with the library that reads it.
struct Outlines {
    Outlines(std::shared_ptr<FT_LibraryRec_> of, FT_Face opened) : library(std::move(of)), face(opened) {}
    ~Outlines() { FT_Done_Face(face); }
    Outlines(const Outlines&) = delete;
    Outlines& operator=(const Outlines&) = delete;

    std::shared_ptr<FT_LibraryRec_> library;
    FT_Face face;
};

std::shared_ptr<FT_LibraryRec_> start_library()
{
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) throw Fault(fault::kCannotCreate, "The font library cannot be started.");
    return {library, FT_Done_FreeType};
}

}  // namespace

cairo_font_face_t* CairoFaces::of(const Face& face)
{
    CairoFontFace& known = faces_[&face];
    if (known) return known.get();
    if (!library_) library_ = start_library();
    FT_Face opened = nullptr;
    if (FT_New_Face(library_.get(), face.path().c_str(), static_cast<FT_Long>(face.index()), &opened) != 0) {
        throw Fault(fault::kFileNotFound, "The font file cannot be read: " + face.path().string());
    }
    auto outlines = std::make_unique<Outlines>(library_, opened);
    known.reset(cairo().ft_font_face_create_for_ft_face(opened, loading_));
    static const cairo_user_data_key_t kOutlines{};
    const auto drop = [](void* data) { delete static_cast<Outlines*>(data); };
    if (cairo().font_face_set_user_data(known.get(), &kOutlines, outlines.get(), drop) == CAIRO_STATUS_SUCCESS) {
        static_cast<void>(outlines.release());
    }
    return known.get();
}

}  // namespace velora::engine
