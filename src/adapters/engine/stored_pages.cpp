#include "adapters/engine/stored_pages.h"

namespace velora {

void StoredPages::page(engine::Page&& page)
{
    outline_.look_at(page, pages_.size(), document_);
    pages_.add(std::move(page));
    on_page_();
}

void StoredPages::amend(size_t page, uint32_t index, const engine::Element& element)
{
    pages_.amend(page, index, element);
    is_outline_amended_ = is_outline_amended_ || PageOutline::hangs_on(element, document_);
}

std::vector<OutlineEntry> StoredPages::outline() const
{
    if (!is_outline_amended_) return outline_.entries();
    PageOutline anew;
    for (size_t page = 0; page < pages_.size(); ++page) anew.look_at(*pages_.page(page), page, document_);
    return anew.entries();
}

}  // namespace velora
