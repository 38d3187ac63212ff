#include "engine/export/pdf/pdf_canvas.h"

#include <algorithm>
#include <cmath>

#include "engine/export/common/short_number.h"

namespace velora::engine {
namespace {

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
