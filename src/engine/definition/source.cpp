#include "engine/definition/source.h"

#include <algorithm>
#include <functional>

namespace velora::engine {

namespace {

constexpr size_t kLargest = 64U << 20;
constexpr int kDeepest = 100;
constexpr size_t kMostWarnings = 1000;

}  // namespace

std::string Warning::line() const
{
    return DefinitionError(place, element, text).what();
}

SourceText::SourceText(std::string_view xml, std::vector<Warning>& warnings) : written_(xml), warnings_(warnings)
{
    if (xml.size() > kLargest) throw DefinitionError({}, "", "the definition is larger than 64 MB");
    buffer_ = xml;
    lines_.push_back(0);
    for (size_t at = xml.find('\n'); at != std::string_view::npos; at = xml.find('\n', at + 1))
        lines_.push_back(at + 1);
    const auto result = document_.load_buffer_inplace(buffer_.data(), buffer_.size(),
                                                      pugi::parse_default | pugi::parse_ws_pcdata_single);
    if (!result) {
        const auto offset = static_cast<size_t>(std::max<ptrdiff_t>(result.offset, 0));
        throw DefinitionError(place_of(offset), "", std::string("this is no well-formed XML: ") + result.description());
    }
    if (!root()) throw DefinitionError({1, 1}, "", "this is no well-formed XML: there is no element in it");
    check_depth();
}

Position SourceText::place(const char* inside) const
{
    const std::less<> before;
    if (before(inside, buffer_.data()) || !before(inside, buffer_.data() + buffer_.size())) return {};
    return place_of(static_cast<size_t>(inside - buffer_.data()));
}

Position SourceText::place_of(size_t offset) const
{
    offset = std::min(offset, written_.size());
    const auto line = std::upper_bound(lines_.begin(), lines_.end(), offset) - 1;
    const auto before = written_.substr(*line, offset - *line);
    const auto characters =
        std::ranges::count_if(before, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    return {static_cast<uint32_t>(line - lines_.begin() + 1), static_cast<uint32_t>(characters + 1)};
}

void SourceText::warn(Position place, std::string_view element, std::string text)
{
    if (warnings_.size() < kMostWarnings) warnings_.push_back({place, std::string(element), std::move(text)});
}

void SourceText::check_depth() const
{
    int depth = 0;
    pugi::xml_node node = root();
    while (node) {
        if (node.first_child()) {
            node = node.first_child();
            if (++depth > kDeepest)
                throw DefinitionError(place(node.name()), node.name(), "elements are nested too deeply");
            continue;
        }
        while (node && !node.next_sibling()) {
            node = node.parent();
            if (--depth < 0) return;
        }
        node = node.next_sibling();
    }
}

}  // namespace velora::engine
