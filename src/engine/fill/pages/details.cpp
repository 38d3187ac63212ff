#include "engine/fill/pages/filler.h"
#include "engine/fill/parts/chart_part.h"

namespace velora::engine {

void Filler::details()
{
    if (across_) step_across();
    leave_room_for_detail();
    run_.rows.calculate();
    for (const auto& chart : run_.charts) {
        chart->count(run_.at(Moment::Now));
    }
    if (across_) {
        run_.rows.variables().assign(kColumnNumber, run_.column + 1);
        set_column_x();
        row_top_ = y_;
    }
    detail_bands();
    if (across_) {
        row_bottom_ = std::max(row_bottom_, y_);
        y_ = row_bottom_;
        last_detail_x_ = x_;
        last_detail_y_ = y_;
    }
    new_page_ = false;
    new_column_ = false;
}

/// The next detail stands beside the last one while there are columns left and nothing came between.
void Filler::step_across()
{
    if (x_ != last_detail_x_ || y_ != last_detail_y_) return;
    if (run_.column == page_.column_count - 1) {
        run_.column = 0;
        row_bottom_ = 0;
    } else {
        ++run_.column;
        y_ = row_top_;
    }
}

/// A break in front of a row happens before the row is counted, so that the page that ends does not show it.
void Filler::leave_room_for_detail()
{
    if (plan_.estimates_for_details) run_.rows.estimate();
    for (const auto& band : details_) {
        if (!band->decide(Moment::Estimated)) continue;
        const int wanted = across_ ? band->height() : band->break_height();
        make_room(wanted, Moment::Now);
        return;
    }
}

void Filler::detail_bands()
{
    detail_.reset();
    bool keep_range = true;
    bool printed = false;
    for (const auto& band : details_) {
        if (!band->decide(Moment::Now)) continue;
        if (across_ && keep_range && !detail_) detail_ = run_.book.range(run_.column, y_);
        const int wanted = across_ ? band->height() : band->break_height();
        if (wanted > room()) {
            make_room(wanted, Moment::Now);
            row_top_ = y_;
        }
        if (!across_ && keep_range && !detail_) detail_ = run_.book.range(run_.column, y_);
        if (across_) {
            place_fixed(*band, Moment::Now, false);
        } else {
            place_in_column(*band, Moment::Now, !printed);
        }
        if (!detail_) {
            keep_range = false;  // parted by a break: only the next row can be kept with footers
        } else if (run_.book.is_here(*detail_) && detail_->column == run_.column) {
            grow_if_here(detail_);
        }
        printed = true;
        run_.first_page_band = false;
        run_.first_column_band = false;
    }
    if (!printed) return;
    for (auto& group : groups_) {
        ++group.details;
    }
}

}  // namespace velora::engine
