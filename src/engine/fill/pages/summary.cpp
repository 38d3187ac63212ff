#include "engine/fill/pages/summary.h"

namespace velora::engine {

Summary::Summary(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, ReportParts& parts, PageFrame& frame,
                 Flow& flow)
    : definition_(*run.plan.definition),
      bands_(bands),
      band_(bands.summary),
      space_(space),
      placer_(placer),
      parts_(parts),
      frame_(frame),
      flow_(flow)
{
}

void Summary::print()
{
    space_.go_to_left_margin();
    if (!bands_.last_page_footer.present()) {
        without_last_footer();
    } else if (definition_.summary_with_page_header_and_footer) {
        with_page_bands();
    } else {
        alone();
    }
}

// -------------------------------------------------------------------------------------------------- pieces of the way

/// Room on a page of the summary.
int Summary::room() const
{
    return space_.page_room() - (definition_.summary_with_page_header_and_footer ? bands_.page_footer.height() : 0);
}

void Summary::next_page(bool is_last)
{
    parts_.end_page(Moment::Now, is_last);
    frame_.begin_page();
    if (definition_.summary_with_page_header_and_footer) frame_.page_header(Moment::Now);
}

void Summary::last_page_bands()
{
    frame_.set_last_page();
    frame_.footers(Moment::Now);
}

void Summary::prepare_here()
{
    band_.evaluate(Moment::Now);
    band_.prepare(space_.room());
}

/// Prints as much of the summary as fits below the last row. @return false when it must move to a page of its own
bool Summary::begin_here()
{
    if (!frame_.bottom_footers().empty()) frame_.settle_bottom_footers();
    prepare_here();
    if (band_.must_move(space_.at_top())) return false;
    placer_.place(band_, Moment::Now);
    return true;
}

void Summary::move_to_next_page()
{
    next_page();
    placer_.prepare_again(band_, Moment::Now, room());
    placer_.place(band_, Moment::Now);
}

/// The summary begins on the page that has just been opened for it.
void Summary::begin_on_new_page()
{
    band_.evaluate(Moment::Now);
    band_.prepare(room());
    if (band_.must_move(space_.at_top())) {
        if (definition_.summary_with_page_header_and_footer) frame_.page_footer(Moment::Now);
        next_page();
        placer_.prepare_again(band_, Moment::Now, room());
    }
    placer_.cut_if_hopeless(band_, true);
    placer_.place(band_, Moment::Now);
}

/// What goes over of the summary, and the footer of the last page.
void Summary::rest()
{
    const bool has_page_bands = definition_.summary_with_page_header_and_footer;
    const auto go_on = [&] {
        if (has_page_bands) frame_.page_footer(Moment::Now);
        next_page();
    };
    placer_.place_rest(band_, Moment::Now, true, {go_on, [&] { return room(); }, [] { return true; }, 1});
    parts_.end_band(band_, Moment::Now);
    if (!has_page_bands) return;
    if (space_.y() > space_.page_bottom() - bands_.last_page_footer.height()) go_on();
    if (bands_.last_page_footer.present()) frame_.set_last_page();
    frame_.page_footer(Moment::Now);
}

// ------------------------------------------------------------------------------------------------ the ways it can go

void Summary::without_last_footer()
{
    if (definition_.summary_new_page || !in_first_column() || !fits(space_.column_end())) {
        frame_.footers(Moment::Now);
        if (!decides()) return;
        next_page();
        begin_on_new_page();
        rest();
        return;
    }
    if (!decides()) {
        frame_.footers(Moment::Now);
        return;
    }
    const bool stays = begin_here();
    frame_.footers(Moment::Now);
    if (!stays) {
        move_to_next_page();
        rest();
    } else if (band_.goes_over()) {
        next_page();
        band_.prepare(room());
        placer_.place(band_, Moment::Now);
        rest();
    } else {
        parts_.end_band(band_, Moment::Now);
    }
}

/// The last page has a footer of its own, and the summary's pages have the page bands.
void Summary::with_page_bands()
{
    const bool begins_here = !definition_.summary_new_page && in_first_column() && fits(space_.column_end());
    const bool prints = decides();
    if (begins_here && prints) {
        if (begin_here()) {
            if (!band_.goes_over() && fits_last_footer()) frame_.set_last_page();
            frame_.column_footers(Moment::Now);
        } else {
            frame_.footers(Moment::Now);
            move_to_next_page();
        }
        rest();
    } else if (begins_here) {
        if (!fits_last_footer()) flow_.page_break(false, Moment::Now, Moment::Now, false);
        last_page_bands();
    } else if (in_first_column() && fits_last_footer()) {
        if (!prints) {
            last_page_bands();
            return;
        }
        frame_.footers(Moment::Now);
        next_page();
        begin_on_new_page();
        rest();
    } else {
        frame_.footers(Moment::Now);
        next_page(false);
        if (decides()) begin_on_new_page();
        rest();
    }
}

}  // namespace velora::engine
