#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "engine/fill/book/element_bytes.h"
#include "engine/fill/book/held_page.h"
#include "engine/fill/book/scratch_bytes.h"
#include "engine/page/page.h"

namespace velora::engine {

/// Finished pages of a run, as many as there are, to be looked at in any order. A few are kept as they are; the others
/// are packed, block by block, and put away. The document that they belong to must live as long.
class PageStore {
public:
    void add(Page&& page);
    /// An element of a page has come to look different.
    void amend(size_t page, uint32_t index, const Element& element);

    [[nodiscard]] size_t size() const { return states_.size(); }
    /// Counts how often the page was amended.
    [[nodiscard]] uint32_t revision(size_t page) const { return states_.at(page).revision; }
    /// Good until the next one is added or amended.
    [[nodiscard]] std::shared_ptr<const Page> page(size_t number) const;

    static constexpr size_t kBlock = 16;      ///< pages that are packed together
    static constexpr size_t kMostBlocks = 4;  ///< that are kept as they are, besides the last

private:
    using Block = std::vector<Page>;
    struct PackedBlock {
        uint64_t at = 0;
        uint32_t size = 0;
    };
    struct PageState {
        uint64_t latest = kNone;  ///< place of the latest amendment, each of which knows the one before
        uint32_t revision = 0;
    };
    struct KnownBlock {
        size_t number = 0;
        std::shared_ptr<Block> pages;
    };
    static constexpr uint64_t kNone = UINT64_MAX;

    void pack_last();
    [[nodiscard]] bool is_last(size_t page) const { return page / kBlock == packed_.size(); }
    [[nodiscard]] std::shared_ptr<Block> block(size_t number) const;
    [[nodiscard]] std::shared_ptr<Block> unpacked(size_t number) const;
    void take_amendments(Page& page, uint64_t latest) const;

    std::vector<PageState> states_;
    std::vector<PackedBlock> packed_;
    std::shared_ptr<Block> last_ = std::make_shared<Block>();
    ScratchBytes bytes_;
    PictureNumbers pictures_;
    mutable std::deque<KnownBlock> known_;  ///< the latest used first
};

}  // namespace velora::engine
