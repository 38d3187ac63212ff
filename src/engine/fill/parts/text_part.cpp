#include "engine/fill/parts/text_part.h"

#include <cmath>

#include "engine/fill/parts/recorded_values.h"
#include "engine/text/markup.h"
#include "values/text.h"

namespace velora::engine {

using model::EvaluationTime;
using model::TextAdjust;

TextPart::TextPart(Run& run, const PartPlan& plan, const BandState& band)
    : Part(run, plan, band),
      is_static_(plan.kind == PartPlan::Kind::StaticText),
      is_refused_(!is_static_ && !plan.expression && std::get<model::TextField>(source().body).expression.present()),
      waits_(plan.evaluation != EvaluationTime::Now)
{
}

void TextPart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
    if (!print_when_holds_) return;
    moment_ = moment;
    dress_ = &dress(moment);
    if (!waits_) evaluate_text(run_.at(moment));
}

void TextPart::evaluate_text(const Environment& environment)
{
    keep_all_ = plan_.keep_full_text.holds(environment);
    takes_room_ = plan_.consume_space_on_overflow.holds(environment);
    if (is_static_) {
        take_text(std::string(std::get<model::StaticText>(source().body).text));
        return;
    }
    take_text(shown_value(environment));
    if (plan_.link) link_ = evaluate_link(*plan_.link, environment);
}

std::string TextPart::shown_value(const Environment& environment)
{
    const Pattern* formatter = dress_->pattern.get();
    if (plan_.pattern) {
        std::string pattern = plan_.pattern.text(environment).value_or(std::string());
        if (!own_formatter_ || pattern != own_pattern_) {
            own_pattern_ = std::move(pattern);
            own_formatter_ = std::make_unique<Pattern>(own_pattern_, run_.rows.shared().surroundings);
        }
        formatter = own_pattern_.empty() ? nullptr : own_formatter_.get();  // null: as if there were no pattern at all
    }
    std::string none = dress_->look.blank_when_null || is_refused_ ? "" : "null";
    if (!formatter && !run_.wants_values) return plan_.expression.text(environment).value_or(none);

    value_ = plan_.expression.evaluate(environment);
    if (value_.is_null()) return none;
    const bool formatted = formatter && value_.type() != Value::Type::Text && value_.type() != Value::Type::Boolean;
    return formatted ? formatter->format(value_) : plan_.expression.text(environment).value_or(none);
}

void TextPart::take_text(std::string&& raw)
{
    if (raw.find('\r') != std::string::npos) raw = replaced(replaced(raw, "\r\n", "\n"), "\r", "\n");
    if (!rewound_) raw_before_.swap(raw_);
    rewound_ = false;
    raw_ = std::move(raw);
    repeats_ = is_static_ || (known_ && raw_before_ == raw_);
    known_ = true;
    marked_ = dress_->look.markup == model::Markup::Styled || dress_->look.markup == model::Markup::Html;
    if (marked_) {
        runs_.clear();
        const auto markup = dress_->look.markup == model::Markup::Html ? Markup::Html : Markup::Styled;
        plain_ = plain_text_of(raw_, markup, *dress_->style, runs_);
    }
    restart();
}

void TextPart::restart()
{
    start_ = 0;
    end_ = 0;
    scaled_ = nullptr;
}

void TextPart::rewind()
{
    rewound_ = true;
    restart();
}

bool TextPart::stretches() const
{
    return !is_static_ && plan_.adjust == TextAdjust::StretchHeight && style().rotation == Rotation::None;
}

bool TextPart::may_split() const
{
    return stretches() && !waits_ && run_.overflow_allowed;
}

bool TextPart::prepare(int available, bool continuing)
{
    if (is_static_) return prepare_static(available, continuing);
    if (!begin_prepare()) return false;
    return waits_ ? prepare_waiting(available, continuing) : prepare_now(available, continuing);
}

bool TextPart::prepare_static(int available, bool continuing)
{
    const bool goes_over = prepare_fixed(available, continuing);
    if (!print_when_holds_) return goes_over;
    restart();
    if (prints) lay_out(0);
    return goes_over;
}

bool TextPart::prepare_waiting(int available, bool continuing)
{
    if (continuing && already_printed) {
        reprinted = source().print_when_detail_overflows;
        prints = reprinted;
    }
    const bool goes_over = prints && available < relative_y + height_;
    if (goes_over) prints = false;
    return goes_over;
}

/// Whether there is nothing to print any more, or nothing new.
bool TextPart::leaves_out(bool continuing)
{
    const bool repeated = !plan_.print_when && !source().print_repeated_values && repeats_;
    if (!continuing) return repeated && may_leave_out_repeated();
    // what stands at the bottom is shown whole on the last page only
    if (source().position == model::PositionType::FixRelativeToBottom) restart();
    if ((end_ >= text().size() || !stretches()) && already_printed) {
        if (!source().print_when_detail_overflows) return true;
        restart();
        reprinted = true;
    }
    return repeated;
}

bool TextPart::prepare_now(int available, bool continuing)
{
    if (leaves_out(continuing)) {
        prints = false;
        return false;
    }
    if (available < relative_y + height_) {
        prints = false;
        return true;
    }
    bool goes_over = false;
    if (end_ < text().size() || end_ == 0) {
        lay_out(stretches() ? available - relative_y - height_ : 0);
        goes_over = stretches() && end_ < text().size();
    } else {
        prints = false;
    }
    if (prints && source().remove_line_when_blank && is_blank()) prints = false;
    return goes_over;
}

bool TextPart::is_blank() const
{
    return text().find_first_not_of(" \t\n", start_) >= end_;
}

