#include "engine/fill/pages/details.h"

#include "engine/fill/parts/chart_part.h"

namespace velora::engine {

Details::Details(Run& run, Bands& bands, PageSpace& space, BandPlacer& placer, PageFrame& frame, Flow& flow,
                 Keeping& keeping)
    : run_(run), bands_(bands), space_(space), placer_(placer), frame_(frame), flow_(flow), keeping_(keeping)
{
}

void Details::print()
{
    const bool across = space_.runs_across();
    if (across) step_across();
    leave_room();
    count();
    if (across) {
        run_.rows.variables().assign(kColumnNumber, space_.column() + 1);
        space_.go_to_column_edge();
        line_.top = space_.y();
    }
    print_bands();
    if (across) {
        note_page();
        line_.bottom = std::max(line_.bottom, space_.y());
        space_.move_to(line_.bottom);
        line_.end_x = space_.x();
        line_.end_y = space_.y();
    }
    frame_.note_body();
}

void Details::count()
{
    run_.rows.calculate();
    for (const auto& chart : run_.charts) {
        chart->count(run_.at(Moment::Now));
    }
}

/// On a new page nothing stands beside the details.
void Details::note_page()
{
    if (line_.page == run_.book.page_number()) return;
    line_.page = run_.book.page_number();
    line_.end_x = line_.end_y = -1;
    line_.bottom = 0;
}

/// The next detail stands beside the last one while there are columns left and nothing came between.
void Details::step_across()
{
    note_page();
    if (space_.x() != line_.end_x || space_.y() != line_.end_y) return;
    if (space_.column() == space_.column_count() - 1) {
        run_.column = 0;
        line_.bottom = 0;
    } else {
        ++run_.column;
        space_.move_to(line_.top);
    }
}

int Details::room_for(const Band& band) const
{
    return space_.runs_across() ? band.height() : band.break_height();
}

/// A break in front of a row happens before the row is counted, so that the page that ends does not show it.
void Details::leave_room()
{
    if (run_.plan.estimates_for_details) run_.rows.estimate();
    for (const auto& band : bands_.details) {
        if (!band->decide(Moment::Estimated)) continue;
        flow_.make_room(room_for(*band));
        return;
    }
}

void Details::print_bands()
{
    keeping_.forget_details();
    bool is_parted = false;  // by a break: only the next row can be kept with footers
    bool has_printed = false;
    for (const auto& band : bands_.details) {
        if (!band->decide(Moment::Now)) continue;
        if (space_.runs_across() && !is_parted && !keeping_.has_details()) keeping_.begin_details();
        if (room_for(*band) > space_.room()) {
            flow_.make_room(room_for(*band));
            line_.top = space_.y();
        }
        if (!space_.runs_across() && !is_parted && !keeping_.has_details()) keeping_.begin_details();
        print_band(*band, !has_printed);
        is_parted = is_parted || !keeping_.has_details();
        keeping_.grow_details();
        has_printed = true;
        run_.first_page_band = false;
        run_.first_column_band = false;
    }
    if (!has_printed) return;
    for (Group& group : bands_.groups) {
        ++group.details;
    }
}

void Details::print_band(Band& band, bool is_first)
{
    if (space_.runs_across()) {
        placer_.place_fixed(band, Moment::Now, false);
    } else {
        flow_.place_in_columns(band, Moment::Now, is_first);
    }
}

}  // namespace velora::engine
