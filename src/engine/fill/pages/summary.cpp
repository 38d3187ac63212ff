#include "engine/fill/pages/filler.h"

namespace velora::engine {

void Filler::summary()
{
    x_ = page_.left;
    if (!last_page_footer_.present()) {
        summary_without_last_footer();
    } else if (definition_.summary_with_page_header_and_footer) {
        summary_with_page_bands();
    } else {
        summary_alone();
    }
}

int Filler::summary_room() const
{
    return page_room() - (definition_.summary_with_page_header_and_footer ? page_footer_.height() : 0);
}

void Filler::next_summary_page(bool final)
{
    end_page(Moment::Now, final);
    add_page(false);
    if (definition_.summary_with_page_header_and_footer) page_header(Moment::Now);
}

void Filler::last_page_bands()
{
    set_last_page();
    close_page_bands(Moment::Now);
}

/// @return whether the summary is to stay here, as far as it fits; false when it must move to a page of its own
bool Filler::begin_summary()
{
    if (footers_) settle_footers();
    summary_.evaluate(Moment::Now);
    summary_.prepare(room());
    return !summary_.must_move(at_top());
}

/// The summary begins on the page that has just been opened for it.
void Filler::summary_on_new_page()
{
    summary_.evaluate(Moment::Now);
    summary_.prepare(summary_room());
    if (summary_.must_move(at_top())) {
        if (definition_.summary_with_page_header_and_footer) page_footer(Moment::Now);
        next_summary_page();
        prepare_again(summary_, Moment::Now, summary_room());
    }
    cut_if_hopeless(summary_, true);
    place(summary_, x_, Moment::Now);
}

void Filler::rest_of_summary()
{
    const bool page_bands = definition_.summary_with_page_header_and_footer;
    int idle = 0;
    while (summary_.goes_over()) {
        const bool stuck = idle > 1;
        if (stuck) {
            warn_cut(summary_);
        } else {
            if (page_bands) page_footer(Moment::Now);
            next_summary_page();
        }
        const uint64_t progress = run_.progress;
        summary_.prepare(stuck ? summary_.height() : summary_room(), !stuck);
        if (!stuck) cut_if_hopeless(summary_, true);
        place(summary_, x_, Moment::Now);
        idle = run_.progress == progress ? idle + 1 : 0;
    }
    resolve({model::EvaluationTime::Band, kNoGroup, &summary_}, Moment::Now);
    if (!page_bands) return;
    if (y_ > page_bottom() - last_page_footer_.height()) {
        page_footer(Moment::Now);
        next_summary_page();
    }
    if (last_page_footer_.present()) set_last_page();
    page_footer(Moment::Now);
}

void Filler::summary_without_last_footer()
{
    const bool same_page =
        !definition_.summary_new_page && (across_ || run_.column == 0) && summary_.break_height() <= room();
    if (!same_page) {
        close_page_bands(Moment::Now);
        if (!summary_.decide(Moment::Now)) return;
        next_summary_page();
        summary_on_new_page();
        rest_of_summary();
        return;
    }
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
        rest_of_summary();
    } else if (summary_.goes_over()) {
        next_summary_page();
        summary_.prepare(summary_room());
        place(summary_, x_, Moment::Now);
        rest_of_summary();
    } else {
        resolve({model::EvaluationTime::Band, kNoGroup, &summary_}, Moment::Now);
    }
}

/// The last page has a footer of its own, and the summary's pages have the page bands.
void Filler::summary_with_page_bands()
{
    const bool first_column = across_ || run_.column == 0;
    const bool fits_begun = !definition_.summary_new_page && first_column && summary_.break_height() <= room();
    const bool prints = summary_.decide(Moment::Now);
    if (fits_begun && prints) {
        if (begin_summary()) {
            place(summary_, x_, Moment::Now);
            if (!summary_.goes_over() && y_ <= last_column_footer_y_) set_last_page();
            column_footers(Moment::Now);
        } else {
            close_page_bands(Moment::Now);
            next_summary_page();
            prepare_again(summary_, Moment::Now, summary_room());
            place(summary_, x_, Moment::Now);
        }
        rest_of_summary();
    } else if (fits_begun) {
        if (y_ > last_column_footer_y_) page_break(false, Moment::Now, Moment::Now, false);
        last_page_bands();
    } else if (first_column && y_ <= last_column_footer_y_) {
        if (!prints) {
            last_page_bands();
            return;
        }
        close_page_bands(Moment::Now);
        next_summary_page();
        summary_on_new_page();
        rest_of_summary();
    } else {
        close_page_bands(Moment::Now);
        next_summary_page(false);
        if (summary_.decide(Moment::Now)) summary_on_new_page();
        rest_of_summary();
    }
}

}  // namespace velora::engine