void TextPart::lay_out(int stretch)
{
    const std::string& text = this->text();
    if (end_ == text.size()) {
        layout_.lines.clear();
        text_height_ = 0;
        return;
    }
    const Style& style = this->style();
    const Box& box = style.box;
    const bool aside = style.rotation == Rotation::Left || style.rotation == Rotation::Right;
    const float inner_width = static_cast<float>(width_ - box.left_padding - box.right_padding);
    const float inner_height = static_cast<float>(height_ + stretch - box.top_padding - box.bottom_padding);

    TextRequest request;
    request.text = text;
    if (marked_) request.runs = runs_;
    request.style = &style;
    request.width = aside ? inner_height : inner_width;
    request.max_height = aside ? inner_width : inner_height;
    request.begin = static_cast<uint32_t>(end_);
    run_.measurer.measure(request, layout_);
    if (!layout_.complete && plan_.adjust == TextAdjust::ScaleFont && !is_static_) scale_font(request);

    const int needed = static_cast<int>(std::ceil(layout_.height)) + box.top_padding + box.bottom_padding;
    if (style.rotation != Rotation::None) {
        set_prepare_height(height_);
    } else if (layout_.complete || !may_split() || !takes_room_) {
        set_prepare_height(needed);
    } else {
        set_prepare_height(height_ + stretch);  // nothing else is to stand in the room that is left
    }
    text_height_ = layout_.height;
    start_ = end_;
    end_ = layout_.complete ? text.size() : layout_.end;
}

/// The largest size, in halves of a point, at which the whole text fits.
void TextPart::scale_font(const TextRequest& request)
{
    TextRequest smaller = request;
    Style style = *dress_->style;
    int low = 1;
    int high = std::max(1, static_cast<int>(style.font.size * 2));
    const auto fits = [&](int halves) {
        style.font.size = static_cast<float>(halves) / 2;
        smaller.style = &style;
        run_.measurer.measure(smaller, layout_);
        return layout_.complete;
    };
    while (low < high) {
        const int middle = (low + high + 1) / 2;
        if (fits(middle)) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    fits(low);
    scaled_ = run_.document.styles->intern(style);
}

void TextPart::emit(Emission& emission)
{
    Element& element = add(emission, &style());
    if (end_ > start_) ++run_.progress;
    if (!waits_) {
        write(std::get<Text>(element.content));
    } else if (plan_.evaluation == EvaluationTime::Auto) {
        emit_recorded(emission);
    } else {
        await(emission, awaited());
    }
}

/// Each variable counts as it is when its own part of the report ends, the fields as they are now.
void TextPart::emit_recorded(Emission& emission)
{
    const auto times = awaited_times(run_.plan, plan_, band_);
    if (times.empty()) {
        evaluate_text(run_.at(moment_));
        lay_out(0);
        write(std::get<Text>(emission.elements->back().content));
        return;
    }
    const auto recorded = std::make_shared<RecordedValues>(run_, moment_, times.size());
    for (const auto& time : times) {
        await(emission, time, std::make_shared<RecordedNote>(RecordedNote{recorded, time}));
    }
}

void TextPart::write(Text& target) const
{
    const std::string& text = this->text();
    const bool keep_all = keep_all_ && !may_split() && start_ == 0;
    if (keep_all || (start_ == 0 && end_ == text.size())) {
        target.text = text;
    } else {
        target.text.assign(text, start_, end_ - start_);
    }
    target.text_height = text_height_;
    const bool cut = keep_all && end_ < text.size();
    const bool typed = run_.wants_values && !value_.is_null() && value_.type() != Value::Type::Text;
    const bool one_line =
        layout_.lines.empty() || (layout_.lines.size() == 1 && layout_.lines[0].indent == 0 && !marked_);
    if (one_line && !cut && !typed && link_.empty()) return;

    TextDetail& detail = target.details();
    write_lines(detail);
    if (cut) detail.truncate_at = static_cast<uint32_t>(end_);
    if (typed) detail.value = value_;
    detail.link = link_.link;
    detail.anchor = link_.anchor;
}

void TextPart::write_lines(TextDetail& detail) const
{
    const auto first = static_cast<uint32_t>(start_);
    detail.line_spacing_factor = layout_.line_spacing_factor;
    detail.leading_offset = layout_.leading_offset;
    detail.lines = layout_.lines;
    for (auto& line : detail.lines) {
        line.begin -= first;
        line.end -= first;
    }
    if (!marked_) return;
    if (start_ == 0 && end_ == plain_.size()) {
        detail.marked = raw_;
        detail.marked_as_html = dress_->look.markup == model::Markup::Html;
    }
    for (TextRun run : runs_) {
        run.begin = std::max(run.begin, first) - first;
        run.end = std::min(run.end, static_cast<uint32_t>(end_));
        if (run.end <= first + run.begin) continue;
        run.end -= first;
        detail.runs.push_back(std::move(run));
    }
}

void TextPart::resolve(Waiting& waiting, Element& element, Moment moment)
{
    if (plan_.evaluation == EvaluationTime::Master) return resolve_master(waiting.page, element);
    const auto* note = static_cast<const RecordedNote*>(waiting.notes.get());
    if (note && !note->values->record(run_, note->time, moment)) return;
    show(element, moment, note ? note->values->environment() : run_.at(moment));
}

/// The outermost report has ended: its pages are known, everything else is as it was at the end of this one.
void TextPart::resolve_master(uint64_t page, Element& element)
{
    RecordedValues values(run_, Moment::Now, 1);
    values.take_master(run_.plan, page, run_.master->pages);
    show(element, Moment::Now, values.environment());
}

void TextPart::show(Element& element, Moment moment, const Environment& environment)
{
    dress_ = &dress(moment);
    evaluate_text(environment);
    lay_out(0);
    element.style = &style();
    write(std::get<Text>(element.content));
}

}  // namespace velora::engine
