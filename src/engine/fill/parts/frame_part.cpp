#include "engine/fill/parts/frame_part.h"

namespace velora::engine {

FramePart::FramePart(Run& run, const PartPlan& plan, const BandState& band)
    : Part(run, plan, band), inside_(run, *plan.children, band, *this)
{
    shrinks_ = true;
}

int FramePart::padding() const
{
    if (!dress_) return 0;
    return dress_->look.style.box.top_padding + dress_->look.style.box.bottom_padding;
}

int FramePart::Inside::full_height() const
{
    const int top = frame_.dress_ ? frame_.dress_->look.style.box.top_padding : 0;
    return top + lowest_design_bottom() > frame_.height() ? lowest_design_bottom() : height();
}

void FramePart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
    if (print_when_holds_) {
        dress_ = &dress(moment);
        inside_.evaluate(moment);
        repeats_ = inside_.repeats();
    }
    filling_ = false;
}

void FramePart::rewind()
{
    inside_.rewind();
    filling_ = false;
}

bool FramePart::is_left_out(bool continuing) const
{
    const bool when_overflows = continuing && source().print_when_detail_overflows;
    const bool repeated = !source().print_repeated_values && repeats_ &&
                          !(source().print_in_first_whole_band && band_.first_whole) &&
                          !(plan_.new_group != kNoGroup && band_.new_group[static_cast<size_t>(plan_.new_group)]);
    return !filling_ && !when_overflows && (repeated || (continuing && already_printed));
}

bool FramePart::prepare(int available, bool continuing)
{
    if (!begin_prepare()) return false;
    const bool first = !continuing || !filling_;
    if (is_left_out(continuing)) {
        prints = false;
        return false;
    }
    if (available < relative_y + height_ - padding()) {
        prints = false;
        return true;
    }
    if (!filling_ && continuing && already_printed) {
        rewind();
        reprinted = true;
    }
    inside_.begin();
    inside_.prepare(available - relative_y - padding(), run_.overflow_allowed);

    const bool goes_over = inside_.goes_over();
    const bool split_borders = std::get<model::Frame>(source().body).border_splits;
    top_border_ = first || split_borders;
    bottom_border_ = !goes_over || split_borders;
    const int room = available - relative_y;
    set_prepare_height(goes_over ? room : std::min(room, inside_.stretch_height() - inside_.first_y() + padding()));
    filling_ = goes_over;
    return goes_over;
}

void FramePart::set_stretch_height(int height)
{
    Part::set_stretch_height(height);
    inside_.set_stretch_height(height + inside_.first_y() - padding());
}

bool FramePart::stretch_to(int height)
{
    if (!Part::stretch_to(height)) return false;
    inside_.stretch_to_container();
    inside_.move_to_bottom();
    return true;
}

const Style* FramePart::style_of_part()
{
    if (top_border_ && bottom_border_) return dress_->style;
    Style style = *dress_->style;
    if (!top_border_) style.box.top = {};
    if (!bottom_border_) style.box.bottom = {};
    return run_.document.styles->intern(style);
}

void FramePart::emit(Emission& emission)
{
    add(emission, style_of_part()).content = Frame{};
    const auto index = static_cast<uint32_t>(emission.elements->size() - 1);
    std::vector<Element> children;

    Emission within{emission.book, &children, 0, 0, emission.path, 0, emission.band};
    within.path.push_back(index);
    inside_.emit(within);

    Element& frame = (*emission.elements)[index];
    const Box& box = frame.style->box;
    frame.place.width = std::max(width_, within.width + box.left_padding + box.right_padding);
    emission.width = std::max(emission.width, x_ + frame.place.width);
    std::get<Frame>(frame.content).children = std::move(children);
}

}  // namespace velora::engine
