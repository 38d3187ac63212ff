#include "support/same_page.h"

#include <algorithm>

namespace velora::engine {
namespace {

template <class T>
bool same_target(const std::shared_ptr<const T>& left, const std::shared_ptr<const T>& right)
{
    return left == right || (left && right && *left == *right);
}

struct SameContent {
    bool operator()(const Text& left, const Text& right) const
    {
        if (left.text != right.text || left.text_height != right.text_height) return false;
        static const TextDetail kPlain;
        return (left.detail ? *left.detail : kPlain) == (right.detail ? *right.detail : kPlain);
    }
    bool operator()(const Image& left, const Image& right) const
    {
        const bool both = left.data && right.data;
        if (both ? left.data->bytes != right.data->bytes : left.data != right.data) return false;
        return same_target(left.link, right.link) && same_target(left.anchor, right.anchor);
    }
    bool operator()(const Frame& left, const Frame& right) const;
    bool operator()(const Graphic& left, const Graphic& right) const
    {
        return same_target(left.drawing, right.drawing);
    }
    template <class T>
    bool operator()(const T&, const T&) const
    {
        return true;
    }
    template <class A, class B>
    bool operator()(const A&, const B&) const
    {
        return false;
    }
};

bool same_element(const Element& left, const Element& right)
{
    return left.place == right.place && *left.style == *right.style &&
           std::visit(SameContent{}, left.content, right.content);
}

bool SameContent::operator()(const Frame& left, const Frame& right) const
{
    return std::ranges::equal(left.children, right.children, same_element);
}

}  // namespace

bool same_page(const Page& left, const Page& right)
{
    return std::ranges::equal(left.elements, right.elements, same_element);
}

}  // namespace velora::engine
