#include "engine/fill/pages/filler.h"

namespace velora::engine {

using model::EvaluationTime;
using model::FooterPosition;

Moment Filler::before_break(bool by_page) const
{
    return (by_page ? row_on_page_ : row_on_column_) ? Moment::Now : Moment::Old;
}

/// Breaks until there is as much room, or until no break can help.
void Filler::make_room(int wanted, Moment after)
{
    for (int tries = 0; wanted > room() && !has_all_room() && tries <= page_.column_count; ++tries) {
        column_break(before_break(across_), after);
    }
}

void Filler::grow_if_here(std::optional<Range>& range)
{
    if (range) run_.book.grow(*range, y_);
}

/// Everything that is being collected ends where the page or column ends.
void Filler::note_ends()
{
    for (auto& group : groups_) {
        if (group.keep_together && run_.book.is_here(*group.keep_together)) grow_if_here(group.keep_together);
    }
    if (footers_) run_.book.grow(footers_->range, y_);
    if (orphan_footers_) {
        grow_if_here(orphan_footers_);
    } else {
        grow_if_here(orphan_detail_);
    }
}

/// The outermost group that has to stay in one piece, or that would be left with too few details.
std::optional<size_t> Filler::group_to_move() const
{
    std::optional<size_t> level;
    for (size_t index = 0; index < groups_.size() && !level; ++index) {
        if (groups_[index].holds_together()) level = index;
    }
    if (!level && !orphan_detail_) return level;
    const int moving = std::max(level ? groups_[*level].details : 0, orphan_detail_ ? 1 : 0);
    const size_t outer = level.value_or(groups_.size());
    for (size_t index = 0; index < outer; ++index) {
        if (groups_[index].keep_together && !groups_[index].has_min_details(moving)) return index;
    }
    return level;
}

/// A column footer that floats goes up with what is taken away above it.
void Filler::float_column_footer(const Leaving& leaving)
{
    if (!floating_footer_ || !leaving.first) return;
    int top = leaving.first->top;
    if (across_ && leaving.first->column != 0) {
        if (!leaving.second) return;
        top = leaving.second->top;
    }
    run_.book.shift(*floating_footer_, top - floating_footer_->top);
}

Filler::Leaving Filler::leave()
{
    Leaving leaving;
    leaving.group = group_to_move();
    if (leaving.group) {
        leaving.first = groups_[*leaving.group].keep_together;
    } else if (orphan_detail_) {
        leaving.first = orphan_detail_;
        leaving.second = orphan_footers_;
    }
    return leaving;
}

void Filler::put(PageBook::Taken&& taken, const Range& range)
{
    const int columns = run_.column - range.column;
    run_.book.put(std::move(taken), columns * (page_.column_spacing + page_.column_width), y_ - range.top);
    y_ += range.bottom - range.top;
}

void Filler::arrive(Leaving&& leaving)
{
    fresh_y_ = y_;
    orphan_detail_.reset();
    orphan_footers_.reset();
    detail_.reset();
    if (leaving.group) {
        auto& range = groups_[*leaving.group].keep_together;
        if (range && room() < range->bottom - range->top) {
            run_.tell("group '" + groups_[*leaving.group].group.name + "' cannot be kept together; it is cut");
        }
        range.reset();
    }
    if (leaving.first) {
        put(std::move(leaving.first_elements), *leaving.first);
        if (leaving.second) put(std::move(leaving.second_elements), *leaving.second);
        run_.first_page_band = false;
        run_.first_column_band = false;
    } else if (leaving.footer_position && *leaving.footer_position != FooterPosition::Normal) {
        // a group footer goes on here; what is left of it is moved down like its beginning
        footers_ = FooterRange{run_.book.range(run_.column, y_), *leaving.footer_position, *leaving.footer_position};
    }
}

void Filler::page_break(bool reset_number, Moment before, Moment after, bool reprint)
{
    if (creating_page_) return;  // the bands at the top of a page fill it already
    note_ends();
    const auto footer_position = footers_ ? std::optional(footers_->current) : std::nullopt;
    creating_page_ = true;
    close_page_bands(before);
    end_page(before);

    Leaving leaving = leave();
    leaving.footer_position = footer_position;
    float_column_footer(leaving);
    if (leaving.second) leaving.second_elements = run_.book.take(*leaving.second);
    if (leaving.first) leaving.first_elements = run_.book.take(*leaving.first);

    add_page(reset_number);
    page_header(after);
    column_headers(after);
    if (reprint) reprint_headers(after, true);
    arrive(std::move(leaving));
    creating_page_ = false;
}

void Filler::column_break(Moment before, Moment after)
{
    if (across_ || run_.column >= page_.column_count - 1) {
        page_break(false, before, after, true);
        return;
    }
    note_ends();
    const auto footer_position = footers_ ? std::optional(footers_->current) : std::nullopt;
    column_footers(before);
    resolve_groups(before, false);
    resolve({EvaluationTime::Column, kNoGroup, nullptr}, before);
    begin_part(model::Moment::Column);

    Leaving leaving = leave();
    leaving.footer_position = footer_position;
    float_column_footer(leaving);
    if (leaving.second) leaving.second_elements = run_.book.take(*leaving.second);
    if (leaving.first) leaving.first_elements = run_.book.take(*leaving.first);

    set_column(run_.column + 1);
    set_column_x();
    y_ = column_header_y_;
    row_on_column_ = false;
    column_headers(after);
    reprint_headers(after, false);
    arrive(std::move(leaving));
}

/// The group footers collected so far go down to the column footer.
void Filler::move_footers_down()
{
    if (!footers_) return;
    if (footers_->master != FooterPosition::Normal) {
        run_.book.shift(footers_->range, column_footer_y_ - footers_->range.bottom);
    }
    footers_.reset();
}

/// The same in the middle of a page: nothing can follow them there.
void Filler::settle_footers()
{
    move_footers_down();
    y_ = column_footer_y_;
}

}  // namespace velora::engine
