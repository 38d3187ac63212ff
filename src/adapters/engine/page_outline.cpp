#include "adapters/engine/page_outline.h"

#include <algorithm>

#include "engine/export/common/page_walk.h"

namespace velora {

namespace {

using engine::Element;

const engine::Anchor* anchor_of(const Element& element)
{
    if (const auto* text = std::get_if<engine::Text>(&element.content)) {
        return text->detail ? &text->detail->anchor : nullptr;
    }
    const auto* image = std::get_if<engine::Image>(&element.content);
    return image != nullptr ? image->anchor.get() : nullptr;
}

bool is_bookmark(const engine::Anchor* anchor)
{
    return anchor != nullptr && anchor->bookmark_level > 0;
}

const engine::Source& source_of(const Element& element, const engine::Document& document)
{
    const auto& sources = *document.sources;
    return sources[element.source < sources.size() ? element.source : 0];
}

constexpr std::string_view kGroupHeader = "groupHeader";

}  // namespace

void PageOutline::look_at(const engine::Page& page, size_t number, const engine::Document& document)
{
    engine::walk_elements(page.elements, [&](const Element& element, const engine::Place&) {
        const auto* anchor = anchor_of(element);
        if (is_bookmark(anchor)) bookmarks_.push_back({anchor->name, number, anchor->bookmark_level});
        if (bookmarks_.empty()) look_for_heading(element, number, source_of(element, document));
    });
}

void PageOutline::look_for_heading(const Element& element, size_t page, const engine::Source& source)
{
    if (source.band != kGroupHeader) {
        open_.clear();
        return;
    }
    const auto* text = std::get_if<engine::Text>(&element.content);
    if (source.group == open_ || text == nullptr || text->shown().empty()) return;
    open_ = source.group;
    add_heading(std::string(text->shown()), page);
}

void PageOutline::add_heading(std::string heading, size_t page)
{
    auto group = std::ranges::find(groups_, open_, &Group::name);
    if (group == groups_.end()) group = groups_.insert(group, {open_, ""});
    const int level = static_cast<int>(group - groups_.begin()) + 1;
    if (group->latest == heading) return;  // the header again, on the next page
    group->latest = heading;
    for (auto inner = std::next(group); inner != groups_.end(); ++inner) inner->latest.clear();
    headings_.push_back({std::move(heading), page, level});
}

bool PageOutline::hangs_on(const Element& element, const engine::Document& document)
{
    if (is_bookmark(anchor_of(element)) || source_of(element, document).band == kGroupHeader) return true;
    const auto* frame = std::get_if<engine::Frame>(&element.content);
    const auto inside = [&](const Element& child) { return hangs_on(child, document); };
    return frame != nullptr && std::ranges::any_of(frame->children, inside);
}

}  // namespace velora
