#include "engine/export/pdf/pdf_canvas.h"

#include <algorithm>
#include <cmath>

#include "engine/export/common/short_number.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr float kSameAdvance = 0.0005F;
constexpr std::string_view kNothing = "\xE2\x80\x8B";  // a blank of no width: readers make up a letter for no text

void append_color(std::string& out, Color color, std::string_view gray, std::string_view rgb)
{
    append_short_number(out, color.red / 255.0);
    if (color.red == color.green && color.red == color.blue) {
        out += gray;
        return;
    }
    for (const uint8_t part : {color.green, color.blue}) {
        out += ' ';
        append_short_number(out, part / 255.0);
    }
    out += rgb;
}

int64_t thousandths(double value)
{
    constexpr double kMost = 1e7;
    return std::llround(std::clamp(std::isfinite(value) ? value : 0.0, -kMost, kMost) * 1000);
}

/// The glyph behind the last one of the cluster that begins at `first`.
size_t cluster_end(std::span<const CanvasGlyph> glyphs, size_t first)
{
    size_t end = first + 1;
    while (end < glyphs.size() && glyphs[end].cluster_size == 0) ++end;
    return end;
}

bool is_several(const GlyphRun& run, const CanvasGlyph& glyph)
{
    return utf8_at(run.text, glyph.cluster).size < glyph.cluster_size;
}

/// Where the last character of the text begins.
size_t last_character(std::string_view text)
{
    size_t at = text.size() - 1;
    while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) --at;
    return at;
}

/// What each glyph of a cluster shows of its text. A glyph begins at the next character that the face has it for; one
/// that finds none shows nothing.
std::vector<std::string_view> text_shares(const Face& face, std::span<const CanvasGlyph> glyphs, std::string_view text)
{
    std::vector<std::string_view> shares(glyphs.size());
    size_t owner = 0, begin = 0;
    for (size_t at = utf8_at(text, 0).size; at < text.size();) {
        const auto [character, size] = utf8_at(text, at);
        const uint16_t id = face.glyph(character).id;
        const auto found = std::find_if(glyphs.begin() + static_cast<ptrdiff_t>(owner) + 1, glyphs.end(),
                                        [&](const CanvasGlyph& glyph) { return glyph.id == id; });
        if (found != glyphs.end()) {
            shares[owner] = text.substr(begin, at - begin);
            owner = static_cast<size_t>(found - glyphs.begin());
            begin = at;
        }
        at += size;
    }
    shares[owner] = text.substr(begin);
    return shares;
}

Area bounds(const Matrix& matrix, const Area& area)
{
    const auto [x1, y1] = matrix.apply(area.x, area.y);
    const auto [x2, y2] = matrix.apply(area.x + area.width, area.y + area.height);
    return {std::min(x1, x2), std::min(y1, y2), std::abs(x2 - x1), std::abs(y2 - y1)};
}

}  // namespace

void PdfCanvas::begin_page(double height, const PageStructure* structure)
{
    structure_ = structure;
    next_owner_ = 0;
    owner_ = {};
    mark_ = Mark::None;
    marks_.clear();
    marked_text_ = 0;
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
    close_mark();
    return content_;
}

std::string PdfCanvas::alpha_entries() const
{
    std::string entries;
    for (const uint8_t alpha : alphas_) {
        const std::string share = short_number(alpha / 255.0);
        entries += "/A" + std::to_string(alpha) + "<</ca " + share + "/CA " + share + ">>";
    }
    return entries;
}

void PdfCanvas::number(double value)
{
    append_short_number(content_, value);
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
    if (!in_text_) return;
    if (mark_ == Mark::Text) close_mark();
    content_ += "ET\n";
    in_text_ = false;
}

void PdfCanvas::open_mark(Mark mark)
{
    mark_ = mark;
    marked_part_ = owner_.part;
    if (mark == Mark::Decoration || owner_.part == ElementOwner::kDecoration) {
        content_ += "/Artifact BMC ";
    } else if (owner_.part == ElementOwner::kRunning) {
        content_ += "/Artifact<</Type/Pagination>>BDC ";
    } else {
        content_ += mark == Mark::Figure ? "/Figure<</MCID " : "/P<</MCID ";
        content_ += std::to_string(marks_.size());
        content_ += ">>BDC ";
        marks_.push_back(owner_.part);
    }
}

void PdfCanvas::close_mark()
{
    if (mark_ != Mark::None) content_ += "EMC ";
    mark_ = Mark::None;
}

void PdfCanvas::next_element()
{
    if (structure_ == nullptr) return;
    if (mark_ == Mark::Figure) {
        leave_text();
        close_mark();
    }
    owner_ = structure_->owners.at(next_owner_++);
    if (!owner_.is_figure) return;
    leave_text();
    close_mark();
    open_mark(Mark::Figure);
}

