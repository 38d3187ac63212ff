#include "engine/fill/parts/part.h"

namespace velora::engine {

Part::Part(Run& run, const PartPlan& plan, const BandState& band)
    : run_(run),
      plan_(plan),
      band_(band),
      x_(plan.element->x),
      y_(plan.element->y),
      width_(plan.element->width),
      height_(plan.element->height)
{
    reset();
}

void Part::reset()
{
    relative_y = y_;
    collapsed_above = 0;
    collapsed_below = 0;
    stretch_height = height_;
    prepare_height_ = height_;
}

void Part::evaluate_print_when(Moment moment)
{
    print_when_holds_ = !plan_.print_when || plan_.print_when.is_true(run_.at(moment));
}

const Part::Dress& Part::dress(Moment moment)
{
    const StylePlan* style = plan_.style;
    if (plan_.style_expression) {
        const Value name = plan_.style_expression.evaluate(run_.at(moment));
        const auto* text = name.get_if<std::string>();
        if (text && run_.plan.styles->find(*text)) style = run_.plan.styles->find(*text);
    }
    uint64_t holding = 0;
    if (style && style->conditions > 0) {
        unsigned bit = 0;
        for (const auto& layer : style->layers) {
            if (!layer.condition) continue;
            if (layer.condition.is_true(run_.at(moment))) holding |= uint64_t{1} << bit;
            ++bit;
        }
    }
    if (dress_ && dress_->plan == style && dress_->holding == holding) return *dress_;
    for (const auto& known : dresses_) {
        if (known->plan == style && known->holding == holding) return *known;
    }
    return make_dress(style, holding);
}

const Part::Dress& Part::make_dress(const StylePlan* style, uint64_t holding)
{
    auto dress = std::make_unique<Dress>();
    dress->plan = style;
    dress->holding = holding;
    dress->look = resolve_look(style, holding, plan_.element->attributes, plan_.look_kind);
    if (const auto* line = std::get_if<model::Line>(&plan_.element->body)) {
        dress->look.style.line_bottom_up = line->bottom_up;
    }
    dress->style = run_.document.styles->intern(dress->look.style);
    if (!dress->look.style.pattern.empty()) {
        dress->pattern = std::make_unique<Pattern>(dress->look.style.pattern, run_.rows.shared().surroundings);
    }
    dresses_.push_back(std::move(dress));
    return *dresses_.back();
}

void Part::set_stretch_height(int height)
{
    const bool shrinks = shrinks_ && source().remove_line_when_blank;
    stretch_height = height > height_ || shrinks ? height : height_;
}

void Part::set_prepare_height(int height)
{
    prepare_height_ = height;
    set_stretch_height(height);
}

bool Part::stretch_to(int height)
{
    if (height <= prepare_height_) return false;
    set_stretch_height(height);
    return true;
}

bool Part::begin_prepare()
{
    prints = print_when_holds_;
    reprinted = false;
    return prints;
}

bool Part::may_leave_out_repeated() const
{
    return !plan_.print_when && !source().print_repeated_values &&
           !(source().print_in_first_whole_band && band_.first_whole) &&
           !(plan_.new_group != kNoGroup && band_.new_group[static_cast<size_t>(plan_.new_group)]);
}

bool Part::prepare_fixed(int available, bool continuing)
{
    if (!begin_prepare()) return false;
    const bool when_overflows = source().print_when_detail_overflows;
    if (continuing && already_printed && !when_overflows) prints = false;
    if (prints && may_leave_out_repeated() && !(continuing && when_overflows)) prints = false;
    const bool goes_over = prints && available < relative_y + height_;
    if (goes_over) prints = false;
    reprinted = prints && continuing && when_overflows && (already_printed || !source().print_repeated_values);
    return goes_over;
}

void Part::push_dependents()
{
    for (Part* below : dependents) {
        const int distance = below->y_ - (y_ + height_) - (below->collapsed_above - collapsed_above);
        if (bottom() + distance > below->relative_y) {
            below->relative_y = bottom() + distance;
            below->push_dependents();
        }
    }
}

Element& Part::add(Emission& emission, const Style* style) const
{
    Element& element = emission.elements->emplace_back();
    element.place = {emission.x + x_, emission.y + relative_y, width_, stretch_height};
    element.style = style;
    element.source = plan_.source;
    emission.width = std::max(emission.width, x_ + width_);
    return element;
}

void Part::await(Emission& emission, Awaited awaited, std::shared_ptr<void> notes)
{
    Waiting waiting;
    waiting.resolver = this;
    waiting.path = emission.path;
    waiting.path.push_back(static_cast<uint32_t>(emission.elements->size() - 1));
    waiting.notes = std::move(notes);
    if (awaited.time == model::EvaluationTime::Band) awaited.band = emission.band;
    emission.book.await(awaited, std::move(waiting));
}

void Part::resolve(Waiting&, Element&, Moment) {}

}  // namespace velora::engine
