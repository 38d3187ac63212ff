#include <filesystem>
#include <string_view>
#include <vector>

#include "engine/text/font_store.h"
#include "engine/text/markup.h"
#include "engine/text/measurer.h"

/// Any bytes as text, as styled text and as HTML in a box: laid out to the end, in lines that follow each other.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace velora::engine;
    static FontStore fonts{std::filesystem::path(VELORA_SOURCE_DIR) / "fonts"};
    static Measurer measurer{fonts};
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Style style;
    style.paragraph.first_line_indent = static_cast<int16_t>(size % 7);
    const auto width = static_cast<float>(size == 0 ? 0 : data[0]);
    for (const Markup markup : {Markup::None, Markup::Styled, Markup::Html}) {
        std::vector<TextRun> runs;
        const std::string plain = plain_text_of(text, markup, style, runs);
        for (const TextRun& run : runs) {
            if (run.begin >= run.end || run.end > plain.size()) __builtin_trap();
        }
        TextLayout layout;
        measurer.measure({plain, runs, &style, width, 1e9F}, layout);
        uint32_t end = 0;
        for (const TextLine& line : layout.lines) {
            if (line.begin < end || line.end < line.begin || line.end > plain.size()) __builtin_trap();
            end = line.end;
        }
        if (!layout.complete || layout.end != plain.size()) __builtin_trap();
    }
    return 0;
}
