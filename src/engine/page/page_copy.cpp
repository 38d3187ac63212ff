#include "engine/page/page_copy.h"

namespace velora::engine {

namespace {

std::vector<Element> copies_of(const std::vector<Element>& elements)
{
    std::vector<Element> copies;
    copies.reserve(elements.size());
    for (const auto& element : elements) copies.push_back(copy_of(element));
    return copies;
}

struct Copier {
    using Content = decltype(Element::content);

    Content operator()(const Text& text) const
    {
        Text copy{text.text, text.text_height, nullptr};
        if (text.detail) copy.detail = std::make_unique<TextDetail>(*text.detail);
        return copy;
    }
    Content operator()(const Frame& frame) const { return Frame{copies_of(frame.children)}; }
    template <class Plain>
    Content operator()(const Plain& plain) const
    {
        return plain;
    }
};

}  // namespace

Element copy_of(const Element& element)
{
    return {element.place, element.style, element.source, element.begins_band, std::visit(Copier{}, element.content)};
}

Page copy_of(const Page& page)
{
    return {copies_of(page.elements)};
}

}  // namespace velora::engine
