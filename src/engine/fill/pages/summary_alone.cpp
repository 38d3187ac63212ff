#include "engine/fill/pages/filler.h"

/// The last page has a footer of its own; pages that only the summary is on have no page bands.
namespace velora::engine {

void Filler::summary_alone()
{
    const bool here = !definition_.summary_new_page && (across_ || run_.column == 0);
    if (here && summary_.break_height() <= last_column_footer_y_ - y_) {
        summary_above_last_footer();
    } else if (here && summary_.break_height() <= room()) {
        summary_before_last_page();
    } else if ((across_ || run_.column == 0) && y_ <= last_column_footer_y_) {
        last_page_bands();
        summary_behind_last_page();
    } else {
        close_page_bands(Moment::Now);
        end_page(Moment::Now);
        add_page(false);
        page_header(Moment::Now);
        set_last_page();
        if (definition_.summary_new_page) {
            page_footer(Moment::Now);
            summary_behind_last_page();
        } else {
            summary_on_last_page();
        }
    }
}

/// This is the last page, and the summary begins on it.
void Filler::summary_above_last_footer()
{
    set_last_page();
    if (!summary_.decide(Moment::Now)) {
        close_page_bands(Moment::Now);
        return;
    }
    const bool stays = begin_summary();
    if (stays) place(summary_, x_, Moment::Now);
    close_page_bands(Moment::Now);
    if (!stays) {
        next_summary_page();
        prepare_again(summary_, Moment::Now, summary_room());
        place(summary_, x_, Moment::Now);
    }
    rest_of_summary();
}

/// The summary fits, but the last page's footer does not fit below it: that one gets a page of its own.
void Filler::summary_before_last_page()
{
    if (!summary_.decide(Moment::Now)) {
        if (y_ > last_column_footer_y_) page_break(false, Moment::Now, Moment::Now, false);
        last_page_bands();
        return;
    }
    const bool stays = begin_summary();
    if (stays) {
        place(summary_, x_, Moment::Now);
        page_break(false, Moment::Now, Moment::Now, false);
        set_last_page();
        if (summary_.goes_over()) {
            summary_.prepare(room());
            place(summary_, x_, Moment::Now);
        }
        close_page_bands(Moment::Now);
    } else if (y_ <= last_column_footer_y_) {
        last_page_bands();
        next_summary_page();
        prepare_again(summary_, Moment::Now, summary_room());
        place(summary_, x_, Moment::Now);
    } else {
        page_break(false, Moment::Now, Moment::Now, false);
        set_last_page();
        prepare_again(summary_, Moment::Now, room());
        place(summary_, x_, Moment::Now);
        close_page_bands(Moment::Now);
    }
    rest_of_summary();
}

void Filler::summary_behind_last_page()
{
    if (!summary_.decide(Moment::Now)) return;
    next_summary_page();
    summary_on_new_page();
    rest_of_summary();
}

/// The page with the last footer was opened for it and for the summary.
void Filler::summary_on_last_page()
{
    if (!summary_.decide(Moment::Now)) {
        page_footer(Moment::Now);
        return;
    }
    summary_.evaluate(Moment::Now);
    summary_.prepare(room());
    const bool stays = !summary_.must_move(at_top());
    if (stays) place(summary_, x_, Moment::Now);
    page_footer(Moment::Now);
    if (!stays) {
        next_summary_page();
        prepare_again(summary_, Moment::Now, summary_room());
        place(summary_, x_, Moment::Now);
    }
    rest_of_summary();
}

}  // namespace velora::engine
