#include "engine/text/face.h"

#include <hb-ot.h>
#include <hb.h>

#include "values/fault.h"

namespace velora::engine {

void Face::DropFace::operator()(hb_face_t* face) const noexcept
{
    hb_face_destroy(face);
}

void Face::DropFont::operator()(hb_font_t* font) const noexcept
{
    hb_font_destroy(font);
}

Face::Face(std::filesystem::path path, unsigned index, bool plain_latin)
    : path_(std::move(path)), index_(index), plain_latin_(plain_latin)
{
    hb_blob_t* blob = hb_blob_create_from_file_or_fail(path_.c_str());
    if (blob == nullptr) throw Fault(fault::kFileNotFound, "The font file cannot be read: " + path_.string());
    face_.reset(hb_face_create(blob, index));
    hb_blob_destroy(blob);
    if (hb_face_get_glyph_count(face_.get()) == 0) {
        throw Fault(fault::kFileNotFound, "This is no font file: " + path_.string());
    }
    font_.reset(hb_font_create(face_.get()));
    units_per_em_ = static_cast<int>(hb_face_get_upem(face_.get()));

    hb_font_extents_t extents{};
    hb_font_get_h_extents(font_.get(), &extents);
    ascent_ = extents.ascender;
    descent_ = -extents.descender;
    line_gap_ = extents.line_gap;
    for (char32_t character = ' '; character < kKnown; ++character) known_[character] = lookup(character);
}

Face::Glyph Face::lookup(char32_t character) const
{
    hb_codepoint_t id = 0;
    if (!hb_font_get_nominal_glyph(font_.get(), character, &id)) return {};
    return {static_cast<uint16_t>(id), static_cast<uint16_t>(hb_font_get_glyph_h_advance(font_.get(), id))};
}

std::string Face::postscript_name() const
{
    std::array<char, 128> name{};
    unsigned size = name.size();
    hb_ot_name_get_utf8(face_.get(), HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &size, name.data());
    return size == 0 ? path_.stem().string() : std::string(name.data(), size);
}

}  // namespace velora::engine
