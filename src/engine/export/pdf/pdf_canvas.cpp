#include "engine/export/pdf/pdf_canvas.h"

#include <algorithm>
#include <cmath>

namespace velora::engine {
namespace {

constexpr float kSameAdvance = 0.0005F;

void append_color(std::string& out, Color color, std::string_view gray, std::string_view rgb)
{
    append_pdf_number(out, color.red / 255.0);
    if (color.red == color.green && color.red == color.blue) {
        out += gray;
        return;
    }
    for (const uint8_t part : {color.green, color.blue}) {
        out += ' ';
        append_pdf_number(out, part / 255.0);
    }
    out += rgb;
}

int64_t thousandths(double value)
{
    constexpr double kMost = 1e7;
    return std::llround(std::clamp(std::isfinite(value) ? value : 0.0, -kMost, kMost) * 1000);
}

Area bounds(const Matrix& matrix, const Area& area)
{
    const auto [x1, y1] = matrix.apply(area.x, area.y);
    const auto [x2, y2] = matrix.apply(area.x + area.width, area.y + area.height);
    return {std::min(x1, x2), std::min(y1, y2), std::abs(x2 - x1), std::abs(y2 - y1)};
}

}  // namespace

void PdfCanvas::begin_page(double height)
{
    content_.clear();
    links_.clear();
    anchors_.clear();
    saved_.clear();
    state_ = {};
    state_.matrix = {1, 0, 0, -1, 0, height};
    in_text_ = false;
}

const std::string& PdfCanvas::end_page()
{
    leave_text();
    return content_;
}

std::string PdfCanvas::alpha_entries() const
{
    std::string entries;
    for (const uint8_t alpha : alphas_) {
        const std::string share = pdf_number(alpha / 255.0);
        entries += "/A" + std::to_string(alpha) + "<</ca " + share + "/CA " + share + ">>";
    }
    return entries;
}

void PdfCanvas::number(double value)
{
    append_pdf_number(content_, value);
    content_ += ' ';
}

void PdfCanvas::point(double x, double y)
{
    const auto [px, py] = state_.matrix.apply(x, y);
    number(px);
    number(py);
}

void PdfCanvas::leave_text()
{
    if (in_text_) content_ += "ET\n";
    in_text_ = false;
}

void PdfCanvas::save()
{
    leave_text();
    saved_.push_back(state_);
    content_ += "q\n";
}

void PdfCanvas::restore()
{
    leave_text();
    state_ = saved_.back();
    saved_.pop_back();
    content_ += "Q\n";
}

void PdfCanvas::append(const Path& path)
{
    for (const Path::Step& step : path.steps) {
        const auto& at = step.at;
        switch (step.verb) {
            case Path::Verb::Move:
                point(at[0], at[1]);
                content_ += "m ";
                break;
            case Path::Verb::Line:
                point(at[0], at[1]);
                content_ += "l ";
                break;
            case Path::Verb::Curve:
                for (size_t i = 0; i < 6; i += 2) point(at[i], at[i + 1]);
                content_ += "c ";
                break;
            case Path::Verb::Close:
                content_ += "h ";
        }
    }
}

void PdfCanvas::clip(const Area& area)
{
    leave_text();
    Path path;
    path.rectangle(area);
    append(path);
    content_ += "W n\n";
}

void PdfCanvas::set_alpha(uint8_t alpha)
{
    if (state_.alpha == alpha) return;
    state_.alpha = alpha;
    alphas_.insert(alpha);
    content_ += "/A" + std::to_string(alpha) + " gs ";
}

void PdfCanvas::set_fill(Color color)
{
    set_alpha(color.alpha);
    color.alpha = 255;
    if (state_.fill == color) return;
    state_.fill = color;
    append_color(content_, color, " g ", " rg ");
}

void PdfCanvas::set_stroke(const Stroke& stroke)
{
    set_alpha(stroke.color.alpha);
    Color color = stroke.color;
    color.alpha = 255;
    if (!(state_.stroke == color)) {
        state_.stroke = color;
        append_color(content_, color, " G ", " RG ");
    }
    const bool new_width = state_.line_width != stroke.width;
    if (new_width) {
        state_.line_width = stroke.width;
        number(stroke.width);
        content_ += "w ";
    }
    const bool dashes = stroke.style == LineStyle::Dashed || stroke.style == LineStyle::Dotted;
    if (state_.line_style == stroke.style && !(dashes && new_width)) return;
    state_.line_style = stroke.style;
    content_ += '[';
    if (dashes) {
        number(stroke.style == LineStyle::Dashed ? 5 * stroke.width : stroke.width);
        number(stroke.style == LineStyle::Dashed ? 3 * stroke.width : stroke.width);
    }
    content_ += "]0 d ";
}

void PdfCanvas::fill(const Path& path, Color color)
{
    leave_text();
    set_fill(color);
    append(path);
    content_ += "f\n";
}

void PdfCanvas::fill(const Area& area, Color color)
{
    leave_text();
    set_fill(color);
    if (state_.matrix.upright()) {
        const Area box = bounds(state_.matrix, area);
        for (const double value : {box.x, box.y, box.width, box.height}) number(value);
        content_ += "re f\n";
        return;
    }
    Path path;
    path.rectangle(area);
    append(path);
    content_ += "f\n";
}

void PdfCanvas::stroke(const Path& path, const Stroke& stroke)
{
    leave_text();
    set_stroke(stroke);
    append(path);
    content_ += "S\n";
}

void PdfCanvas::set_font(const GlyphRun& run)
{
    const bool same_face = state_.font != nullptr && state_.font->face() == run.face;
    if (same_face && state_.size == run.size) return;
    if (!same_face) state_.font = &fonts_.font(*run.face);
    state_.size = run.size;
    content_ += '/';
    content_ += state_.font->name();
    content_ += ' ';
    number(run.size);
    content_ += "Tf ";
}

void PdfCanvas::enter_text(double x, double y)
{
    if (!in_text_) {
        content_ += "BT ";
        text_x_ = text_y_ = 0;
    }
    in_text_ = true;
    const auto [px, py] = state_.matrix.apply(x, y);
    const Matrix& m = state_.matrix;
    if (!m.upright() || m.a != 1 || m.d != -1) {
        for (const double value : {m.a, m.b, -m.c, -m.d, px, py}) number(value);
        content_ += "Tm ";
        return;
    }
    const int64_t to_x = thousandths(px), to_y = thousandths(py);
    number(static_cast<double>(to_x - text_x_) / 1000);
    number(static_cast<double>(to_y - text_y_) / 1000);
    content_ += "Td ";
    text_x_ = to_x;
    text_y_ = to_y;
}

void PdfCanvas::append_code(const CanvasGlyph& glyph, std::string_view text)
{
    const uint16_t code = state_.font->code(glyph.id, text.substr(glyph.cluster, glyph.cluster_size));
    for (const char byte : {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)}) {
        if (byte == '(' || byte == ')' || byte == '\\') content_ += '\\';
        if (byte == '\r') {
            content_ += "\\r";
        } else {
            content_ += byte;
        }
    }
}

