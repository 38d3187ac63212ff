#include "engine/text/line_builder.h"

#include <algorithm>

#include "engine/text/face.h"
#include "engine/text/font_store.h"

namespace velora::engine {
namespace {

constexpr float kHeightTolerance = 0.001F;  // sums of single precision heights

float spaced(const Paragraph& paragraph, float height)
{
    switch (paragraph.spacing) {
        case LineSpacing::Single:
            return height;
        case LineSpacing::OneAndHalf:
            return height * 1.5F;
        case LineSpacing::Double:
            return height * 2;
        case LineSpacing::AtLeast:
            return std::max(height, paragraph.spacing_size);
        case LineSpacing::Fixed:
            return paragraph.spacing_size;
        case LineSpacing::Proportional:
            return height * paragraph.spacing_size;
    }
    return height;
}

}  // namespace

LineMetrics LineMetrics::of(const Font& font, FontStore& fonts)
{
    const Face& face = fonts.face(font);
    const float scale = font.size / static_cast<float>(face.units_per_em());
    return {static_cast<float>(face.ascent()) * scale, static_cast<float>(face.descent()) * scale,
            static_cast<float>(face.line_gap()) * scale};
}

void LineMetrics::include(const LineMetrics& other)
{
    ascent = std::max(ascent, other.ascent);
    descent = std::max(descent, other.descent);
    gap = std::max(gap, other.gap);
}

float LineBuilder::available() const
{
    const Paragraph& paragraph = request_.style->paragraph;
    const int indent = paragraph.left_indent + paragraph.right_indent + (first_line_ ? paragraph.first_line_indent : 0);
    return std::max(request_.width - static_cast<float>(indent), 0.0F);
}

bool LineBuilder::add(const Stretch& stretch, const LineMetrics& metrics)
{
    const Paragraph& paragraph = request_.style->paragraph;
    const float before = first_line_ ? paragraph.spacing_before : 0;
    const float after = stretch.ends_paragraph ? paragraph.spacing_after : 0;
    const float height = spaced(paragraph, metrics.height());
    if (layout_.height + before + height > request_.max_height + kHeightTolerance) return false;
    if (layout_.lines.empty()) {
        layout_.leading_offset = -metrics.descent;
        layout_.line_spacing_factor = request_.style->font.size > 0 ? height / request_.style->font.size : 0;
    }
    const float indent = paragraph.left_indent + (first_line_ ? paragraph.first_line_indent : 0);
    layout_.lines.push_back({stretch.begin, stretch.end, stretch.width, before + height - metrics.descent,
                             before + height + after, indent, stretch.ends_paragraph});
    layout_.height += before + height + after;
    layout_.width = std::max(layout_.width, stretch.width);
    layout_.end = stretch.next;
    first_line_ = false;
    return true;
}

LineBuilder::Mark LineBuilder::mark() const
{
    return {layout_.lines.size(), layout_.height, layout_.width, layout_.end, first_line_};
}

void LineBuilder::back_to(const Mark& mark)
{
    layout_.lines.resize(mark.lines);
    layout_.height = mark.height;
    layout_.width = mark.width;
    layout_.end = mark.end;
    first_line_ = mark.first_line;
}

}  // namespace velora::engine
