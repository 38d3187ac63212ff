#include "engine/export/text/txt_exporter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/export/common/page_walk.h"
#include "engine/export/text/text_grid.h"
#include "values/atomic_file.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

std::u32string characters(std::string_view text)
{
    std::u32string result;
    for (size_t at = 0; at < text.size();) {
        const auto [character, size] = utf8_at(text, at);
        result += character < ' ' ? U' ' : character;
        at += size;
    }
    return result;
}

class TxtExporter : public PageSink {
public:
    explicit TxtExporter(std::unique_ptr<AtomicFile> file) : file_(std::move(file)) {}

    void begin(const Document& document) override { document_ = &document; }
    void page(Page&& page) override;
    void end() override { file_->finish(); }

private:
    void take(const Text& text, const Style& style, const Place& place);
    void take(const Drawing& drawing, const Place& place);
    void take(std::string_view line, double y, const Style& style, const Place& place);

    std::unique_ptr<AtomicFile> file_;
    const Document* document_ = nullptr;
    std::vector<GridLine> lines_;  ///< of the page at hand
    bool first_ = true;
};

void TxtExporter::take(std::string_view line, double y, const Style& style, const Place& place)
{
    const bool on_page = y >= 0 && y < document_->page_height && place.x < document_->page_width;
    if (line.empty() || !on_page) return;
    const double left = place.x + style.box.left_padding;
    const double right = place.x + place.width - style.box.right_padding;
    lines_.push_back({y, std::max(left, 0.0), std::max(right, 0.0), style.horizontal, characters(line)});
}

void TxtExporter::take(const Text& text, const Style& style, const Place& place)
{
    const Box& box = style.box;
    const double room = place.height - box.top_padding - box.bottom_padding - text.text_height;
    const double share = style.vertical == VerticalAlign::Middle   ? 0.5
                         : style.vertical == VerticalAlign::Bottom ? 1
                                                                   : 0;
    double y = place.y + box.top_padding + room * share;
    if (!text.detail || text.detail->lines.empty()) return take(text.shown(), y + text.text_height / 2, style, place);
    for (const TextLine& line : text.detail->lines) {
        take(std::string_view(text.text).substr(line.begin, line.end - line.begin), y + line.height / 2, style, place);
        y += line.height;
    }
}

void TxtExporter::take(const Drawing& drawing, const Place& place)
{
    for (const auto& item : drawing.items) {
        const auto* label = std::get_if<Label>(&item);
        if (label == nullptr) continue;
        constexpr double kMiddle = 0.35;  // of the letters, above the base line, in font sizes
        const Place at{place.x + static_cast<int32_t>(std::lround(label->at.x)), place.y, 0, 0};
        Style style;
        style.horizontal = label->align;
        take(label->text, place.y + label->at.y - label->font.size * kMiddle, style, at);
    }
}

void TxtExporter::page(Page&& page)
{
    if (!first_) file_->write("\f");
    first_ = false;
    walk_elements(page.elements, [&](const Element& element, const Place& place) {
        if (const auto* text = std::get_if<Text>(&element.content)) take(*text, *element.style, place);
        const auto* graphic = std::get_if<Graphic>(&element.content);
        if (graphic != nullptr && graphic->drawing) take(*graphic->drawing, place);
    });
    file_->write(text_rows(std::exchange(lines_, {})));
}

}  // namespace

std::unique_ptr<PageSink> make_txt_exporter(std::unique_ptr<AtomicFile> file, const ExportContext&)
{
    return std::make_unique<TxtExporter>(std::move(file));
}

}  // namespace velora::engine
