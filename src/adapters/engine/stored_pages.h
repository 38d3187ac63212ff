#pragma once

#include <functional>

#include "adapters/engine/page_outline.h"
#include "engine/fill/book/page_book.h"
#include "engine/fill/book/page_store.h"

namespace velora {

/// The pages of a run as a window has them: there as soon as they are full, what waits for its value still empty.
class StoredPages final : public engine::OpenPageSink {
public:
    /// @param on_page  told after each page
    explicit StoredPages(std::function<void()> on_page) : on_page_(std::move(on_page)) {}

    void begin(const engine::Document& document) override { document_ = document; }
    void page(engine::Page&& page) override;
    void amend(size_t page, uint32_t index, const engine::Element& element) override;
    void end() override {}

    [[nodiscard]] const engine::Document& document() const { return document_; }
    [[nodiscard]] const engine::PageStore& pages() const { return pages_; }
    [[nodiscard]] std::vector<OutlineEntry> outline() const;

private:
    std::function<void()> on_page_;
    engine::Document document_;
    engine::PageStore pages_;
    PageOutline outline_;
    bool is_outline_amended_ = false;  ///< by a heading that came to look different
};

}  // namespace velora
