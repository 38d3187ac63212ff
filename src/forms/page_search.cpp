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

size_t count_on_page(const PageView& pages, size_t page, std::string_view text)
{
    const std::string wanted = lower_ascii(text);
    return trimmed(wanted).empty() ? 0 : count_in(lower_ascii(pages.page_text(page)), wanted);
}

std::vector<PageText::Letter> letters_found(const std::vector<PageText>& page, std::string_view text)
{
    std::vector<PageText::Letter> found;
    const std::string wanted = lower_ascii(text);
    if (trimmed(wanted).empty()) return found;
    for (const PageText& placed : page) {
        const std::string lower = lower_ascii(placed.text);
        for (size_t at = lower.find(wanted); at != std::string::npos; at = lower.find(wanted, at + wanted.size())) {
            for (const PageText::Letter& letter : placed.letters) {
                if (letter.begin >= at && letter.begin < at + wanted.size()) found.push_back(letter);
            }
        }
    }
    return found;
}

}  // namespace velora::forms
