#include "engine/export/paint/letter_places.h"

#include <algorithm>

#include "engine/export/common/page_walk.h"
#include "engine/export/paint/paint.h"
#include "engine/text/face.h"

namespace velora::engine {
namespace {

/// Takes note of glyphs and paints nothing. A run shows bytes of the text's own memory, by which the text is known.
class LetterCanvas final : public Canvas {
public:
    std::unordered_map<const char*, std::vector<LetterPlace>> letters;

    void save() override { saved_.push_back(matrix_); }
    void restore() override
    {
        matrix_ = saved_.back();
        saved_.pop_back();
    }
    void transform(const Matrix& matrix) override { matrix_ = matrix_ * matrix; }
    void clip(const Area&) override {}
    void fill(const Path&, Color) override {}
    void fill(const Area&, Color) override {}
    void stroke(const Path&, const Stroke&) override {}
    std::optional<std::pair<int, int>> image_size(const std::shared_ptr<const ImageData>&) override { return {}; }
    void image(const std::shared_ptr<const ImageData>&, const Area&) override {}

    void glyphs(const GlyphRun& run) override
    {
        const double scale = run.size / run.face->units_per_em();
        const double top = run.y - run.face->ascent() * scale, bottom = run.y + run.face->descent() * scale;
        auto& found = letters[run.text.data()];
        double x = run.x;
        for (const CanvasGlyph& glyph : run.glyphs) {
            if (glyph.cluster_size > 0) add(found, glyph, {x, top, glyph.advance, bottom - top});
            x += glyph.advance;
        }
    }

private:
    void add(std::vector<LetterPlace>& found, const CanvasGlyph& glyph, const Area& box) const
    {
        const auto [left, top] = matrix_.apply(box.x, box.y);
        const auto [right, bottom] = matrix_.apply(box.x + box.width, box.y + box.height);
        found.push_back({glyph.cluster, glyph.cluster + glyph.cluster_size, static_cast<float>(std::min(left, right)),
                         static_cast<float>(std::min(top, bottom)), static_cast<float>(std::abs(right - left)),
                         static_cast<float>(std::abs(bottom - top))});
    }

    Matrix matrix_;
    std::vector<Matrix> saved_;
};

}  // namespace

std::unordered_map<const Text*, std::vector<LetterPlace>> letter_places(const Page& page, FontStore& fonts)
{
    LetterCanvas canvas;
    Painter(fonts).paint(page, canvas);
    std::unordered_map<const Text*, std::vector<LetterPlace>> all;
    walk_elements(page.elements, [&](const Element& element, const Place&) {
        const auto* text = std::get_if<Text>(&element.content);
        const auto found = text != nullptr ? canvas.letters.find(text->text.data()) : canvas.letters.end();
        if (found == canvas.letters.end()) return;
        std::ranges::stable_sort(found->second, {}, &LetterPlace::begin);  // as it is read
        all.emplace(text, std::move(found->second));
    });
    return all;
}

}  // namespace velora::engine
