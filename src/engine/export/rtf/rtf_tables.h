#pragma once

#include <map>
#include <string>
#include <string_view>

#include "engine/page/style.h"

namespace velora::engine {

/// Appends text to rich text: everything but plain ASCII is written by number.
void rtf_append(std::string& out, std::string_view utf8);

/// Fonts and colours of a rich text, which its head lists and its body names by number.
class RtfTables {
public:
    size_t font(const Font& font);
    size_t color(Color color);
    /// Control words for font, size, traits and colour.
    std::string character_format(const Font& font, Color color);

    void write(std::string& out) const;

private:
    std::map<std::string, size_t, std::less<>> fonts_;
    std::map<uint32_t, size_t> colors_;
};

}  // namespace velora::engine
