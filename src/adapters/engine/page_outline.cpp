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

std::vector<OutlineEntry> bookmarks(const engine::PageList& pages)
{
    std::vector<OutlineEntry> entries;
    for (size_t page = 0; page < pages.pages.size(); ++page) {
        engine::walk_elements(pages.pages[page].elements, [&](const Element& element, const engine::Place&) {
            const auto* anchor = anchor_of(element);
            if (anchor != nullptr && anchor->bookmark_level > 0) {
                entries.push_back({anchor->name, page, anchor->bookmark_level});
            }
        });
    }
    return entries;
}

/// Headings by group, the groups in the order in which they first appear: an outer one stands above an inner one.
class Headings {
public:
    explicit Headings(const engine::PageList& pages) : sources_(*pages.document.sources) {}

    void look_at(const Element& element, size_t page)
    {
        const engine::Source& source = sources_[element.source < sources_.size() ? element.source : 0];
        if (source.band != "groupHeader") {
            open_.clear();
            return;
        }
        const auto* text = std::get_if<engine::Text>(&element.content);
        if (source.group == open_ || text == nullptr || text->shown().empty()) return;
        open_ = source.group;
        add(std::string(text->shown()), page);
    }

    std::vector<OutlineEntry> entries;

private:
    void add(std::string heading, size_t page)
    {
        auto group = std::ranges::find(groups_, open_, &Group::name);
        if (group == groups_.end()) group = groups_.insert(group, {open_, ""});
        const int level = static_cast<int>(group - groups_.begin()) + 1;
        if (group->latest == heading) return;  // the header again, on the next page
        group->latest = heading;
        for (auto inner = std::next(group); inner != groups_.end(); ++inner) inner->latest.clear();
        entries.push_back({std::move(heading), page, level});
    }

    struct Group {
        std::string name;
        std::string latest;
    };
    const std::vector<engine::Source>& sources_;
    std::vector<Group> groups_;
    std::string open_;  ///< the group whose header is walked through
};

}  // namespace

std::vector<OutlineEntry> page_outline(const engine::PageList& pages)
{
    if (auto entries = bookmarks(pages); !entries.empty()) return entries;
    Headings headings(pages);
    for (size_t page = 0; page < pages.pages.size(); ++page) {
        engine::walk_elements(pages.pages[page].elements,
                              [&](const Element& element, const engine::Place&) { headings.look_at(element, page); });
    }
    return std::move(headings.entries);
}

}  // namespace velora
