// How texts go onto the pages: codes of the font, gaps between letters, and what readers are told that stands there.

#include <algorithm>
#include <cmath>

#include "engine/export/common/short_number.h"
#include "engine/export/pdf/pdf_canvas.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr float kSameAdvance = 0.0005F;
constexpr std::string_view kNothing = "\xE2\x80\x8B";  // a blank of no width: readers make up a letter for no text

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

}  // namespace

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

}  // namespace velora::engine
