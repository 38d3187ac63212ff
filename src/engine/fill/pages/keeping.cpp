#include "engine/fill/pages/keeping.h"

namespace velora::engine {

std::optional<int> Keeping::Leaving::top(bool runs_across) const
{
    if (!first) return std::nullopt;
    if (!runs_across || first->column == 0) return first->top;
    return second ? std::optional(second->top) : std::nullopt;
}

bool Keeping::is_here(const Range& range) const
{
    return book_.is_here(range) && range.column == space_.column();
}

void Keeping::grow(std::optional<Range>& range)
{
    if (range) book_.grow(*range, space_.y());
}

// ----------------------------------------------------------------------------------------------- where a page ends

void Keeping::note_end()
{
    for (Group& group : groups_) {
        if (group.keep_together && book_.is_here(*group.keep_together)) grow(group.keep_together);
    }
    grow(orphan_footers_ ? orphan_footers_ : orphan_details_);
}

/// The outermost group that has to stay in one piece, or that would be left with too few details.
std::optional<size_t> Keeping::group_to_move() const
{
    std::optional<size_t> level;
    for (size_t index = 0; index < groups_.size() && !level; ++index) {
        if (groups_[index].holds_together()) level = index;
    }
    if (!level && !orphan_details_) return level;
    const int moving = std::max(level ? groups_[*level].details : 0, orphan_details_ ? 1 : 0);
    const size_t outer = level.value_or(groups_.size());
    for (size_t index = 0; index < outer; ++index) {
        if (groups_[index].keep_together && !groups_[index].has_min_details(moving)) return index;
    }
    return level;
}

Keeping::Leaving Keeping::leaving() const
{
    Leaving leaving;
    leaving.group = group_to_move();
    if (leaving.group) {
        leaving.first = groups_[*leaving.group].keep_together;
    } else if (orphan_details_) {
        leaving.first = orphan_details_;
        leaving.second = orphan_footers_;
    }
    return leaving;
}

void Keeping::take(Leaving& leaving)
{
    if (leaving.second) leaving.second_elements = book_.take(*leaving.second);
    if (leaving.first) leaving.first_elements = book_.take(*leaving.first);
}

void Keeping::put(PageBook::Taken&& taken, const Range& range)
{
    const int columns = space_.column() - range.column;
    book_.put(std::move(taken), columns * space_.column_step(), space_.y() - range.top);
    space_.move_by(range.bottom - range.top);
}

bool Keeping::arrive(Leaving&& leaving)
{
    end_footers();
    if (leaving.group) {
        Group& group = groups_[*leaving.group];
        const auto& range = group.keep_together;
        if (range && space_.room() < range->bottom - range->top) {
            run_.tell("group '" + group.source.name + "' cannot be kept together; it is cut");
        }
        group.keep_together.reset();
    }
    if (!leaving.first) return false;
    put(std::move(leaving.first_elements), *leaving.first);
    if (leaving.second) put(std::move(leaving.second_elements), *leaving.second);
    run_.first_page_band = false;
    run_.first_column_band = false;
    return true;
}

// ------------------------------------------------------------------------------------------ headers and details

void Keeping::begin_group(Group& group)
{
    if (!group.keep_together) group.keep_together = range_here();
}

void Keeping::grow_group(Group& group, bool was_held)
{
    // a break on the way has moved the range, or left it behind
    if (was_held && group.keep_together && is_here(*group.keep_together)) grow(group.keep_together);
}

void Keeping::begin_details()
{
    details_ = range_here();
}

void Keeping::grow_details()
{
    if (details_ && is_here(*details_)) grow(details_);
}

// ------------------------------------------------------------------------------------------------------ footers

void Keeping::begin_footers(bool all)
{
    orphan_level_.reset();
    for (size_t index = groups_.size(); index-- > 0 && !orphan_level_;) {
        if ((all || groups_.has_changed(index)) && groups_[index].source.prevent_orphan_footer) orphan_level_ = index;
    }
}

void Keeping::pass_group(size_t group)
{
    if (!orphan_level_ || group >= *orphan_level_) return;
    orphan_details_.reset();
    orphan_footers_.reset();
    if (!space_.runs_across()) details_.reset();
}

void Keeping::begin_footer(size_t group)
{
    const bool is_kept = orphan_level_ && group >= *orphan_level_;
    if (is_kept && !orphan_details_ && details_ && book_.is_here(*details_)) orphan_details_ = details_;
}

void Keeping::collect_footer()
{
    if (!orphan_details_) return;
    if (!orphan_footers_) {
        orphan_footers_ = range_here();
    } else if (is_here(*orphan_footers_)) {
        grow(orphan_footers_);
    }
}

void Keeping::end_footers()
{
    orphan_details_.reset();
    orphan_footers_.reset();
    details_.reset();
}

}  // namespace velora::engine
