#include "engine/export/xls/xls_pictures.h"

#include <glib.h>

namespace velora::engine {
namespace {

constexpr uint16_t kDrawingGroup = 0x00EB, kDrawing = 0x00EC, kObject = 0x005D;
constexpr uint32_t kBlock = 1024;

/// A record of the drawing format: version, instance, type, length, bytes. Containers have version 15.
std::string record(uint32_t version, uint32_t instance, uint32_t type, std::string_view bytes)
{
    XlsPayload head;
    head.u16(version | instance << 4).u16(type).u32(static_cast<uint32_t>(bytes.size()));
    return head.bytes() + std::string(bytes);
}

/// Head of a container whose content goes on in later records.
std::string open_container(uint32_t type, size_t length)
{
    XlsPayload head;
    head.u16(15).u16(type).u32(static_cast<uint32_t>(length));
    return head.bytes();
}

/// 16 bytes that tell pictures apart.
std::string digest(std::string_view bytes)
{
    std::string result(16, '\0');
    gsize length = result.size();
    const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> sum(g_checksum_new(G_CHECKSUM_MD5), g_checksum_free);
    g_checksum_update(sum.get(), reinterpret_cast<const guchar*>(bytes.data()), static_cast<gssize>(bytes.size()));
    g_checksum_get_digest(sum.get(), reinterpret_cast<guint8*>(result.data()), &length);
    return result;
}

std::string stored_picture(const ImageData& data, uint32_t uses)
{
    const bool is_png = data.bytes.starts_with("\x89PNG");
    const uint32_t kind = is_png ? 6 : 5;
    const std::string id = digest(data.bytes);
    const std::string picture =
        record(0, is_png ? 0x6E0 : 0x46A, is_png ? 0xF01E : 0xF01D, id + std::string(1, '\xFF') + data.bytes);
    XlsPayload entry;
    entry.u8(kind).u8(kind).raw(id).u16(0xFF).u32(static_cast<uint32_t>(picture.size())).u32(uses).u32(0).u32(0);
    return record(2, kind, 0xF007, entry.raw(picture).bytes());
}

/// Properties of a shape, and the words by which readers describe it aloud.
std::string properties(std::initializer_list<std::pair<uint16_t, uint32_t>> list, const std::string& words = {})
{
    constexpr uint16_t kDescription = 0x8000 | 0x4000 | 0x0381;
    XlsPayload payload, text;
    for (const auto& [id, value] : list) payload.u16(id).u32(value);
    if (!words.empty()) {
        for (const char16_t unit : xls_utf16(words)) text.u16(unit);
        text.u16(0);
        payload.u16(kDescription).u32(static_cast<uint32_t>(text.bytes().size()));
    }
    const size_t count = list.size() + (words.empty() ? 0 : 1);
    return record(3, static_cast<uint32_t>(count), 0xF00B, payload.raw(text.bytes()).bytes());
}

std::string object_record(uint32_t number)
{
    XlsPayload object;
    object.u16(0x15).u16(0x12).u16(8).u16(number).u16(0x6011).zeros(12);
    object.u16(0x07).u16(2).u16(0xFFFF);
    object.u16(0x08).u16(2).u16(1);
    return object.u32(0).bytes();
}

}  // namespace

XlsPictures::XlsPictures(const std::vector<XlsSheet>& sheets) : sheets_(sheets)
{
    uint32_t number = 0, block = 1;
    for (const XlsSheet& sheet : sheets) {
        Drawing drawing;
        if (!sheet.pictures().empty()) {
            drawing.number = ++number;
            drawing.shapes = static_cast<uint32_t>(sheet.pictures().size() + 1);
            drawing.first_block = block;
            drawing.blocks = (drawing.shapes + kBlock - 1) / kBlock;
            block += drawing.blocks;
        }
        drawings_.push_back(drawing);
        for (const XlsAnchoredPicture& picture : sheet.pictures()) {
            const auto next = static_cast<uint32_t>(store_.size() + 1);
            if (positions_.try_emplace(picture.data.get(), next).second) store_.push_back(picture.data);
            ++uses_[picture.data.get()];
        }
    }
}

void XlsPictures::write_store(XlsRecords& stream) const
{
    if (store_.empty()) return;
    uint32_t blocks = 0, shapes = 0, count = 0;
    XlsPayload block_list;
    for (const Drawing& drawing : drawings_) {
        if (drawing.number == 0) continue;
        ++count;
        blocks += drawing.blocks;
        shapes += drawing.shapes;
        for (uint32_t i = 0; i < drawing.blocks; ++i) {
            block_list.u32(drawing.number).u32(std::min(kBlock, drawing.shapes - i * kBlock));
        }
    }
    XlsPayload group;
    group.u32((blocks + 1) * kBlock).u32(blocks + 1).u32(shapes).u32(count).raw(block_list.bytes());
    std::string stored;
    for (const auto& data : store_) stored += stored_picture(*data, uses_.at(data.get()));
    XlsPayload menu_colors;
    menu_colors.u32(0x0800000D).u32(0x0800000C).u32(0x08000017).u32(0x100000F7);
    const std::string content = record(0, 0, 0xF006, group.bytes()) +
                                record(15, static_cast<uint32_t>(store_.size()), 0xF001, stored) +
                                properties({{0x00BF, 0x00080008}, {0x0181, 0x08000041}, {0x01C0, 0x08000040}}) +
                                record(0, 4, 0xF11E, menu_colors.bytes());
    stream.add(kDrawingGroup, record(15, 0, 0xF000, content));
}

std::string XlsPictures::shape(const XlsAnchoredPicture& picture, uint32_t id) const
{
    constexpr uint32_t kPictureShape = 75, kHasAnchorAndKind = 0x0A00, kNoLine = 0x00080000, kMoves = 2;
    XlsPayload anchor;
    anchor.u16(kMoves);
    for (const auto& corner : {picture.from, picture.to}) {
        anchor.u16(corner.column).u16(corner.across).u16(corner.row).u16(corner.down);
    }
    return record(15, 0, 0xF004,
                  record(2, kPictureShape, 0xF00A, XlsPayload().u32(id).u32(kHasAnchorAndKind).bytes()) +
                      properties({{0x4104, positions_.at(picture.data.get())}, {0x01FF, kNoLine}}, picture.words) +
                      record(0, 0, 0xF010, anchor.bytes()) + record(0, 0, 0xF011, {}));
}

/// Each shape has a record of its own, but all of them lie in the containers that the first one opens.
XlsRecords XlsPictures::drawing(size_t sheet) const
{
    XlsRecords records;
    const Drawing& drawing = drawings_[sheet];
    if (drawing.number == 0) return records;
    const uint32_t first_id = drawing.first_block * kBlock;
    std::vector<std::string> shapes;
    size_t length = 0;
    for (const XlsAnchoredPicture& picture : sheets_[sheet].pictures()) {
        shapes.push_back(shape(picture, first_id + static_cast<uint32_t>(shapes.size()) + 1));
        length += shapes.back().size();
    }
    const std::string about =
        record(0, drawing.number, 0xF008, XlsPayload().u32(drawing.shapes).u32(first_id + drawing.shapes - 1).bytes());
    const std::string root = record(
        15, 0, 0xF004,
        record(1, 0, 0xF009, std::string(16, '\0')) + record(2, 0, 0xF00A, XlsPayload().u32(first_id).u32(5).bytes()));
    std::string opening = open_container(0xF002, about.size() + 8 + root.size() + length) + about +
                          open_container(0xF003, root.size() + length) + root;
    for (uint32_t i = 0; i < shapes.size(); ++i) {
        records.add(kDrawing, opening + shapes[i]);
        records.add(kObject, object_record(i + 1));
        opening.clear();
    }
    return records;
}

}  // namespace velora::engine
