#pragma once

#include <set>
#include <string>
#include <vector>

#include "engine/export/paint/canvas.h"
#include "engine/export/pdf/page_structure.h"
#include "engine/export/pdf/pdf_fonts.h"
#include "engine/export/pdf/pdf_images.h"

namespace velora::engine {

/// Writes the content of one page after the other as PDF operators.
class PdfCanvas : public Canvas {
public:
    PdfCanvas(PdfFonts& fonts, PdfImages& images) : fonts_(fonts), images_(images) {}

    struct PageLink {
        Area area;  ///< in the file's coordinates, from the lower left corner
        Link link;
        int32_t part;  ///< of the page's structure
    };
    struct PageAnchor {
        double y;
        Anchor anchor;
        std::string label;
    };

    /// @param structure  null for a file without tags; lives until the page ends
    void begin_page(double height, const PageStructure* structure);
    /// The finished operators; they hold until the next page begins.
    const std::string& end_page();
    [[nodiscard]] const std::vector<PageLink>& links() const { return links_; }
    [[nodiscard]] const std::vector<PageAnchor>& anchors() const { return anchors_; }
    /// By number of marked content: the part of the page that it belongs to.
    [[nodiscard]] const std::vector<int32_t>& marks() const { return marks_; }
    /// The transparencies in use, for the resources of all pages.
    [[nodiscard]] std::string alpha_entries() const;

    void next_element() override;
    void save() override;
    void restore() override;
    void transform(const Matrix& matrix) override { state_.matrix = state_.matrix * matrix; }
    void clip(const Area& area) override;
    void fill(const Path& path, Color color) override;
    void fill(const Area& area, Color color) override;
    void stroke(const Path& path, const Stroke& stroke) override;
    void glyphs(const GlyphRun& run) override;
    std::optional<std::pair<int, int>> image_size(const std::shared_ptr<const ImageData>& image) override;
    void image(const std::shared_ptr<const ImageData>& image, const Area& area) override;
    void link(const Area& area, const Link& link) override;
    void anchor(const Area& area, const Anchor& anchor, std::string_view label) override;

private:
    /// What the operators so far have set; nothing is set twice.
    struct State {
        Matrix matrix;
        Color fill = kBlack, stroke = kBlack;
        uint8_t alpha = 255;
        double line_width = -1;
        LineStyle line_style = LineStyle::Solid;
        PdfFont* font = nullptr;
        double size = 0;
    };

    /// Everything on a tagged page stands in one: a text's inside the text object, the others around.
    enum class Mark : uint8_t { None, Text, Figure, Decoration };

    void number(double value);
    void point(double x, double y);
    void append(const Path& path);
    void leave_text();
    void ready_text();
    void ready_shape();
    void open_mark(Mark mark);
    void close_mark();
    void set_alpha(uint8_t alpha);
    void set_fill(Color color);
    void set_stroke(const Stroke& stroke);
    void set_font(const GlyphRun& run);
    void enter_text(double x, double y);
    void show(const GlyphRun& run, std::span<const CanvasGlyph> glyphs);
    void show_cluster(const GlyphRun& run, std::span<const CanvasGlyph> glyphs, double x);
    void show_reversed_cluster(const GlyphRun& run, std::span<const CanvasGlyph> glyphs, double x);
    void show_clusters(const GlyphRun& run);
    void show_break(const GlyphRun& run);
    void show_glyph(const CanvasGlyph& glyph, std::string_view text, double x, double y);
    void show_blank(double x, double y);
    void open_span(std::string_view text);
    void close_span();
    void append_code(uint16_t code);

    PdfFonts& fonts_;
    PdfImages& images_;
    std::string content_;
    State state_;
    std::vector<State> saved_;
    bool in_text_ = false;
    int64_t text_x_ = 0, text_y_ = 0;  ///< where the last text began, in thousandths
    std::set<uint8_t> alphas_;
    std::vector<PageLink> links_;
    std::vector<PageAnchor> anchors_;

    const PageStructure* structure_ = nullptr;
    size_t next_owner_ = 0;
    ElementOwner owner_;
    Mark mark_ = Mark::None;
    int32_t marked_part_ = 0;
    std::vector<int32_t> marks_;
    size_t marked_text_ = 0;  ///< the element whose text came last, where its line stood and how far it went
    double last_line_ = 0;
    uint32_t text_end_ = 0;
};

}  // namespace velora::engine
