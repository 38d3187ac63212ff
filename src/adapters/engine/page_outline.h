#pragma once

#include <string>
#include <vector>

#include "engine/page/page.h"
#include "platform/report_engine.h"

namespace velora {

/// The bookmarks of pages that it looks at one after the other; where the definition sets none, the first text of each
/// group header.
class PageOutline {
public:
    void look_at(const engine::Page& page, size_t number, const engine::Document& document);
    [[nodiscard]] const std::vector<OutlineEntry>& entries() const
    {
        return bookmarks_.empty() ? headings_ : bookmarks_;
    }

    /// Whether the outline may look different when this element does.
    [[nodiscard]] static bool hangs_on(const engine::Element& element, const engine::Document& document);

private:
    struct Group {
        std::string name;
        std::string latest;
    };
    void look_for_heading(const engine::Element& element, size_t page, const engine::Source& source);
    void add_heading(std::string heading, size_t page);

    std::vector<OutlineEntry> bookmarks_;
    std::vector<OutlineEntry> headings_;
    std::vector<Group> groups_;  ///< in the order in which they first appear: an outer one stands above an inner one
    std::string open_;           ///< the group whose header is walked through
};

}  // namespace velora