/// Shows the glyphs one after the other, with adjustments where a blank was stretched.
void PdfCanvas::show(const GlyphRun& run)
{
    const auto stretched = [](const CanvasGlyph& glyph) {
        return std::abs(glyph.advance - glyph.natural) > kSameAdvance;
    };
    if (std::ranges::none_of(run.glyphs, stretched)) {
        content_ += '(';
        for (const CanvasGlyph& glyph : run.glyphs) append_code(glyph, run.text);
        content_ += ")Tj\n";
        return;
    }
    content_ += "[(";
    for (const CanvasGlyph& glyph : run.glyphs) {
        append_code(glyph, run.text);
        if (!stretched(glyph)) continue;
        content_ += ')';
        append_pdf_number(content_, (glyph.natural - glyph.advance) * 1000 / run.size);
        content_ += '(';
    }
    content_ += ")]TJ\n";
}

/// Shows every glyph at its own place: marks that stand over letters.
void PdfCanvas::show_each(const GlyphRun& run)
{
    double x = run.x;
    for (const CanvasGlyph& glyph : run.glyphs) {
        enter_text(x + glyph.dx, run.y - glyph.dy);
        content_ += '(';
        append_code(glyph, run.text);
        content_ += ")Tj\n";
        x += glyph.advance;
    }
}

void PdfCanvas::glyphs(const GlyphRun& run)
{
    if (run.glyphs.empty() || run.size <= 0) return;
    // A text matrix stays until the text ends, and moves after it would be relative to it.
    if (!state_.matrix.upright()) leave_text();
    set_fill(run.color);
    set_font(run);
    const bool shifted = std::ranges::any_of(run.glyphs, [](const auto& g) { return g.dx != 0 || g.dy != 0; });
    if (shifted) {
        show_each(run);
    } else {
        enter_text(run.x, run.y);
        show(run);
    }
    if (!state_.matrix.upright()) leave_text();
}

std::optional<std::pair<int, int>> PdfCanvas::image_size(const std::shared_ptr<const ImageData>& image)
{
    const auto* placed = images_.image(image);
    return placed != nullptr ? std::optional(std::pair{placed->width, placed->height}) : std::nullopt;
}

void PdfCanvas::image(const std::shared_ptr<const ImageData>& image, const Area& area)
{
    const auto* placed = images_.image(image);
    if (placed == nullptr) return;
    leave_text();
    set_alpha(255);
    // Pictures fill the unit square, which has its origin below.
    const Matrix m = state_.matrix * Matrix{area.width, 0, 0, -area.height, area.x, area.y + area.height};
    content_ += "q ";
    for (const double value : {m.a, m.b, m.c, m.d, m.e, m.f}) number(value);
    content_ += "cm /" + placed->name + " Do Q\n";
}

void PdfCanvas::link(const Area& area, const Link& link)
{
    links_.push_back({bounds(state_.matrix, area), link});
}

void PdfCanvas::anchor(const Area& area, const Anchor& anchor, std::string_view label)
{
    const Area box = bounds(state_.matrix, area);
    anchors_.push_back({box.y + box.height, anchor, std::string(label)});
}

}  // namespace velora::engine
