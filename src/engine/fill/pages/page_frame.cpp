#include "engine/fill/pages/page_frame.h"

namespace velora::engine {

PageFrame::PageFrame(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, ReportParts& parts)
    : run_(run), bands_(bands), space_(space), placer_(placer), parts_(parts), bottom_footers_(run.book)
{
}

void PageFrame::begin_first_page()
{
    run_.book.begin_page();
    space_.begin_page();
    background();
}

void PageFrame::begin_page(bool reset_number)
{
    Variables& variables = run_.rows.variables();
    variables.assign(kPageNumber, reset_number ? 1 : variables.whole_number(kPageNumber) + 1);
    run_.first_page_band = true;
    run_.first_column_band = true;
    run_.anything_to_print = false;
    if (!space_.runs_across()) placer_.begin_row();
    begin_first_page();
}

void PageFrame::background()
{
    Band& band = bands_.background;
    if (band.height() <= space_.page_room() && band.decide(Moment::Now)) placer_.place_behind(band, Moment::Now);
}

void PageFrame::begin_next_column()
{
    space_.set_column(space_.column() + 1);
    space_.move_to(space_.column_top());
    placer_.begin_column();
}

void PageFrame::note_body()
{
    is_page_fresh_ = false;
    is_column_fresh_ = false;
}

// ------------------------------------------------------------------------------------------------------ headers

void PageFrame::page_header(Moment moment, bool may_begin_page)
{
    Band& header = bands_.page_header;
    bands_.new_page_or_column();
    if (header.decide(Moment::Now)) {
        bool is_placed = placer_.place_whole(header, moment);
        if (!is_placed && may_begin_page) {
            parts_.end_page(moment);
            begin_page();
            is_placed = placer_.place_whole(header, moment);
        }
        if (!is_placed) placer_.place_cut(header, moment);
    }
    space_.mark_column_top();
    is_page_fresh_ = true;
}

void PageFrame::column_headers(Moment moment, bool may_begin_page)
{
    bands_.new_page_or_column();
    run_.first_column_band = true;
    run_.anything_to_print = false;
    if (space_.runs_across()) {
        column_headers_across(moment, may_begin_page);
    } else {
        column_header_down(moment, may_begin_page);
    }
    is_column_fresh_ = true;
}

/// A column header that does not fit below the page header tries the next page.
void PageFrame::leave_page_for_header(Moment moment)
{
    page_footer(moment);
    parts_.end_page(moment);
    begin_page();
    page_header(moment);
}

void PageFrame::column_header_down(Moment moment, bool may_begin_page)
{
    Band& header = bands_.column_header;
    if (!header.decide(moment)) return;
    space_.go_to_column_edge();
    bool is_placed = placer_.place_whole(header, moment);
    if (!is_placed && may_begin_page) {
        while (!space_.is_last_column()) {
            parts_.end_column(moment);
            begin_next_column();
        }
        leave_page_for_header(moment);
        is_placed = placer_.place_whole(header, moment);
    }
    if (!is_placed) placer_.place_cut(header, moment);
}

void PageFrame::column_headers_across(Moment moment, bool may_begin_page)
{
    Band& header = bands_.column_header;
    const auto fits = [&] { return header.height() <= space_.column_end() - space_.column_top(); };
    for (int column = 0; column < space_.column_count(); ++column) {
        space_.set_column(column);
        if (!header.decide(moment)) continue;
        if (!fits() && may_begin_page && column == 0) leave_page_for_header(moment);
        if (!fits()) placer_.warn_cut(header);
        space_.go_to_column_edge();
        space_.move_to(space_.column_top());
        placer_.place_fixed(header, moment, false);
    }
    space_.set_column(0);
}

// ------------------------------------------------------------------------------------------------------ footers

bool PageFrame::floats_column_footer() const
{
    return run_.plan.definition->float_column_footer && !run_.ignore_pagination;
}

void PageFrame::column_footers(Moment moment)
{
    if (space_.runs_across()) {
        column_footers_across(moment);
    } else {
        column_footer_down(moment);
    }
}

void PageFrame::column_footer_down(Moment moment)
{
    Band& footer = bands_.column_footer;
    const bool floats = floats_column_footer();
    space_.go_to_column_edge();
    const int end = space_.y();
    if (!floats && !run_.ignore_pagination) space_.move_to(space_.column_end());
    bottom_footers_.move_down(space_.column_end());
    floating_footer_.reset();
    if (footer.decide(moment)) {
        if (floats) floating_footer_ = run_.book.range(space_.column(), space_.y());
        placer_.place_fixed(footer, moment);
        if (floating_footer_) run_.book.grow(*floating_footer_, space_.y());
    }
    if (floats) space_.move_by(space_.column_end() - end);
}

void PageFrame::column_footers_across(Moment moment)
{
    Band& footer = bands_.column_footer;
    const bool floats = floats_column_footer();
    const int top = floats || run_.ignore_pagination ? space_.y() : space_.column_end();
    bottom_footers_.move_down(space_.column_end());
    floating_footer_.reset();
    if (floats) floating_footer_ = run_.book.range(0, top);
    for (int column = 0; column < space_.column_count(); ++column) {
        space_.set_column(column);
        space_.go_to_column_edge();
        space_.move_to(top);
        if (footer.decide(moment)) placer_.place_fixed(footer, moment, false);
    }
    if (floating_footer_) run_.book.grow(*floating_footer_, space_.y());
}

void PageFrame::lift_column_footer(int top)
{
    if (floating_footer_) run_.book.shift(*floating_footer_, top - floating_footer_->top);
}

void PageFrame::page_footer(Moment moment)
{
    Band& footer = is_last_page_ ? bands_.last_page_footer : bands_.page_footer;
    space_.go_to_left_margin();
    if (!run_.ignore_pagination) space_.move_to(space_.page_bottom() - footer.height());
    if (footer.decide(moment)) placer_.place_fixed(footer, moment);
}

void PageFrame::footers(Moment moment)
{
    column_footers(moment);
    page_footer(moment);
}

void PageFrame::set_last_page()
{
    is_last_page_ = true;
    space_.use_last_column_end();
}

void PageFrame::settle_bottom_footers()
{
    bottom_footers_.move_down(space_.column_end());
    space_.move_to(space_.column_end());
}

}  // namespace velora::engine
