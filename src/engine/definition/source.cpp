#include "engine/definition/source.h"

#include <algorithm>
#include <functional>

namespace velora::engine {

namespace {

constexpr size_t kLargest = 64U << 20;
constexpr int kDeepest = 100;
constexpr size_t kMostWarnings = 1000;
constexpr size_t kBlock = 1024;

size_t count_characters(std::string_view text)
{
    return static_cast<size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

/// Length of the character at the front; 0 when it is no UTF-8.
size_t character_length(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return 1;
    const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
    const bool follows = std::ranges::all_of(text.substr(1, length - 1),
                                             [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
    return follows ? length : 0;
}

bool is_utf8(std::string_view text)
{
    while (!text.empty()) {
        const size_t length = character_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

bool is_utf16(std::string_view text)
{
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
           text.starts_with(std::string_view("<\0", 2)) || text.starts_with(std::string_view("\0<", 2));
}

std::string from_latin(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code >= 0x80) out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(code < 0x80 ? code : 0x80 | (code & 0x3F));
    }
    return out;
}

}  // namespace

SourceText::SourceText(std::string_view xml, std::vector<Warning>& warnings) : warnings_(warnings)
{
    if (xml.size() > kLargest) throw DefinitionError({}, "", "the definition is larger than 64 MB");
    const bool wide = is_utf16(xml);
    const bool latin = !wide && !is_utf8(xml);
    written_ = latin ? from_latin(xml) : std::string(xml);
    if (latin && xml.substr(0, 100).find("encoding=") == std::string_view::npos) {
        warn({1, 1}, "", "the text is not in UTF-8 and names no encoding; it is read as Latin-1");
    }
    buffer_ = written_;
    lines_.push_back(0);
    for (size_t at = 0; (at = written_.find('\n', at)) != std::string::npos;) lines_.push_back(++at);
    for (size_t at = 0, count = 0; at <= written_.size(); at += kBlock) {
        characters_.push_back(count);
        count += count_characters(std::string_view(written_).substr(at, kBlock));
    }
    const auto result = document_.load_buffer_inplace(buffer_.data(), buffer_.size(),
                                                      pugi::parse_default | pugi::parse_ws_pcdata_single,
                                                      wide ? pugi::encoding_auto : pugi::encoding_utf8);
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
    const size_t characters = offset - *line < kBlock
                                  ? count_characters(std::string_view(written_).substr(*line, offset - *line))
                                  : characters_before(offset) - characters_before(*line);
    return {static_cast<uint32_t>(line - lines_.begin() + 1), static_cast<uint32_t>(characters + 1)};
}

size_t SourceText::characters_before(size_t offset) const
{
    const size_t block = offset / kBlock;
    return characters_[block] + count_characters(std::string_view(written_).substr(block * kBlock, offset % kBlock));
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
