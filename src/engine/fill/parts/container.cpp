#include "engine/fill/parts/container.h"

#include <algorithm>

namespace velora::engine {

using model::PositionType;
using model::StretchType;

Container::Container(Run& run, const ContainerPlan& plan, const BandState& band) : run_(run), plan_(plan)
{
    for (const auto& part : plan.parts) {
        parts_.push_back(make_part(run, part, band));
    }
    group_growth_.resize(plan.stretch_groups.size());
    arrange();
    link_dependents();
}

void Container::arrange()
{
    for (const auto& part : parts_) {
        by_y_.push_back(part.get());
        lowest_design_bottom_ = std::max(lowest_design_bottom_, part->y() + part->height());
    }
    std::stable_sort(by_y_.begin(), by_y_.end(), [](const Part* a, const Part* b) { return a->y() < b->y(); });
    for (Part* part : by_y_) {
        const model::Element& source = part->source();
        if (source.position == PositionType::FixRelativeToBottom) at_bottom_.push_back(part);
        if (source.stretch != StretchType::NoStretch) stretching_.push_back(part);
        if (source.remove_line_when_blank) removable_.push_back(part);
        prints_when_overflowing_ |= source.print_when_detail_overflows;
    }
}

void Container::link_dependents()
{
    const auto breaks = [](const Part& part) { return part.plan().kind == PartPlan::Kind::Break; };
    const bool has_break = std::ranges::any_of(by_y_, [&](const Part* part) { return breaks(*part); });
    std::vector<size_t> movable;  // places in by_y_
    for (size_t at = 0; at < by_y_.size(); ++at) {
        const PositionType position = by_y_[at]->source().position;
        if (position == PositionType::Float || (has_break && position == PositionType::FixRelativeToTop)) {
            movable.push_back(at);
        }
    }
    for (size_t i = 0; i < by_y_.size(); ++i) {
        Part& above = *by_y_[i];
        auto at = std::ranges::upper_bound(movable, i);
        at = std::partition_point(at, movable.end(),
                                  [&](size_t j) { return by_y_[j]->y() < above.y() + above.height(); });
        for (; at != movable.end(); ++at) {
            Part& below = *by_y_[*at];
            const bool moves = below.source().position == PositionType::Float || breaks(above);
            const int left = std::min(above.x(), below.x());
            const int right = std::max(above.x() + above.width(), below.x() + below.width());
            const bool share_columns = above.width() + below.width() > right - left;
            if (moves && share_columns) above.dependents.push_back(&below);
        }
    }
}

void Container::evaluate(Moment moment)
{
    for (const auto& part : parts_) {
        part->evaluate(moment);
    }
}

void Container::rewind()
{
    for (const auto& part : parts_) {
        part->rewind();
        part->already_printed = false;
    }
    goes_over_with_parts_ = false;
    goes_over_with_space_ = false;
}

bool Container::repeats() const
{
    return std::all_of(parts_.begin(), parts_.end(), [](const auto& part) { return part->repeats(); });
}

void Container::begin()
{
    continuing_ = goes_over();
    first_y_ = 0;
    for (const auto& part : parts_) {
        part->reset();
        if (!continuing_) part->already_printed = false;
    }
    std::fill(group_growth_.begin(), group_growth_.end(), std::nullopt);
}

int Container::room_shift(const Part& part) const
{
    if (!continuing_ || prints_when_overflowing_) return 0;
    return std::min(part.y(), first_y_);
}

void Container::prepare(int available, bool overflow_allowed)
{
    parts_over_ = false;
    space_over_ = false;
    overflow_allowed_ = overflow_allowed;
    prepare_parts(available);
    stretch_height_ = height();
    measure(available);
    move_to_bottom();
    close_blank_lines();
    if (!stretching_.empty()) stretch_to_groups();
    measure(available);
    move_to_bottom();
    stretch_to_container();
}

void Container::prepare_parts(int available)
{
    first_y_ = continuing_ ? full_height() : 0;
    bool found_first = false;
    for (Part* part : by_y_) {
        if (part->prepare(available + room_shift(*part), continuing_)) parts_over_ = true;
        part->push_dependents();
        if (!part->prints) continue;
        if (continuing_) {
            if (part->reprinted) {
                first_y_ = 0;
            } else if (!found_first) {
                first_y_ = part->y();
            }
            found_first = true;
        }
        run_.anything_to_print = true;
    }
}

void Container::measure(int available)
{
    const int needed = needed_height();
    if (needed > available + first_y_) space_over_ = true;
    stretch_height_ = parts_over_ || space_over_ ? available + first_y_ : needed;
    goes_over_with_parts_ = parts_over_ && overflow_allowed_;
    goes_over_with_space_ = space_over_ && overflow_allowed_;
}

int Container::needed_height() const
{
    int needed = -1;
    const int design = height();
    for (const Part* part : by_y_) {
        if (!part->prints) continue;
        const int below = design - (part->y() + part->height()) - part->collapsed_below;
        needed = std::max(needed, part->bottom() + std::max(0, below));
    }
    return needed < 0 ? stretch_height_ : needed;
}

void Container::move_to_bottom()
{
    for (Part* part : at_bottom_) {
        if (part->prints) {
            // what stands at the bottom is printed where the band ends, not where it goes over
            if (parts_over_ || space_over_) parts_over_ = true;
            part->prints = !((parts_over_ || goes_over_with_space_) && overflow_allowed_);
        }
        if (part->prints) part->relative_y = part->y() + stretch_height_ - full_height();
    }
}

bool Container::is_free(const Part& of, int top, int height) const
{
    return std::none_of(by_y_.begin(), by_y_.end(), [&](const Part* other) {
        if (other == &of || !other->prints) return false;
        const int from = std::min(top, other->relative_y);
        const int to = std::max(top + height, other->bottom());
        return height + other->stretch_height > to - from;
    });
}

void Container::close_blank_lines()
{
    for (Part* part : removable_) {
        const int blank = part->prints ? part->height() - part->stretch_height : part->height();
        if (blank <= 0 || part->bottom() > stretch_height_ || part->relative_y < first_y_) continue;
        const int top = part->relative_y + part->height() - blank;
        if (!is_free(*part, top, blank)) continue;
        for (Part* other : by_y_) {
            if (other->bottom() <= top) other->collapsed_below += blank;
            if (other->relative_y >= top + blank) {
                other->collapsed_above += blank;
                other->relative_y -= blank;
            }
        }
        stretch_height_ -= blank;
    }
}

int Container::group_growth(size_t group)
{
    if (group_growth_[group]) return *group_growth_[group];
    const Part* top = nullptr;
    const Part* bottom = nullptr;
    const Part* design_top = nullptr;
    const Part* design_bottom = nullptr;
    const auto design_end = [](const Part* part) { return part->y() + part->height(); };
    for (const size_t member : plan_.stretch_groups[group]) {
        const Part* part = parts_[member].get();
        if (!design_top || design_end(part) < design_end(design_top)) design_top = part;
        if (!design_bottom || design_end(part) > design_end(design_bottom)) design_bottom = part;
        if (!part->prints) continue;
        if (!top || part->bottom() < top->bottom()) top = part;
        if (!bottom || part->bottom() > bottom->bottom()) bottom = part;
    }
    int growth = 0;
    if (top) {
        growth = bottom->bottom() - top->relative_y - (design_end(design_bottom) - design_top->y());
    }
    group_growth_[group] = std::max(0, growth);
    return *group_growth_[group];
}

void Container::stretch_to_groups()
{
    for (Part* part : stretching_) {
        const StretchType stretch = part->source().stretch;
        const bool to_bottom = stretch == StretchType::ElementGroupBottom;
        if (!part->prints || (!to_bottom && stretch != StretchType::ElementGroupHeight)) continue;
        const int grown = part->height() + group_growth(part->plan().stretch_group);
        if (part->stretch_to(to_bottom ? grown + part->y() - part->relative_y : grown)) part->push_dependents();
    }
}

void Container::stretch_to_container()
{
    for (Part* part : stretching_) {
        const StretchType stretch = part->source().stretch;
        const bool to_bottom = stretch == StretchType::ContainerBottom;
        if (!part->prints || (!to_bottom && stretch != StretchType::ContainerHeight)) continue;
        const int grown = part->height() + stretch_height_ - height();
        if (part->stretch_to(to_bottom ? grown + part->y() - part->relative_y : grown)) part->push_dependents();
    }
}

void Container::prepare_nothing()
{
    for (const auto& part : parts_) {
        part->prints = false;
    }
    first_y_ = 0;
    stretch_height_ = 0;
}

bool Container::will_print() const
{
    return std::any_of(parts_.begin(), parts_.end(),
                       [&](const auto& part) { return part->prints && part->bottom() <= stretch_height_; });
}

int Container::emit(Emission& emission)
{
    const int used = stretch_height_ - first_y_;
    for (const auto& part : parts_) {
        part->relative_y -= first_y_;
        if (part->bottom() > used) part->prints = false;
        if (!part->prints) continue;
        if (!part->already_printed) ++run_.progress;
        part->already_printed = true;
        part->emit(emission);
    }
    return used;
}

}  // namespace velora::engine
