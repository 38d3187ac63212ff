#include "engine/fill/pages/band_placer.h"

namespace velora::engine {

void BandPlacer::begin_row()
{
    is_row_on_page_ = false;
    is_row_on_column_ = false;
}

void BandPlacer::note_row(Moment moment)
{
    is_row_on_page_ = moment == Moment::Now;
    is_row_on_column_ = is_row_on_page_;
}

bool BandPlacer::place(Band& band, Moment moment)
{
    const uint64_t before = run_.progress;
    space_.move_by(band.emit(space_.x(), space_.y()));
    if (run_.row_ends) run_.row_ends->push_back(space_.y());
    note_row(moment);
    return run_.progress != before;
}

void BandPlacer::place_behind(Band& band, Moment moment)
{
    band.evaluate(moment);
    band.prepare(space_.page_room());
    band.emit(space_.x(), space_.y());
    note_row(moment);
}

void BandPlacer::place_fixed(Band& band, Moment moment, bool may_shrink)
{
    const int top = space_.y();
    band.evaluate(moment);
    band.prepare(band.height(), false);
    place(band, moment);
    if (!may_shrink) space_.move_to(top + band.height());
    parts_.end_band(band, moment);
}

bool BandPlacer::place_whole(Band& band, Moment moment)
{
    if (space_.room() < band.height()) return false;
    const int column = run_.column;
    band.evaluate(moment);
    band.prepare(space_.room());
    if (band.goes_over()) {
        band.rewind();
        run_.column = column;
        return false;
    }
    place(band, moment);
    parts_.end_band(band, moment);
    return true;
}

void BandPlacer::place_cut(Band& band, Moment moment)
{
    warn_cut(band);
    place_fixed(band, moment);
}

void BandPlacer::place_rest(Band& band, Moment moment, bool has_progress, const Onward& onward)
{
    for (int idle = has_progress ? 0 : 1; band.goes_over();) {
        if (idle > onward.patience) {
            warn_cut(band);
            band.prepare(band.height(), false);
        } else {
            onward.next();
            band.prepare(onward.room());
            cut_if_hopeless(band, onward.has_all_room());
        }
        idle = place(band, moment) ? 0 : idle + 1;
    }
}

void BandPlacer::prepare_again(Band& band, Moment moment, int room)
{
    band.rewind();
    if (!band.decide(moment)) {
        band.prepare_nothing();
        return;
    }
    band.evaluate(moment);
    band.prepare(room);
}

void BandPlacer::cut_if_hopeless(Band& band, bool has_all_room)
{
    if (!band.goes_over() || band.will_print() || !has_all_room) return;
    warn_cut(band);
    band.prepare(band.height(), false);
}

void BandPlacer::warn_cut(const Band& band)
{
    run_.tell("a band of height " + std::to_string(band.height()) + " does not fit on its page; it is cut");
}

}  // namespace velora::engine
