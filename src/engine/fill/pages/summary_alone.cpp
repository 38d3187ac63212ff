#include "engine/fill/pages/summary.h"

namespace velora::engine {

void Summary::alone()
{
    const bool may_begin_here = !definition_.summary_new_page && in_first_column();
    if (may_begin_here && fits(space_.last_column_end())) {
        above_last_footer();
    } else if (may_begin_here && fits(space_.column_end())) {
        before_last_page();
    } else if (in_first_column() && fits_last_footer()) {
        last_page_bands();
        behind_last_page();
    } else {
        frame_.footers(Moment::Now);
        parts_.end_page(Moment::Now);
        frame_.begin_page();
        frame_.page_header(Moment::Now);
        frame_.set_last_page();
        if (definition_.summary_new_page) {
            frame_.page_footer(Moment::Now);
            behind_last_page();
        } else {
            on_last_page();
        }
    }
}

/// This is the last page, and the summary begins on it.
void Summary::above_last_footer()
{
    frame_.set_last_page();
    if (!decides()) {
        frame_.footers(Moment::Now);
        return;
    }
    const bool stays = begin_here();
    frame_.footers(Moment::Now);
    if (!stays) move_to_next_page();
    rest();
}

/// The summary fits, but the last page's footer does not fit below it: that one gets a page of its own.
void Summary::before_last_page()
{
    if (!decides()) {
        if (!fits_last_footer()) flow_.page_break(false, Moment::Now, Moment::Now, false);
        last_page_bands();
        return;
    }
    if (begin_here()) {
        flow_.page_break(false, Moment::Now, Moment::Now, false);
        frame_.set_last_page();
        if (band_.goes_over()) {
            band_.prepare(space_.room());
            placer_.place(band_, Moment::Now);
        }
        frame_.footers(Moment::Now);
    } else if (fits_last_footer()) {
        last_page_bands();
        move_to_next_page();
    } else {
        flow_.page_break(false, Moment::Now, Moment::Now, false);
        frame_.set_last_page();
        placer_.prepare_again(band_, Moment::Now, space_.room());
        placer_.place(band_, Moment::Now);
        frame_.footers(Moment::Now);
    }
    rest();
}

void Summary::behind_last_page()
{
    if (!decides()) return;
    next_page();
    begin_on_new_page();
    rest();
}

/// The page with the last footer was opened for it and for the summary.
void Summary::on_last_page()
{
    if (!decides()) {
        frame_.page_footer(Moment::Now);
        return;
    }
    prepare_here();
    const bool stays = !band_.must_move(space_.at_top());
    if (stays) placer_.place(band_, Moment::Now);
    frame_.page_footer(Moment::Now);
    if (!stays) move_to_next_page();
    rest();
}

}  // namespace velora::engine
