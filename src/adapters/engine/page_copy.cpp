#include "adapters/engine/page_copy.h"

namespace velora {

namespace {

std::vector<engine::Element> copy_of(const std::vector<engine::Element>& elements);

struct Copier {
    using Content = decltype(engine::Element::content);

    Content operator()(const engine::Text& text) const
    {
        engine::Text copy{text.text, text.text_height, nullptr};
        if (text.detail) copy.detail = std::make_unique<engine::TextDetail>(*text.detail);
        return copy;
    }
    Content operator()(const engine::Frame& frame) const { return engine::Frame{copy_of(frame.children)}; }
    template <class Plain>
    Content operator()(const Plain& plain) const
    {
        return plain;
    }
};

std::vector<engine::Element> copy_of(const std::vector<engine::Element>& elements)
{
    std::vector<engine::Element> copies;
    copies.reserve(elements.size());
    for (const auto& element : elements) {
        copies.push_back(
            {element.place, element.style, element.source, element.begins_band, std::visit(Copier{}, element.content)});
    }
    return copies;
}

}  // namespace

engine::Page copy_of(const engine::Page& page)
{
    return {copy_of(page.elements)};
}

}  // namespace velora