/// Begins a text object unless one is open, and the marked content of the element's text in it.
void PdfCanvas::ready_text()
{
    if (structure_ != nullptr && mark_ != Mark::Figure && (mark_ != Mark::Text || marked_part_ != owner_.part)) {
        close_mark();
    }
    if (!in_text_) {
        content_ += "BT ";
        text_x_ = text_y_ = 0;
    }
    in_text_ = true;
    if (structure_ != nullptr && mark_ == Mark::None) open_mark(Mark::Text);
}

/// Lines and grounds are nothing that a reader hears of, unless they are a picture's.
void PdfCanvas::ready_shape()
{
    leave_text();
    if (structure_ != nullptr && mark_ == Mark::None) open_mark(Mark::Decoration);
}

void PdfCanvas::save()
{
    leave_text();
    if (mark_ == Mark::Decoration) close_mark();
    saved_.push_back(state_);
    content_ += "q\n";
}

void PdfCanvas::restore()
{
    leave_text();
    if (mark_ == Mark::Decoration) close_mark();
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
    ready_shape();
    set_fill(color);
    append(path);
    content_ += "f\n";
}

void PdfCanvas::fill(const Area& area, Color color)
{
    ready_shape();
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
    ready_shape();
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
    ready_text();
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

void PdfCanvas::append_code(uint16_t code)
{
    for (const char byte : {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)}) {
        if (byte == '(' || byte == ')' || byte == '\\') content_ += '\\';
        if (byte == '\r') {
            content_ += "\\r";
        } else {
            content_ += byte;
        }
    }
}

/// Around glyphs whose codes do not tell what they show.
void PdfCanvas::open_span(std::string_view text)
{
    content_ += "/Span<</ActualText";
    content_ += pdf_utf16(text);
    content_ += ">>BDC ";
}

void PdfCanvas::close_span()
{
    content_ += "EMC\n";
}

/// Shows the glyphs one after the other, with adjustments where a blank was stretched.
void PdfCanvas::show(const GlyphRun& run, std::span<const CanvasGlyph> glyphs)
{
    const auto stretched = [](const CanvasGlyph& glyph) {
        return std::abs(glyph.advance - glyph.natural) > kSameAdvance;
    };
    const bool adjusted = std::ranges::any_of(glyphs, stretched);
    const std::string_view open = adjusted ? "[(" : "(", close = adjusted ? ")]TJ\n" : ")Tj\n";
    content_ += open;
    for (const CanvasGlyph& glyph : glyphs) {
        const std::string_view text = run.text.substr(glyph.cluster, glyph.cluster_size);
        const PdfFont::Code code = state_.font->code(glyph.id, text);
        if (!code.tells) {
            content_ += close;
            open_span(text);
            content_ += '(';
            append_code(code.number);
            content_ += ")Tj ";
            close_span();
            content_ += open;
        } else {
            append_code(code.number);
        }
        if (!stretched(glyph)) continue;
        content_ += ')';
        append_short_number(content_, (glyph.natural - glyph.advance) * 1000 / run.size);
        content_ += '(';
    }
    content_ += close;
}

void PdfCanvas::show_glyph(const CanvasGlyph& glyph, std::string_view text, double x, double y)
{
    enter_text(x + glyph.dx, y - glyph.dy);
    content_ += '(';
    append_code(state_.font->code(glyph.id, text.empty() ? kNothing : text).number);
    content_ += ")Tj ";
}

/// Readers take a cluster to reach from its first glyph to its last, and marks do not stand at its ends.
void PdfCanvas::show_blank(double x, double y)
{
    enter_text(x, y);
    content_ += '(';
    append_code(state_.font->blank(kNothing));
    content_ += ")Tj ";
}

/// Shows the glyphs of one cluster, each at its own place: marks that stand over letters.
void PdfCanvas::show_cluster(const GlyphRun& run, std::span<const CanvasGlyph> glyphs, double x)
{
    const std::string_view text = run.text.substr(glyphs[0].cluster, glyphs[0].cluster_size);
    const auto shares = text_shares(*run.face, glyphs, text);
    ready_text();
    open_span(text);
    for (size_t i = 0; i < glyphs.size(); ++i) {
        show_glyph(glyphs[i], shares[i], x, run.y);
        x += glyphs[i].advance;
    }
    if (state_.font->has_blanks()) show_blank(x, run.y);
    close_span();
}

