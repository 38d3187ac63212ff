#include "engine/export/pdf/pdf_fonts.h"

#include <hb-ot.h>
#include <hb-subset.h>

#include <algorithm>
#include <array>
#include <set>

#include "engine/export/common/short_number.h"
#include "values/fault.h"
#include "values/hex.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

struct DropBlob {
    void operator()(hb_blob_t* blob) const noexcept { hb_blob_destroy(blob); }
};
struct DropFace {
    void operator()(hb_face_t* face) const noexcept { hb_face_destroy(face); }
};
struct DropInput {
    void operator()(hb_subset_input_t* input) const noexcept { hb_subset_input_destroy(input); }
};
struct DropPlan {
    void operator()(hb_subset_plan_t* plan) const noexcept { hb_subset_plan_destroy(plan); }
};

bool has_table(const Face& face, hb_tag_t tag)
{
    const std::unique_ptr<hb_blob_t, DropBlob> table(hb_face_reference_table(face.shaping_face(), tag));
    return hb_blob_get_length(table.get()) > 0;
}

/// What a viewer needs that draws glyphs by number; it maps and shapes no characters.
constexpr auto kDrawing = std::to_array<hb_tag_t>(
    {HB_TAG('h', 'e', 'a', 'd'), HB_TAG('h', 'h', 'e', 'a'), HB_TAG('h', 'm', 't', 'x'), HB_TAG('m', 'a', 'x', 'p'),
     HB_TAG('g', 'l', 'y', 'f'), HB_TAG('l', 'o', 'c', 'a'), HB_TAG('c', 'v', 't', ' '), HB_TAG('f', 'p', 'g', 'm'),
     HB_TAG('p', 'r', 'e', 'p'), HB_TAG('g', 'a', 's', 'p')});

hb_blob_t* drawing_table(hb_face_t*, hb_tag_t tag, void* whole)
{
    if (std::ranges::find(kDrawing, tag) == kDrawing.end()) return nullptr;
    return hb_face_reference_table(static_cast<hb_face_t*>(whole), tag);
}

/// The face as it is taken apart: for outlines by number without its map of all characters, which is half of the work.
std::unique_ptr<hb_face_t, DropFace> source_of(const Face& face, bool outlines_by_code)
{
    if (outlines_by_code) return std::unique_ptr<hb_face_t, DropFace>(hb_face_reference(face.shaping_face()));
    return std::unique_ptr<hb_face_t, DropFace>(hb_face_create_for_tables(drawing_table, face.shaping_face(), nullptr));
}

std::unique_ptr<hb_subset_input_t, DropInput> subset_input(bool outlines_by_code, const std::set<uint16_t>& glyphs)
{
    std::unique_ptr<hb_subset_input_t, DropInput> input(hb_subset_input_create_or_fail());
    hb_set_t* wanted = hb_subset_input_glyph_set(input.get());
    for (const uint16_t glyph : glyphs) hb_set_add(wanted, glyph);
    const unsigned numbers = outlines_by_code ? HB_SUBSET_FLAGS_RETAIN_GIDS : HB_SUBSET_FLAGS_DEFAULT;
    hb_subset_input_set_flags(input.get(), numbers | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
    hb_set_t* dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    for (const hb_tag_t tag : {HB_TAG('G', 'S', 'U', 'B'), HB_TAG('G', 'P', 'O', 'S'), HB_TAG('G', 'D', 'E', 'F'),
                               HB_TAG('n', 'a', 'm', 'e'), HB_TAG('k', 'e', 'r', 'n'), HB_TAG('F', 'F', 'T', 'M')}) {
        hb_set_add(dropped, tag);
    }
    return input;
}

/// The font program with the given glyphs alone, and which number each has in it.
class Subset {
public:
    /// @param outlines_by_code  glyphs keep their numbers, which texts in the file name
    Subset(const Face& face, bool outlines_by_code, const std::set<uint16_t>& glyphs)
        : input_(subset_input(outlines_by_code, glyphs)),
          plan_(hb_subset_plan_create_or_fail(source_of(face, outlines_by_code).get(), input_.get())),
          face_(plan_ ? hb_subset_plan_execute_or_fail(plan_.get()) : nullptr)
    {
        if (!face_) throw Fault(fault::kPathAccess, "The font cannot be embedded: " + face.path().string());
    }

    [[nodiscard]] std::string program() const
    {
        const std::unique_ptr<hb_blob_t, DropBlob> blob(hb_face_reference_blob(face_.get()));
        unsigned size = 0;
        const char* bytes = hb_blob_get_data(blob.get(), &size);
        return {bytes, size};
    }
    [[nodiscard]] uint16_t number(uint16_t glyph) const
    {
        return static_cast<uint16_t>(hb_map_get(hb_subset_plan_old_to_new_glyph_mapping(plan_.get()), glyph));
    }

private:
    std::unique_ptr<hb_subset_input_t, DropInput> input_;
    std::unique_ptr<hb_subset_plan_t, DropPlan> plan_;
    std::unique_ptr<hb_face_t, DropFace> face_;
};

/// Six capital letters that tell subsets apart, made from what is in the subset.
std::string subset_tag(const std::set<uint16_t>& glyphs)
{
    uint64_t hash = 1469598103934665603ULL;
    for (const uint16_t glyph : glyphs) hash = (hash ^ glyph) * 1099511628211ULL;
    std::string tag;
    for (int i = 0; i < 6; ++i, hash /= 26) tag += static_cast<char>('A' + hash % 26);
    return tag;
}

constexpr size_t kMostCodes = 0x10000;
constexpr size_t kMostAwkward = 2560;
constexpr size_t kLongestText = 8;  // UTF-16 units that a code stands for; some readers take no more

/// Codes whose bytes would need an escape in a literal string are passed over.
bool is_awkward(uint16_t code)
{
    const auto awkward = [](int byte) {
        return byte == '(' || byte == ')' || byte == '\\' || byte == '\r' || byte == '\n';
    };
    return awkward(code & 0xFF) || awkward(code >> 8);
}

}  // namespace

