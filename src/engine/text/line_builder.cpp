#include "engine/text/line_builder.h"

#include <algorithm>

#include "engine/text/face.h"
#include "engine/text/font_store.h"

namespace velora::engine {
namespace {

constexpr float kHeightTolerance = 0.001F;  // sums of single precision heights

/// Height of a line below another one: the spacing counts for what stands above the base line.
float spaced(const Paragraph& paragraph, const LineMetrics& metrics)
{
    const float above = metrics.ascent;
    switch (paragraph.spacing) {
        case LineSpacing::Single:
            return metrics.height();
        case LineSpacing::OneAndHalf:
            return metrics.gap + above * 1.5F + metrics.descent;
        case LineSpacing::Double:
            return metrics.gap + above * 2 + metrics.descent;
        case LineSpacing::Proportional:
            return metrics.gap + above * paragraph.spacing_size + metrics.descent;
        case LineSpacing::AtLeast:
            return std::max(metrics.gap + above, paragraph.spacing_size) + metrics.descent;
        case LineSpacing::Fixed:
            return paragraph.spacing_size + metrics.descent;
    }
    return metrics.height();
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
    const bool first = layout_.lines.empty();
    const float before = first && first_line_ ? paragraph.spacing_before : 0;
    const float height = first ? metrics.height() : spaced(paragraph, metrics);
    if (layout_.height + before + height > request_.max_height + kHeightTolerance) return false;
    if (first) {
        const float size = request_.style->font.size;
        layout_.leading_offset = -metrics.descent;
        layout_.line_spacing_factor = size > 0 ? spaced(paragraph, metrics) / size : 0;
    }
    const float indent = paragraph.left_indent + (first_line_ ? paragraph.first_line_indent : 0);
    layout_.lines.push_back({stretch.begin, stretch.end, stretch.width, before + height - metrics.descent,
                             before + height, indent, stretch.ends_paragraph});
    layout_.height += before + height;
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