/// Readers turn right-to-left text round letter by letter, and the letters of one cluster with it. So each has a code
/// of its own: the glyphs show the first letter, and the others stand in front of them, without ink and width.
void PdfCanvas::show_reversed_cluster(const GlyphRun& run, std::span<const CanvasGlyph> glyphs, double x)
{
    const std::string_view text = run.text.substr(glyphs[0].cluster, glyphs[0].cluster_size);
    const std::string_view first = text.substr(0, utf8_at(text, 0).size);
    enter_text(x, run.y);
    content_ += '(';
    for (size_t end = text.size(); end > first.size();) {
        const size_t begin = last_character(text.substr(0, end));
        append_code(state_.font->blank(text.substr(begin, end - begin)));
        end = begin;
    }
    content_ += ")Tj ";
    if (glyphs.size() == 1) return show_glyph(glyphs[0], first, x, run.y);
    open_span(first);
    show_blank(x, run.y);
    for (const CanvasGlyph& glyph : glyphs) {
        show_glyph(glyph, &glyph == &glyphs.back() ? first : kNothing, x, run.y);
        x += glyph.advance;
    }
    close_span();
}

void PdfCanvas::show_clusters(const GlyphRun& run)
{
    const auto at_place = [](const CanvasGlyph& glyph) { return glyph.dx == 0 && glyph.dy == 0; };
    const auto width = [](std::span<const CanvasGlyph> glyphs) {
        double sum = 0;
        for (const CanvasGlyph& glyph : glyphs) sum += glyph.advance;
        return sum;
    };
    double x = run.x;
    for (auto rest = run.glyphs; !rest.empty();) {
        size_t plain = 0;  // glyphs at the front that show a cluster each and stand where they belong
        while (plain < rest.size() && at_place(rest[plain]) && cluster_end(rest, plain) == plain + 1 &&
               !(run.right_to_left && is_several(run, rest[plain]))) {
            ++plain;
        }
        const size_t count = plain > 0 ? plain : cluster_end(rest, 0);
        const auto glyphs = rest.first(count);
        if (plain > 0) {
            enter_text(x, run.y);
            show(run, glyphs);
        } else if (run.right_to_left && state_.font->has_blanks()) {
            show_reversed_cluster(run, glyphs, x);
        } else {
            show_cluster(run, glyphs, x);
        }
        x += width(glyphs);
        rest = rest.subspan(count);
    }
}

/// Lines leave out the blank or the line feed that parts them; who has the text read out would hear one word. So a
/// blank stands in front of the line.
void PdfCanvas::show_break(const GlyphRun& run)
{
    const CanvasGlyph& first = run.glyphs.front();
    const CanvasGlyph& last = run.glyphs.back();
    const bool goes_on = structure_ != nullptr && marked_text_ == next_owner_ && run.y != last_line_;
    const bool parted = goes_on && !run.right_to_left && first.cluster > text_end_;
    marked_text_ = next_owner_;
    last_line_ = run.y;
    text_end_ = last.cluster + last.cluster_size;
    const Face::Glyph blank = run.face->glyph(' ');
    if (!parted || blank.id == 0) return;
    enter_text(run.x - blank.advance * run.size / run.face->units_per_em(), run.y);
    content_ += '(';
    append_code(state_.font->code(blank.id, " ").number);
    content_ += ")Tj ";
}

void PdfCanvas::glyphs(const GlyphRun& run)
{
    if (run.glyphs.empty() || run.size <= 0) return;
    // A text matrix stays until the text ends, and moves after it would be relative to it.
    if (!state_.matrix.upright()) leave_text();
    set_fill(run.color);
    set_font(run);
    show_break(run);
    const auto is_simple = [](const CanvasGlyph& glyph) {
        return glyph.dx == 0 && glyph.dy == 0 && glyph.cluster_size != 0;
    };
    if (!run.right_to_left && std::ranges::all_of(run.glyphs, is_simple)) {
        enter_text(run.x, run.y);
        show(run, run.glyphs);
    } else {
        show_clusters(run);
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
    ready_shape();
    set_alpha(255);
    // Pictures fill the unit square, which has its origin below.
    const Matrix m = state_.matrix * Matrix{area.width, 0, 0, -area.height, area.x, area.y + area.height};
    content_ += "q ";
    for (const double value : {m.a, m.b, m.c, m.d, m.e, m.f}) number(value);
    content_ += "cm /" + placed->name + " Do Q\n";
}

void PdfCanvas::link(const Area& area, const Link& link)
{
    links_.push_back({bounds(state_.matrix, area), link, owner_.part});
}

void PdfCanvas::anchor(const Area& area, const Anchor& anchor, std::string_view label)
{
    const Area box = bounds(state_.matrix, area);
    anchors_.push_back({box.y + box.height, anchor, std::string(label)});
}

}  // namespace velora::engine
