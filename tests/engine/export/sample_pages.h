#pragma once

#include <filesystem>
#include <string>

#include "engine/export/exporter.h"
#include "engine/page/page.h"
#include "engine/text/font_store.h"
#include "engine/text/markup.h"
#include "engine/text/measurer.h"

namespace velora::engine {

/// Builds finished pages by hand, texts laid out as the filler would.
class SamplePages {
public:
    SamplePages()
    {
        document.name = "Sample";
        document.title = "Sample \xE2\x82\xAC";
        document.author = "A. Writer";
        document.created = DateTime::from_ymd(2026, 1, 31, 12, 30, 0);
        document.default_font.family = "DejaVu Sans";
    }

    [[nodiscard]] Style style() const
    {
        Style result;
        result.font = document.default_font;
        return result;
    }

    Text& add_text(const Place& place, std::string text, const Style& style, Markup markup = Markup::None)
    {
        Text content;
        std::vector<TextRun> runs;
        content.text = plain_text_of(text, markup, style, runs);
        TextLayout layout;
        const bool aside = style.rotation == Rotation::Left || style.rotation == Rotation::Right;
        const Box& box = style.box;
        const int width = place.width - box.left_padding - box.right_padding;
        measurer.measure({content.text, runs, &style, float(aside ? place.height : width), 1e6F}, layout);
        content.text_height = layout.height;
        if (layout.lines.size() > 1 || !runs.empty()) {
            content.details().lines = layout.lines;
            content.details().line_spacing_factor = layout.line_spacing_factor;
            content.details().leading_offset = layout.leading_offset;
        }
        if (!runs.empty()) {
            content.details().runs = runs;
            content.details().marked = text;
        }
        return std::get<Text>(add(place, style, std::move(content)).content);
    }

    template <class Content>
    Element& add(const Place& place, const Style& style, Content content)
    {
        page.elements.push_back({place, document.styles->intern(style), 0, false, std::move(content)});
        return page.elements.back();
    }

    void print(PageSink& sink)
    {
        sink.begin(document);
        sink.page(std::move(page));
        sink.end();
        page = {};
    }

    /// Prints the page to a file of the given name in the tests' scratch folder.
    std::filesystem::path print(const std::string& name)
    {
        const auto target = scratch() / name;
        print(*make_exporter(target.extension().string().substr(1), target, {fonts, {}}));
        return target;
    }

    static std::filesystem::path scratch()
    {
        const std::filesystem::path folder = std::filesystem::path(VELORA_TEST_SCRATCH) / "export";
        std::filesystem::create_directories(folder);
        return folder;
    }

    FontStore fonts{std::filesystem::path(VELORA_SOURCE_DIR) / "fonts"};
    Measurer measurer{fonts};
    Document document;
    Page page;
};

}  // namespace velora::engine
