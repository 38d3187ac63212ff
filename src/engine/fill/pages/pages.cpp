#include "engine/fill/pages/filler.h"

namespace velora::engine {

using model::EvaluationTime;

void Filler::set_column_x()
{
    const int step = run_.column * (page_.column_width + page_.column_spacing);
    x_ = page_.right_to_left ? page_.width - page_.right - page_.column_width - step : page_.left + step;
}

void Filler::set_column(int column)
{
    run_.column = column;
    if (column == 0) {
        x_ = page_.left;
    } else {
        set_column_x();
    }
    run_.rows.variables().assign(kColumnNumber, column + 1);
}

void Filler::add_page(bool reset_number)
{
    run_.book.begin_page();
    Variables& variables = run_.rows.variables();
    variables.assign(kPageNumber, reset_number ? 1 : variables.whole_number(kPageNumber) + 1);
    set_column(0);
    y_ = page_.top;
    run_.first_page_band = true;
    run_.first_column_band = true;
    run_.anything_to_print = false;
    is_usual_page_ = true;
    if (across_) {
        last_detail_x_ = -1;
        last_detail_y_ = -1;
        row_bottom_ = 0;
    } else {
        row_on_page_ = false;
        row_on_column_ = false;
    }
    background();
}

/// The values that were waited for until the page's end are there.
void Filler::resolve_page(Moment moment, bool final)
{
    resolve_groups(moment, final);
    resolve({EvaluationTime::Column, kNoGroup, nullptr}, moment);
    resolve({EvaluationTime::Page, kNoGroup, nullptr}, moment);
}

/// Behind it the page's variables begin anew.
void Filler::end_page(Moment moment, bool final)
{
    resolve_page(moment, final);
    begin_part(model::Moment::Page);
}

void Filler::page_header(Moment moment)
{
    mark_new_page_or_column();
    if (page_header_.decide(Moment::Now)) {
        bool placed = place_whole(page_header_, moment);
        if (!placed && !creating_page_) {
            end_page(moment);
            add_page(false);
            placed = place_whole(page_header_, moment);
        }
        if (!placed) place_cut(page_header_, moment);
    }
    column_header_y_ = y_;
    new_page_ = true;
}

void Filler::column_headers(Moment moment)
{
    mark_new_page_or_column();
    run_.first_column_band = true;
    run_.anything_to_print = false;
    if (across_) {
        column_headers_across(moment);
    } else {
        column_header_down(moment);
    }
    new_column_ = true;
}

void Filler::column_header_down(Moment moment)
{
    if (!column_header_.decide(moment)) return;
    set_column_x();
    bool placed = place_whole(column_header_, moment);
    if (!placed && !creating_page_) {
        while (run_.column < page_.column_count - 1) {
            resolve_groups(moment, false);
            resolve({EvaluationTime::Column, kNoGroup, nullptr}, moment);
            begin_part(model::Moment::Column);
            set_column(run_.column + 1);
            y_ = column_header_y_;
            row_on_column_ = false;
        }
        page_footer(moment);
        end_page(moment);
        add_page(false);
        page_header(moment);
        placed = place_whole(column_header_, moment);
    }
    if (!placed) place_cut(column_header_, moment);
}

void Filler::column_headers_across(Moment moment)
{
    for (int column = 0; column < page_.column_count; ++column) {
        set_column(column);
        if (!column_header_.decide(moment)) continue;
        if (column_header_.height() > column_footer_y_ - column_header_y_ && !creating_page_ && column == 0) {
            page_footer(moment);
            end_page(moment);
            add_page(false);
            page_header(moment);
        }
        if (column_header_.height() > column_footer_y_ - column_header_y_) warn_cut(column_header_);
        set_column_x();
        y_ = column_header_y_;
        place_fixed(column_header_, moment, false);
    }
    set_column(0);
}

bool Filler::floats_column_footer() const
{
    return definition_.float_column_footer && !run_.ignore_pagination;
}

void Filler::column_footers(Moment moment)
{
    if (across_) {
        column_footers_across(moment);
    } else {
        column_footer_down(moment);
    }
}

void Filler::column_footer_down(Moment moment)
{
    set_column_x();
    const int end = y_;
    if (!definition_.float_column_footer && !run_.ignore_pagination) y_ = column_footer_y_;
    move_footers_down();
    floating_footer_.reset();
    if (column_footer_.decide(moment)) {
        if (floats_column_footer()) floating_footer_ = run_.book.range(run_.column, y_);
        place_fixed(column_footer_, moment);
        if (floating_footer_) run_.book.grow(*floating_footer_, y_);
    }
    if (floats_column_footer()) y_ += column_footer_y_ - end;
}

void Filler::column_footers_across(Moment moment)
{
    const int top = definition_.float_column_footer || run_.ignore_pagination ? y_ : column_footer_y_;
    move_footers_down();
    floating_footer_.reset();
    if (floats_column_footer()) floating_footer_ = run_.book.range(0, top);
    for (int column = 0; column < page_.column_count; ++column) {
        set_column(column);
        set_column_x();
        y_ = top;
        if (column_footer_.decide(moment)) place_fixed(column_footer_, moment, false);
    }
    if (floating_footer_) run_.book.grow(*floating_footer_, y_);
}

void Filler::page_footer(Moment moment)
{
    x_ = page_.left;
    Band& footer = footer_of_page();
    if (!run_.ignore_pagination) y_ = page_bottom() - footer.height();
    if (footer.decide(moment)) place_fixed(footer, moment);
}

void Filler::close_page_bands(Moment moment)
{
    column_footers(moment);
    page_footer(moment);
}

void Filler::set_last_page()
{
    is_last_page_ = true;
    column_footer_y_ = last_column_footer_y_;
}

}  // namespace velora::engine
