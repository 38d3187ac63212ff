#include <cmath>

#include "engine/text/face.h"
#include "engine/text/line_break.h"
#include "engine/text/line_builder.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr double kTolerance = 0.001;  // in points, as where texts are shaped

/// Whether the character takes its advance and nothing more.
bool is_plain(char32_t character, BreakClass kind)
{
    return character < 0x250 && character != 0xAD && kind != BreakClass::Feed &&
           (kind != BreakClass::Blank || character == ' ');
}

/// Walks over the characters once; positions count in font units from the start of the line.
class PlainScan {
public:
    PlainScan(const TextRequest& request, const ParagraphRange& range, const Face& face, LineBuilder& builder,
              const LineMetrics& metrics)
        : text_(request.text),
          range_(range),
          face_(face),
          builder_(builder),
          metrics_(metrics),
          points_per_unit_(static_cast<double>(request.style->font.size) / face.units_per_em()),
          line_begin_(range.begin),
          visible_end_(range.begin)
    {
        set_limit();
    }

    LayoutResult run()
    {
        for (uint32_t at = range_.begin; at < range_.end;) {
            const auto [character, size] = utf8_at(text_, at);
            const BreakClass kind = break_class(text_, at, character);
            const Face::Glyph glyph = face_.glyph(character);
            if (!is_plain(character, kind) || glyph.id == 0) return LayoutResult::Unsuitable;
            const bool may_end = rules_.before(kind);
            if (kind == BreakClass::Blank) {
                blanks_ += glyph.advance;
            } else {
                note_break(at, may_end);
                if (!make_room(at, glyph.advance)) return LayoutResult::Full;
                visible_end_ = at + size;
                visible_ = position_;
            }
            at += size;
        }
        return end_line(visible_end_, range_.next, visible_, true) ? LayoutResult::Done : LayoutResult::Full;
    }

private:
    void set_limit()
    {
        const double units = points_per_unit_ > 0 ? (builder_.available() + kTolerance) / points_per_unit_ : 1e9;
        limit_ = static_cast<int64_t>(std::floor(std::min(units, 1e9)));
    }

    /// Moves over the blanks before a character, and remembers whether a line may end before it.
    void note_break(uint32_t at, bool may_end)
    {
        position_ += blanks_;
        blanks_ = 0;
        if (may_end && at > range_.begin) break_ = {at, visible_end_, visible_, position_, true};
    }

    /// Ends lines until the character fits, or stands alone on its line.
    bool make_room(uint32_t at, int advance)
    {
        while (position_ + advance > limit_ && at > line_begin_) {
            if (break_.valid) {
                if (!end_line(break_.visible_end, break_.at, break_.visible, false)) return false;
                position_ -= break_.position;
                visible_ = position_;
            } else {
                if (!end_line(visible_end_, at, visible_, false)) return false;
                position_ = 0;
                visible_ = 0;
            }
            break_.valid = false;
            set_limit();
        }
        position_ += advance;
        return true;
    }

    bool end_line(uint32_t visible_end, uint32_t next, int64_t width, bool ends_paragraph)
    {
        const float points = static_cast<float>(static_cast<double>(width) * points_per_unit_);
        const bool fits = builder_.add({line_begin_, visible_end, next, points, ends_paragraph}, metrics_);
        line_begin_ = next;
        return fits;
    }

    struct Break {
        uint32_t at = 0, visible_end = 0;
        int64_t visible = 0, position = 0;
        bool valid = false;
    };

    std::string_view text_;
    const ParagraphRange& range_;
    const Face& face_;
    LineBuilder& builder_;
    const LineMetrics& metrics_;
    double points_per_unit_;
    int64_t limit_ = 0;
    uint32_t line_begin_, visible_end_;
    int64_t position_ = 0, visible_ = 0, blanks_ = 0;
    Break break_;
    BreakRules rules_;
};

}  // namespace

LayoutResult lay_plain(const TextRequest& request, const ParagraphRange& range, const Face& face, LineBuilder& builder,
                       const LineMetrics& metrics)
{
    if (!face.plain_latin()) return LayoutResult::Unsuitable;
    const auto mark = builder.mark();
    const LayoutResult result = PlainScan(request, range, face, builder, metrics).run();
    if (result == LayoutResult::Unsuitable) builder.back_to(mark);
    return result;
}

}  // namespace velora::engine
