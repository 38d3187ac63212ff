#include "forms/page_search.h"

#include "values/text.h"

namespace velora::forms {

namespace {

size_t count_in(std::string_view page, std::string_view wanted)
{
    size_t count = 0;
    for (size_t at = page.find(wanted); at != std::string_view::npos; at = page.find(wanted, at + wanted.size())) {
        ++count;
    }
    return count;
}

}  // namespace

std::vector<size_t> count_on_pages(const PageView& pages, std::string_view text)
{
    std::vector<size_t> counts(pages.page_count());
    const std::string wanted = lower_ascii(text);
    if (trimmed(wanted).empty()) return counts;
    for (size_t page = 0; page < counts.size(); ++page) {
        counts[page] = count_in(lower_ascii(pages.page_text(page)), wanted);
    }
    return counts;
}

}  // namespace velora::forms