PdfFont::PdfFont(const Face& face, std::string name, PdfId id)
    : face_(face),
      name_(std::move(name)),
      id_(id),
      outlines_by_code_(!has_table(face, HB_TAG('g', 'l', 'y', 'f'))),
      shown_(1)
{
}

PdfFont::Code PdfFont::find_code(uint16_t glyph, std::string_view text)
{
    any_missing_ = any_missing_ || glyph == 0;
    if (outlines_by_code_) {
        if (shown_.size() <= glyph) shown_.resize(glyph + 1);
        if (shown_[glyph].glyph == 0) shown_[glyph] = {glyph, std::string(text)};
        return {glyph, shown_[glyph].text == text};
    }
    if (text.size() > kLongestText && utf16_size(text) > kLongestText) return {find_code(glyph, {}).number, false};
    std::vector<uint16_t>& codes = codes_[glyph];
    const auto known = std::ranges::find_if(codes, [&](uint16_t code) { return shown_[code].text == text; });
    if (known != codes.end()) return remembered(*known, text);
    if (!codes.empty() && !has_room_for_more()) return {codes.front(), false};
    codes.push_back(add({glyph, std::string(text)}));
    return remembered(codes.back(), text);
}

/// Every glyph of the face finds a code; what is left over is for those that show several texts.
bool PdfFont::has_room_for_more() const
{
    return shown_.size() + hb_face_get_glyph_count(face_.shaping_face()) + kMostAwkward < kMostCodes;
}

uint16_t PdfFont::add(Shown shown)
{
    if (shown_.size() >= kMostCodes) return 0;
    while (is_awkward(static_cast<uint16_t>(shown_.size()))) shown_.emplace_back();
    shown_.push_back(std::move(shown));
    return static_cast<uint16_t>(shown_.size() - 1);
}

uint16_t PdfFont::blank(std::string_view text)
{
    const auto [entry, is_new] = blanks_.try_emplace(std::string(text));
    if (!is_new) return entry->second;
    if (has_room_for_more()) {
        entry->second = add({face_.glyph(' ').id, std::string(text), false});
    } else {
        entry->second = blanks_.begin()->second;  // the letter cannot be copied, in a file that holds so many
    }
    return entry->second;
}

PdfFont::Code PdfFont::remembered(uint16_t code, std::string_view text)
{
    if (text.size() == 1) ascii_[static_cast<uint8_t>(text[0]) & 127] = code;
    return {code, true};
}

std::string PdfFont::widths() const
{
    const double scale = 1000.0 / face_.units_per_em();
    std::string list = "[0[";
    for (const Shown& shown : shown_) {
        const int advance = shown.has_width ? hb_font_get_glyph_h_advance(face_.shaping_font(), shown.glyph) : 0;
        append_short_number(list, advance * scale);
        list += ' ';
    }
    return list + "]]";
}

