#include "engine/fill/held_page.h"

#include <cstring>

namespace velora::engine {

namespace {

/// How an element is told.
enum Tag : uint8_t { kSameShape, kNewShape, kKept };

void put_number(std::string& bytes, uint32_t number)
{
    for (; number >= 0x80; number >>= 7) {
        bytes.push_back(static_cast<char>(number | 0x80));
    }
    bytes.push_back(static_cast<char>(number));
}

uint32_t take_number(const std::string& bytes, size_t& at)
{
    uint32_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<uint8_t>(bytes[at++]);
        number |= static_cast<uint32_t>(byte & 0x7f) << shift;
        if (byte < 0x80) return number;
    }
}

ElementShape shape_of(const Element& element)
{
    const auto* text = std::get_if<Text>(&element.content);
    return {element.place, element.style, element.source, static_cast<uint8_t>(element.content.index()),
            text ? text->text_height : 0};
}

bool is_plain(const Element& element)
{
    if (const auto* text = std::get_if<Text>(&element.content)) return !text->detail;
    return std::holds_alternative<Line>(element.content) || std::holds_alternative<Rectangle>(element.content) ||
           std::holds_alternative<Ellipse>(element.content);
}

Element made_from(const ElementShape& shape)
{
    Element element;
    element.place = shape.place;
    element.style = shape.style;
    element.source = shape.source;
    switch (shape.kind) {
        case 0: {
            Text text;
            text.text_height = shape.text_height;
            element.content = std::move(text);
            break;
        }
        case 1:
            element.content = Line{};
            break;
        case 2:
            element.content = Rectangle{};
            break;
        default:
            element.content = Ellipse{};
            break;
    }
    return element;
}

}  // namespace

PackedPage PagePacker::pack(Page&& page, const std::vector<uint32_t>& open)
{
    static_assert(std::is_trivially_copyable_v<ElementShape>);
    PackedPage packed;
    std::vector<ElementShape> shapes(page.elements.size());
    for (const uint32_t index : open) {
        packed.kept.push_back(std::move(page.elements[index]));
    }
    put_number(packed.bytes, static_cast<uint32_t>(page.elements.size()));
    size_t next_open = 0;
    for (size_t index = 0; index < page.elements.size(); ++index) {
        Element& element = page.elements[index];
        const bool is_open = next_open < open.size() && open[next_open] == index;
        if (is_open || !is_plain(element)) {
            packed.bytes.push_back(kKept);
            put_number(packed.bytes, static_cast<uint32_t>(is_open ? next_open : packed.kept.size()));
            if (is_open) {
                ++next_open;
            } else {
                packed.kept.push_back(std::move(element));
            }
            continue;
        }
        shapes[index] = shape_of(element);
        const bool same = index < before_.size() && before_[index] == shapes[index];
        packed.bytes.push_back(same ? kSameShape : kNewShape);
        if (!same) packed.bytes.append(reinterpret_cast<const char*>(&shapes[index]), sizeof(ElementShape));
        if (const auto* text = std::get_if<Text>(&element.content)) {
            put_number(packed.bytes, static_cast<uint32_t>(text->text.size()));
            packed.bytes += text->text;
        }
    }
    before_ = std::move(shapes);
    packed.bytes.shrink_to_fit();
    packed.kept.shrink_to_fit();
    return packed;
}

Page PageUnpacker::unpack(PackedPage&& packed)
{
    size_t at = 0;
    Page page;
    page.elements.resize(take_number(packed.bytes, at));
    std::vector<ElementShape> shapes(page.elements.size());
    for (size_t index = 0; index < page.elements.size(); ++index) {
        const auto tag = static_cast<Tag>(packed.bytes[at++]);
        if (tag == kKept) {
            page.elements[index] = std::move(packed.kept[take_number(packed.bytes, at)]);
            continue;
        }
        if (tag == kSameShape) {
            shapes[index] = before_[index];
        } else {
            std::memcpy(&shapes[index], packed.bytes.data() + at, sizeof(ElementShape));
            at += sizeof(ElementShape);
        }
        page.elements[index] = made_from(shapes[index]);
        if (auto* text = std::get_if<Text>(&page.elements[index].content)) {
            const uint32_t size = take_number(packed.bytes, at);
            text->text.assign(packed.bytes, at, size);
            at += size;
        }
    }
    before_ = std::move(shapes);
    return page;
}

}  // namespace velora::engine
