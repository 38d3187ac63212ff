#include "engine/fill/pages/filler.h"

namespace velora::engine {

using model::FooterPosition;

void Filler::group_headers(bool all)
{
    for (size_t index = 0; index < groups_.size(); ++index) {
        if (all || changed_[index]) group_header(index);
    }
}

void Filler::group_header(size_t index)
{
    GroupState& group = groups_[index];
    const model::Group& source = group.group;
    const bool paged = !run_.ignore_pagination;
    const bool new_page = paged && (source.start_new_page || source.reset_page_number) && !new_page_;
    const bool new_column = paged && source.start_new_column && !new_column_;
    if (new_page || (across_ && new_column)) {
        page_break(source.reset_page_number, before_break(true), Moment::Now, true);
    } else if (new_column) {
        column_break(before_break(false), Moment::Now);
    }

    if (group.headers.empty()) begin_group(index);
    bool first = true;
    for (size_t number = 0; number < group.headers.size(); ++number) {
        Band& band = *group.headers[number];
        const bool prints = band.decide(Moment::Now);
        const int wanted = std::max(band.break_height(), first ? source.min_height_to_start_new_page : 0);
        if (prints) make_room(wanted, Moment::Now);
        if (number == 0) begin_group(index);
        const bool may_move = (source.keep_together && !new_column_) || source.min_details_to_start_from_top > 0;
        if (may_move && !group.keep_together) group.keep_together = run_.book.range(run_.column, y_);
        if (!prints) continue;
        group_header_band(group, band);
        first = false;
    }
    group.header_printed = true;
}

void Filler::begin_group(size_t index)
{
    mark_new_group(index);
    groups_[index].footer_printed = false;
    groups_[index].details = 0;
}

void Filler::group_header_band(GroupState& group, Band& band)
{
    if (across_) set_column(0);
    const std::optional<Range> before = group.keep_together;
    place_in_column(band, Moment::Now);
    auto& range = group.keep_together;
    // a break on the way has moved the range, or left it behind
    if (range && before && run_.book.is_here(*range) && range->column == run_.column) grow_if_here(range);
    run_.first_page_band = false;
    run_.first_column_band = across_;
    if (across_) run_.anything_to_print = false;
}

/// Only the groups around one that is about to be moved print their headers again.
void Filler::reprint_headers(Moment moment, bool new_page)
{
    if (reprinting_) return;
    reprinting_ = true;
    for (size_t index = 0; index < groups_.size() && !groups_[index].holds_together(); ++index) {
        GroupState& group = groups_[index];
        const bool asked = (!across_ && group.group.reprint_header_on_each_column) ||
                           (new_page && group.group.reprint_header_on_each_page);
        if (asked && (!changed_[index] || group.header_printed)) reprint_header(group, moment);
    }
    reprinting_ = false;
}

void Filler::reprint_header(GroupState& group, Moment moment)
{
    for (const auto& band : group.headers) {
        if (!band->decide(moment)) continue;
        if (across_) set_column(0);
        for (int tries = 0; band->break_height() > room() && tries <= page_.column_count; ++tries) {
            column_break(moment, moment);
        }
        place_in_column(*band, moment);
        if (across_) {
            run_.first_column_band = true;
        } else if (page_.column_count > 1) {
            run_.first_column_band = false;
        }
        run_.anything_to_print = false;
    }
}

void Filler::group_footers(bool all)
{
    if (groups_.empty()) return;
    const Moment moment = all ? Moment::Now : Moment::Old;
    orphan_level_.reset();
    for (size_t index = groups_.size(); index-- > 0 && !orphan_level_;) {
        if ((all || changed_[index]) && groups_[index].group.prevent_orphan_footer) orphan_level_ = index;
    }
    for (size_t index = groups_.size(); index-- > 0;) {
        if (orphan_level_ && index < *orphan_level_) {
            orphan_detail_.reset();
            orphan_footers_.reset();
            if (!across_) detail_.reset();
        }
        if (!all && !changed_[index]) continue;
        group_footer(index, moment);
        groups_[index].keep_together.reset();
    }
    orphan_detail_.reset();
    orphan_footers_.reset();
    detail_.reset();
    // at the end of the report they wait for the summary, which knows whether this is the last page
    if (!all && footers_) settle_footers();
}

void Filler::group_footer(size_t index, Moment moment)
{
    GroupState& group = groups_[index];
    footer_level_ = index;
    for (const auto& band : group.footers) {
        if (band->decide(moment)) group_footer_band(group, index, *band, moment);
    }
    if (footers_ && footers_->master == FooterPosition::ForceAtBottom) settle_footers();
    new_page_ = false;
    new_column_ = false;
    group.header_printed = false;
    group.footer_printed = true;
}

void Filler::group_footer_band(GroupState& group, size_t index, Band& band, Moment moment)
{
    if (across_) set_column(0);
    if (orphan_level_ && index >= *orphan_level_ && !orphan_detail_ && detail_ && run_.book.is_here(*detail_)) {
        orphan_detail_ = detail_;
    }
    if (band.break_height() > room()) column_break(moment, moment);

    // a page without an end has no bottom
    const FooterPosition position = run_.ignore_pagination ? FooterPosition::Normal : group.group.footer_position;
    if (!footers_ && position != FooterPosition::Normal) {
        footers_ = FooterRange{run_.book.range(run_.column, y_), position, position};
    }
    if (footers_) footers_->current = position;
    if (orphan_detail_) {
        if (!orphan_footers_) {
            orphan_footers_ = run_.book.range(run_.column, y_);
        } else if (run_.book.is_here(*orphan_footers_) && orphan_footers_->column == run_.column) {
            grow_if_here(orphan_footers_);
        }
    }
    place_in_column(band, moment);
    collect_footer(group);
    run_.first_page_band = false;
    run_.first_column_band = across_;
    if (across_) run_.anything_to_print = false;
}

void Filler::collect_footer(const GroupState& group)
{
    if (!footers_) return;
    if (run_.book.is_here(footers_->range) && footers_->range.column == run_.column) {
        run_.book.grow(footers_->range, y_);
    }
    switch (group.group.footer_position) {
        case FooterPosition::StackAtBottom:
        case FooterPosition::ForceAtBottom:
            footers_->master = group.group.footer_position;
            break;
        case FooterPosition::CollateAtBottom:
            break;
        case FooterPosition::Normal:
            if (footers_->master == FooterPosition::CollateAtBottom) footers_.reset();
            break;
    }
}

}  // namespace velora::engine
