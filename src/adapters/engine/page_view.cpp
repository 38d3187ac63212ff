#include "adapters/engine/page_view.h"

#include <algorithm>

#include "adapters/engine/scratch_file.h"
#include "engine/export/common/page_walk.h"
#include "engine/export/exporter.h"
#include "engine/export/paint/letter_places.h"
#include "engine/export/paint/page_picture.h"
#include "engine/export/paint/page_raster.h"
#include "engine/page/page_copy.h"
#include "engine/text/font_store.h"
#include "platform/painted_pages.h"
#include "values/fault.h"

namespace velora {

namespace {

struct PlacedText {
    int32_t y, x;
    const engine::Text* text;
};

/// Line by line, each line from left to right.
std::vector<PlacedText> texts_in_order(const engine::Page& page)
{
    std::vector<PlacedText> texts;
    engine::walk_elements(page.elements, [&](const engine::Element& element, const engine::Place& place) {
        const auto* text = std::get_if<engine::Text>(&element.content);
        if (text && !text->shown().empty()) texts.push_back({place.y, place.x, text});
    });
    std::stable_sort(texts.begin(), texts.end(),
                     [](const PlacedText& a, const PlacedText& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
    return texts;
}

class Pages : public PageView, public PaintedPages {
public:
    Pages(std::shared_ptr<StoredPages> pages, std::shared_ptr<engine::FontStore> fonts,
          std::function<void(const PrintJob&)> print, PrintJob job)
        : pages_(std::move(pages)),
          fonts_(std::move(fonts)),
          print_(std::move(print)),
          job_(std::move(job)),
          raster_(*fonts_)
    {
    }

    [[nodiscard]] size_t page_count() const override { return pages_->pages().size(); }
    [[nodiscard]] std::string page_png(size_t page, double pixels_per_inch) const override;
    [[nodiscard]] std::string page_text(size_t page) const override;
    [[nodiscard]] Size page_size() const override
    {
        return {static_cast<double>(pages_->document().page_width),
                static_cast<double>(pages_->document().page_height)};
    }
    [[nodiscard]] std::vector<OutlineEntry> outline() const override { return pages_->outline(); }
    void Export(ExportFormat format, const std::string& path) const override;
    void PrintOut(const PrintWish& wish) const override;
    void paint(size_t page, double pixels_per_inch, const PixelArea& area) const override;
    [[nodiscard]] std::vector<PageText> page_texts(size_t page) const override;
    [[nodiscard]] uint32_t revision(size_t page) const override
    {
        return page < page_count() ? pages_->pages().revision(page) : 0;
    }

private:
    [[nodiscard]] std::shared_ptr<const engine::Page> page(size_t number) const
    {
        if (number >= page_count()) throw fault::subscript(std::to_string(number));
        return pages_->pages().page(number);
    }

    std::shared_ptr<StoredPages> pages_;
    std::shared_ptr<engine::FontStore> fonts_;
    std::function<void(const PrintJob&)> print_;
    PrintJob job_;
    mutable engine::PageRaster raster_;  ///< what it keeps shows nowhere
};

std::string Pages::page_png(size_t number, double pixels_per_inch) const
{
    return engine::page_picture(pages_->document(), *page(number), pixels_per_inch, *fonts_);
}

void Pages::Export(ExportFormat format, const std::string& path) const
{
    const engine::ExportContext context{*fonts_, {}};
    const auto sink = engine::make_exporter(record_of(format).extension.substr(1), path, context);
    sink->begin(pages_->document());
    for (size_t number = 0; number < page_count(); ++number) sink->page(copy_of(*page(number)));
    sink->end();
}

void Pages::PrintOut(const PrintWish& wish) const
{
    if (!print_) return PageView::PrintOut(wish);
    const ScratchFile file(".pdf");
    Export(ExportFormat::Pdf, file.path());
    PrintJob job = job_;
    job.file = file.path();
    if (!wish.device.empty()) job.device = wish.device;
    job.copies = wish.copies;
    job.pages = wish.pages;
    print_(job);
}

std::string Pages::page_text(size_t number) const
{
    std::string all;
    const auto page_read = page(number);
    const std::vector<PlacedText> texts = texts_in_order(*page_read);
    for (size_t index = 0; index < texts.size(); ++index) {
        if (index > 0) all += texts[index].y == texts[index - 1].y ? '\t' : '\n';
        all += texts[index].text->shown();
    }
    return all;
}

void Pages::paint(size_t number, double pixels_per_inch, const PixelArea& area) const
{
    raster_.paint(*page(number), pixels_per_inch, area.x, area.y, area.width, area.height, area.pixels);
}

std::vector<PageText> Pages::page_texts(size_t number) const
{
    const auto page_read = page(number);
    const auto places = engine::letter_places(*page_read, *fonts_);
    std::vector<PageText> texts;
    for (const PlacedText& placed : texts_in_order(*page_read)) {
        PageText text{std::string(placed.text->shown()), placed.y, {}};
        const auto found = places.find(placed.text);
        if (found != places.end()) {
            for (const auto& at : found->second)
                text.letters.push_back({at.begin, at.end, at.x, at.y, at.width, at.height});
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

}  // namespace

std::shared_ptr<PageView> make_page_view(std::shared_ptr<StoredPages> pages, std::shared_ptr<engine::FontStore> fonts,
                                         std::function<void(const PrintJob&)> print, PrintJob job)
{
    return std::make_shared<Pages>(std::move(pages), std::move(fonts), std::move(print), std::move(job));
}

}  // namespace velora