std::string PdfFont::unicode_map() const
{
    std::string map =
        "/CIDInit/ProcSet findresource begin 12 dict begin begincmap/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)"
        "/Supplement 0>>def/CMapName/Adobe-Identity-UCS def/CMapType 2 def\n"
        "1 begincodespacerange<0000><FFFF>endcodespacerange\n";
    constexpr size_t kMostInBlock = 100;
    std::vector<std::string> rows;
    for (size_t code = 1; code < shown_.size(); ++code) {
        if (shown_[code].text.empty()) continue;
        std::string& row = rows.emplace_back("<");
        append_hex(row, code, 4);
        row += "><";
        append_pdf_utf16(row, shown_[code].text);
        row += ">\n";
    }
    for (size_t at = 0; at < rows.size(); at += kMostInBlock) {
        const size_t count = std::min(kMostInBlock, rows.size() - at);
        map += std::to_string(count) + " beginbfchar\n";
        for (size_t i = at; i < at + count; ++i) map += rows[i];
        map += "endbfchar\n";
    }
    return map + "endcmap CMapName currentdict/CMap defineresource pop end end";
}

std::string PdfFont::descriptor(const std::string& base, PdfId program) const
{
    const double scale = 1000.0 / face_.units_per_em();
    const std::string ascent = short_number(face_.ascent() * scale), descent = short_number(-face_.descent() * scale);
    const bool fixed_pitch = face_.glyph('i').advance == face_.glyph('W').advance;
    const bool slanted = base.find("Oblique") != std::string::npos || base.find("Italic") != std::string::npos;
    const int flags = 4 | (fixed_pitch ? 1 : 0) | (slanted ? 64 : 0);
    return "<</Type/FontDescriptor/FontName/" + base + "/Flags " + std::to_string(flags) + "/FontBBox[-500 " + descent +
           " 1500 " + ascent + "]/ItalicAngle " + (slanted ? "-11" : "0") + "/Ascent " + ascent + "/Descent " +
           descent + "/CapHeight 729/StemV 80/" + (outlines_by_code_ ? "FontFile3 " : "FontFile2 ") +
           pdf_reference(program) + ">>";
}

void PdfFont::write(PdfFile& file) const
{
    std::set<uint16_t> glyphs{0};
    for (const Shown& shown : shown_) glyphs.insert(shown.glyph);
    const Subset subset(face_, outlines_by_code_, glyphs);
    std::string map;  // glyph numbers by code
    for (const Shown& shown : shown_) {
        const uint16_t number = subset.number(shown.glyph);
        map += static_cast<char>(number >> 8);
        map += static_cast<char>(number & 0xFF);
    }
    std::string base = subset_tag(glyphs) + "+" + face_.postscript_name();
    std::erase_if(base, [](char c) {
        return c <= ' ' || c > '~' || std::string_view("()<>[]{}/%#").find(c) != std::string_view::npos;
    });
    const PdfId program = file.reserve(), descriptor_id = file.reserve(), descendant = file.reserve(),
                unicode = file.reserve(), glyph_map = file.reserve();
    const std::string outlines = subset.program();
    file.stream(program, outlines_by_code_ ? "/Subtype/OpenType" : "/Length1 " + std::to_string(outlines.size()),
                outlines);
    file.object(descriptor_id, descriptor(base, program));
    file.stream(unicode, "", unicode_map());
    file.stream(glyph_map, "", map);
    file.object(descendant, std::string("<</Type/Font/Subtype/") +
                                (outlines_by_code_ ? "CIDFontType0" : "CIDFontType2") + "/BaseFont/" + base +
                                "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor " +
                                pdf_reference(descriptor_id) + "/W " + widths() +
                                (outlines_by_code_ ? "" : "/CIDToGIDMap " + pdf_reference(glyph_map)) + ">>");
    file.object(id_, "<</Type/Font/Subtype/Type0/BaseFont/" + base + "/Encoding/Identity-H/DescendantFonts[" +
                         pdf_reference(descendant) + "]/ToUnicode " + pdf_reference(unicode) + ">>");
}

PdfFont& PdfFonts::font(const Face& face)
{
    for (const auto& [known, font] : fonts_) {
        if (known == &face) return *font;
    }
    const std::string name = "F" + std::to_string(fonts_.size() + 1);
    fonts_.emplace_back(&face, std::make_unique<PdfFont>(face, name, file_.reserve()));
    return *fonts_.back().second;
}

std::string PdfFonts::write() const
{
    std::string entries;
    for (const auto& [face, font] : fonts_) {
        font->write(file_);
        entries += "/" + font->name() + " " + pdf_reference(font->id());
    }
    return entries;
}

}  // namespace velora::engine
