#include "engine/fill/pages/flow.h"

namespace velora::engine {

Flow::Flow(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, ReportParts& parts, PageFrame& frame,
           Keeping& keeping)
    : run_(run), bands_(bands), space_(space), placer_(placer), parts_(parts), frame_(frame), keeping_(keeping)
{
}

// ------------------------------------------------------------------------------------------------ bands that go over

void Flow::place_on_pages(Band& band)
{
    if (!band.decide(Moment::Now)) return;
    const auto next_page = [&] {
        parts_.end_page(Moment::Now);
        frame_.begin_page();
    };
    const auto room = [&] { return space_.page_room(); };
    const auto is_page_empty = [&] { return space_.y() <= space_.page_top(); };
    if (band.break_height() > room() && !is_page_empty()) frame_.begin_page();
    band.evaluate(Moment::Now);
    band.prepare(room());
    if (band.must_move(space_.at_top())) {
        next_page();
        placer_.prepare_again(band, Moment::Now, room());
    }
    placer_.cut_if_hopeless(band, is_page_empty());
    const bool has_progress = placer_.place(band, Moment::Now);
    placer_.place_rest(band, Moment::Now, has_progress, {next_page, room, is_page_empty, 1});
    parts_.end_band(band, Moment::Now);
}

void Flow::place_in_columns(Band& band, Moment moment, bool recalculate)
{
    const auto next_column = [&] { column_break(moment == Moment::Now ? before_break() : moment, moment); };
    band.evaluate(moment);
    band.prepare(space_.room());
    if (band.goes_over() && (band.must_move(space_.at_top()) || keeping_.holds_anything())) {
        next_column();
        if (recalculate) run_.rows.recalculate();
        placer_.prepare_again(band, moment, space_.room());
    }
    placer_.cut_if_hopeless(band, space_.has_all_room());
    const bool has_progress = placer_.place(band, moment);
    if (band.goes_over()) {
        const auto go_on = [&] {
            if (band.goes_over_with_parts()) next_column();  // room below the elements alone is not carried over
        };
        placer_.place_rest(
            band, moment, has_progress,
            {go_on, [&] { return space_.room(); }, [&] { return space_.has_all_room(); }, space_.column_count()});
    }
    parts_.end_band(band, moment);
}

// ------------------------------------------------------------------------------------------------------------ breaks

Moment Flow::before_break() const
{
    return space_.runs_across() ? before_page_break() : before_column_break();
}

void Flow::make_room(int wanted)
{
    for (int tries = 0; wanted > space_.room() && !space_.has_all_room() && tries <= space_.column_count(); ++tries) {
        column_break(before_break(), Moment::Now);
    }
}

Flow::Leaving Flow::note_end()
{
    keeping_.note_end();
    frame_.bottom_footers().grow(space_.y());
    return {{}, frame_.bottom_footers().current()};
}

void Flow::leave(Leaving& leaving)
{
    leaving.kept = keeping_.leaving();
    if (const auto top = leaving.kept.top(space_.runs_across())) frame_.lift_column_footer(*top);
    keeping_.take(leaving.kept);
}

void Flow::arrive(Leaving&& leaving)
{
    space_.mark_body_top();
    if (keeping_.arrive(std::move(leaving.kept)) || !leaving.footer_position) return;
    frame_.bottom_footers().go_on(*leaving.footer_position, space_.column(), space_.y());
}

void Flow::page_break(bool reset_number, Moment before, Moment after, bool reprint)
{
    if (is_breaking_page_) return;  // the bands at the top of a page fill it already
    Leaving leaving = note_end();
    is_breaking_page_ = true;
    frame_.footers(before);
    parts_.end_page(before);
    leave(leaving);
    frame_.begin_page(reset_number);
    frame_.page_header(after, false);
    frame_.column_headers(after, false);
    if (reprint) reprint_headers(after, true);
    arrive(std::move(leaving));
    is_breaking_page_ = false;
}

void Flow::column_break(Moment before, Moment after)
{
    if (space_.runs_across() || space_.is_last_column()) {
        page_break(false, before, after, true);
        return;
    }
    Leaving leaving = note_end();
    frame_.column_footers(before);
    parts_.end_column(before);
    leave(leaving);
    frame_.begin_next_column();
    frame_.column_headers(after, !is_breaking_page_);
    reprint_headers(after, false);
    arrive(std::move(leaving));
}

// --------------------------------------------------------------------------------------------- group headers once more

/// Only the groups around one that is about to be moved print their headers again.
void Flow::reprint_headers(Moment moment, bool is_new_page)
{
    if (is_reprinting_) return;
    is_reprinting_ = true;
    Groups& groups = bands_.groups;
    for (size_t index = 0; index < groups.size() && !groups[index].holds_together(); ++index) {
        Group& group = groups[index];
        const bool is_asked = (!space_.runs_across() && group.source.reprint_header_on_each_column) ||
                              (is_new_page && group.source.reprint_header_on_each_page);
        if (is_asked && (!groups.has_changed(index) || group.header_printed)) reprint_header(group, moment);
    }
    is_reprinting_ = false;
}

void Flow::reprint_header(Group& group, Moment moment)
{
    for (const auto& band : group.headers) {
        if (!band->decide(moment)) continue;
        if (space_.runs_across()) space_.set_column(0);
        for (int tries = 0; band->break_height() > space_.room() && tries <= space_.column_count(); ++tries) {
            column_break(moment, moment);
        }
        place_in_columns(*band, moment);
        if (space_.runs_across()) {
            run_.first_column_band = true;
        } else if (space_.column_count() > 1) {
            run_.first_column_band = false;
        }
        run_.anything_to_print = false;
    }
}

}  // namespace velora::engine
