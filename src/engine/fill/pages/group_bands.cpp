#include "engine/fill/pages/group_bands.h"

namespace velora::engine {

using model::FooterPosition;

GroupBands::GroupBands(Run& run, Bands& bands, PageSpace& space, PageFrame& frame, Flow& flow, Keeping& keeping)
    : run_(run), bands_(bands), space_(space), frame_(frame), flow_(flow), keeping_(keeping)
{
}

void GroupBands::headers(bool all)
{
    for (size_t index = 0; index < bands_.groups.size(); ++index) {
        if (all || bands_.groups.has_changed(index)) header(index);
    }
}

void GroupBands::break_before(const Group& group)
{
    if (run_.ignore_pagination) return;
    const model::Group& source = group.source;
    const bool new_page = (source.start_new_page || source.reset_page_number) && !frame_.is_page_fresh();
    const bool new_column = source.start_new_column && !frame_.is_column_fresh();
    if (new_page || (space_.runs_across() && new_column)) {
        flow_.page_break(source.reset_page_number, flow_.before_page_break(), Moment::Now, true);
    } else if (new_column) {
        flow_.column_break(flow_.before_column_break(), Moment::Now);
    }
}

void GroupBands::begin(size_t index)
{
    bands_.new_group(index);
    bands_.groups[index].begin();
}

void GroupBands::header(size_t index)
{
    Group& group = bands_.groups[index];
    const model::Group& source = group.source;
    break_before(group);
    if (group.headers.empty()) begin(index);
    bool is_first = true;
    for (const auto& band : group.headers) {
        const bool prints = band->decide(Moment::Now);
        const int wanted = std::max(band->break_height(), is_first ? source.min_height_to_start_new_page : 0);
        if (prints) flow_.make_room(wanted);
        if (band == group.headers.front()) begin(index);
        const bool may_move =
            (source.keep_together && !frame_.is_column_fresh()) || source.min_details_to_start_from_top > 0;
        if (may_move) keeping_.begin_group(group);
        if (!prints) continue;
        header_band(group, *band);
        is_first = false;
    }
    group.header_printed = true;
}

void GroupBands::header_band(Group& group, Band& band)
{
    if (space_.runs_across()) space_.set_column(0);
    const bool was_held = group.keep_together.has_value();
    flow_.place_in_columns(band, Moment::Now);
    keeping_.grow_group(group, was_held);
    note_band();
}

/// Something of the body stands on the page; in horizontal order columns begin anew below it.
void GroupBands::note_band()
{
    run_.first_page_band = false;
    run_.first_column_band = space_.runs_across();
    if (space_.runs_across()) run_.anything_to_print = false;
}

void GroupBands::footers(bool all)
{
    Groups& groups = bands_.groups;
    if (groups.empty()) return;
    keeping_.begin_footers(all);
    for (size_t index = groups.size(); index-- > 0;) {
        keeping_.pass_group(index);
        if (!all && !groups.has_changed(index)) continue;
        footer(index, all ? Moment::Now : Moment::Old);
        groups[index].keep_together.reset();
    }
    keeping_.end_footers();
    // at the end of the report they wait for the summary, which knows whether this is the last page
    if (!all && !frame_.bottom_footers().empty()) frame_.settle_bottom_footers();
}

void GroupBands::footer(size_t index, Moment moment)
{
    Group& group = bands_.groups[index];
    for (const auto& band : group.footers) {
        if (band->decide(moment)) footer_band(index, *band, moment);
    }
    if (frame_.bottom_footers().force()) frame_.settle_bottom_footers();
    frame_.note_body();
    group.header_printed = false;
    group.footer_printed = true;
}

void GroupBands::footer_band(size_t index, Band& band, Moment moment)
{
    if (space_.runs_across()) space_.set_column(0);
    keeping_.begin_footer(index);
    if (band.break_height() > space_.room()) flow_.column_break(moment, moment);

    // a page without an end has no bottom
    const auto asked = bands_.groups[index].source.footer_position;
    const FooterPosition position = run_.ignore_pagination ? FooterPosition::Normal : asked;
    BottomFooters& bottom_footers = frame_.bottom_footers();
    bottom_footers.begin(position, space_.column(), space_.y());
    keeping_.collect_footer();
    flow_.place_in_columns(band, moment);
    bottom_footers.collect(position, space_.column(), space_.y());
    note_band();
}

}  // namespace velora::engine
