#pragma once

#include <map>
#include <memory>

#include "engine/export/paint/cairo_handles.h"

struct FT_LibraryRec_;

namespace velora::engine {

class Face;

/// Cairo's faces of font files. Cairo keeps what it drew last and may drop a face much later than its user does; until
/// then the open file lives, for another one in its place would be taken for it.
class CairoFaces {
public:
    /// @param loading  flags of the font library for reading an outline
    explicit CairoFaces(int loading) : loading_(loading) {}

    /// @throws Fault 53 when the font file cannot be read
    cairo_font_face_t* of(const Face& face);

private:
    int loading_;
    std::shared_ptr<FT_LibraryRec_> library_;
    std::map<const Face*, CairoFontFace> faces_;
};

}  // namespace velora::engine
