#pragma once

#include <string>

#include "engine/export/common/office_parts.h"

namespace velora::engine {

/// Settings of a paragraph that takes no room.
inline constexpr std::string_view kThinParagraph =
    "<w:spacing w:before=\"0\" w:after=\"0\" w:line=\"20\" w:lineRule=\"exact\"/>";

/// What letters look like.
/// @param run  a part of a text that has a ground or a script of its own, or null
void append_character_settings(std::string& out, const Font& font, Color ink, const TextRun* run = nullptr);

/// Writes texts as paragraphs in frames at their places, line by line as they were measured.
class DocxText {
public:
    explicit DocxText(OfficeRelations& relations) : relations_(relations) {}

    void append(std::string& out, const Text& text, const Style& style, const Place& place);

private:
    void append_lines(std::string& out, const Text& text, const Style& style);
    void append_part(std::string& out, const Text& text, const Style& style, uint32_t begin, uint32_t end);
    /// Begins a link. False when there is none.
    bool open_link(std::string& out, const Link& link);

    OfficeRelations& relations_;
    uint32_t bookmarks_ = 0;
};

}  // namespace velora::engine
