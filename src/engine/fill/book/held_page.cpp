#include "engine/fill/book/held_page.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace velora::engine {

namespace {

/// An element with the shape of the one before is told by one byte: how many bytes its text shares with the text
/// before in the upper half, how many more come in the lower half. A half of 15 is told in full behind it.
constexpr uint8_t kHalf = 15;
constexpr uint8_t kSpecial = 0xff;
/// What stands behind `kSpecial`.
enum Special : uint8_t { kNewShape, kKept };

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

void put_text(std::string& bytes, std::string_view text, std::string_view before)
{
    const auto parting = std::mismatch(text.begin(), text.end(), before.begin(), before.end()).first;
    auto shared = static_cast<uint32_t>(parting - text.begin());
    auto rest = static_cast<uint32_t>(text.size()) - shared;
    if (shared >= kHalf && rest >= kHalf) {  // would read as special
        shared = kHalf - 1u;
        rest = static_cast<uint32_t>(text.size()) - shared;
    }
    const uint32_t upper = std::min<uint32_t>(shared, kHalf);
    const uint32_t lower = std::min<uint32_t>(rest, kHalf);
    bytes.push_back(static_cast<char>(upper << 4 | lower));
    if (upper == kHalf) put_number(bytes, shared);
    if (lower == kHalf) put_number(bytes, rest);
    bytes += text.substr(shared);
}

std::string take_text(const std::string& bytes, size_t& at, std::string_view before)
{
    const auto halves = static_cast<uint8_t>(bytes[at++]);
    const uint32_t shared = halves >> 4 == kHalf ? take_number(bytes, at) : halves >> 4;
    const uint32_t rest = (halves & kHalf) == kHalf ? take_number(bytes, at) : halves & kHalf;
    std::string text(before.substr(0, shared));
    text.append(bytes, at, rest);
    at += rest;
    return text;
}

/// None for what is kept as it is.
std::optional<PlainSort> plain_sort(const Element& element)
{
    if (const auto* text = std::get_if<Text>(&element.content)) {
        return text->detail ? std::nullopt : std::optional(PlainSort::Text);
    }
    if (std::holds_alternative<Line>(element.content)) return PlainSort::Line;
    if (std::holds_alternative<Rectangle>(element.content)) return PlainSort::Rectangle;
    if (std::holds_alternative<Ellipse>(element.content)) return PlainSort::Ellipse;
    return std::nullopt;
}

ElementShape shape_of(const Element& element, PlainSort sort)
{
    const auto* text = std::get_if<Text>(&element.content);
    return {element.place, element.style, element.source, sort, element.begins_band, text ? text->text_height : 0};
}

Element made_from(const ElementShape& shape)
{
    Element element;
    element.place = shape.place;
    element.style = shape.style;
    element.source = shape.source;
    element.begins_band = shape.begins_band;
    switch (shape.sort) {
        case PlainSort::Text: {
            Text text;
            text.text_height = shape.text_height;
            element.content = std::move(text);
            break;
        }
        case PlainSort::Line:
            element.content = Line{};
            break;
        case PlainSort::Rectangle:
            element.content = Rectangle{};
            break;
        case PlainSort::Ellipse:
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
    before_.resize(page.elements.size());
    for (const uint32_t index : open) {
        packed.kept.push_back(std::move(page.elements[index]));
    }
    put_number(packed.bytes, static_cast<uint32_t>(page.elements.size()));
    size_t next_open = 0;
    for (size_t index = 0; index < page.elements.size(); ++index) {
        Element& element = page.elements[index];
        const bool is_open = next_open < open.size() && open[next_open] == index;
        const auto sort = plain_sort(element);
        if (is_open || !sort) {
            packed.bytes += {static_cast<char>(kSpecial), static_cast<char>(kKept)};
            put_number(packed.bytes, static_cast<uint32_t>(is_open ? next_open : packed.kept.size()));
            if (is_open) {
                ++next_open;
            } else {
                packed.kept.push_back(std::move(element));
            }
            continue;
        }
        ElementBefore& before = before_[index];
        if (const ElementShape shape = shape_of(element, *sort); before.shape != shape) {
            before.shape = shape;
            packed.bytes += {static_cast<char>(kSpecial), static_cast<char>(kNewShape)};
            packed.bytes.append(reinterpret_cast<const char*>(&shape), sizeof shape);
        }
        auto* text = std::get_if<Text>(&element.content);
        put_text(packed.bytes, text ? text->text : std::string_view(), before.text);
        before.text = text ? std::move(text->text) : std::string();
    }
    packed.bytes.shrink_to_fit();
    packed.kept.shrink_to_fit();
    return packed;
}

Page PageUnpacker::unpack(PackedPage&& packed)
{
    size_t at = 0;
    Page page;
    page.elements.resize(take_number(packed.bytes, at));
    before_.resize(page.elements.size());
    for (size_t index = 0; index < page.elements.size(); ++index) {
        ElementBefore& before = before_[index];
        if (static_cast<uint8_t>(packed.bytes[at]) == kSpecial) {
            const auto special = static_cast<Special>(packed.bytes[at + 1]);
            at += 2;
            if (special == kKept) {
                page.elements[index] = std::move(packed.kept[take_number(packed.bytes, at)]);
                continue;
            }
            std::memcpy(&before.shape, packed.bytes.data() + at, sizeof(ElementShape));
            at += sizeof(ElementShape);
        }
        before.text = take_text(packed.bytes, at, before.text);
        page.elements[index] = made_from(before.shape);
        if (auto* text = std::get_if<Text>(&page.elements[index].content)) text->text = before.text;
    }
    return page;
}

}  // namespace velora::engine
