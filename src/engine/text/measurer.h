#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

class FontStore;

/// A text to be laid out.
struct TextRequest {
    std::string_view text;          ///< UTF-8, plain
    std::span<const TextRun> runs;  ///< markup, offsets into `text`
    const Style* style = nullptr;   ///< font, paragraph; alignment, box and rotation are not looked at
    float width = 0;                ///< of a line: element width without paddings (the height when turned aside)
    float max_height = 0;           ///< lines that end below it are not taken
    uint32_t begin = 0;             ///< goes on from here: what `end` told for the part before
    bool whole_last_word = true;    ///< cut between words; false cuts between characters
};

/// Result; kept by the caller and used again, so that measuring allocates nothing in the steady state.
struct TextLayout {
    std::vector<TextLine> lines;  ///< offsets count from the start of the whole text
    float height = 0;             ///< of all lines; round up for a stretched element
    float width = 0;              ///< of the widest line
    float line_spacing_factor = 0;
    float leading_offset = 0;
    uint32_t end = 0;      ///< first byte that is not shown
    bool complete = true;  ///< everything is shown
};

/// Lays texts out. Holds caches: not for several threads at once.
class Measurer {
public:
    explicit Measurer(FontStore& fonts);
    ~Measurer();
    Measurer(const Measurer&) = delete;
    Measurer& operator=(const Measurer&) = delete;

    void measure(const TextRequest& request, TextLayout& layout);

    /// Width of a text on one line.
    float width(std::string_view text, const Font& font);
    /// Distance from one base line to the next at single spacing.
    float line_height(const Font& font);

private:
    struct Caches;
    void fill_last_line(const TextRequest& request, TextLayout& layout);

    FontStore& fonts_;
    std::unique_ptr<Caches> caches_;
};

/// Takes markup apart: the plain text is returned, its runs go to `runs`. What is no markup stays as it is.
enum class Markup : uint8_t { None, Styled, Html };
std::string plain_text_of(std::string_view marked, Markup markup, const Style& style, std::vector<TextRun>& runs);

}  // namespace velora::engine
