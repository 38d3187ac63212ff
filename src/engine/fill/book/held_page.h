#pragma once

#include <string>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

/// The sorts of elements that can be told in a few bytes.
enum class PlainSort : uint8_t { Text, Line, Rectangle, Ellipse };

/// What an element has besides its text; pages of a report repeat it place for place.
struct ElementShape {
    Place place;
    const Style* style = nullptr;
    uint32_t source = 0;
    PlainSort sort = PlainSort::Text;
    bool begins_band = false;
    float text_height = 0;
    bool operator==(const ElementShape&) const = default;
};

/// A finished page put together small while it waits for a value: what differs from the page before, byte by byte.
/// Elements that cannot be told in a few bytes, and those that are still waited for, are kept as they are.
struct PackedPage {
    std::string bytes;
    std::vector<Element> kept;
};

/// What stood at the same index on the page before.
struct ElementBefore {
    ElementShape shape;
    std::string text;
};

/// Packs pages one after the other; unpack them in the same order with the same other one.
class PagePacker {
public:
    /// @param open  ascending indices of the elements that must stay reachable in `kept`, which comes to hold them
    /// first
    PackedPage pack(Page&& page, const std::vector<uint32_t>& open);

private:
    std::vector<ElementBefore> before_;
};

class PageUnpacker {
public:
    Page unpack(PackedPage&& packed);

private:
    std::vector<ElementBefore> before_;
};

}  // namespace velora::engine
