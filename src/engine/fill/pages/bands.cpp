#include "engine/fill/pages/filler.h"

namespace velora::engine {

using model::EvaluationTime;

void Filler::note_row(Moment moment)
{
    row_on_page_ = moment == Moment::Now;
    row_on_column_ = row_on_page_;
}

void Filler::place(Band& band, int x, Moment moment)
{
    y_ += band.emit(x, y_);
    if (run_.row_ends) run_.row_ends->push_back(y_);
    note_row(moment);
}

void Filler::place_fixed(Band& band, Moment moment, bool may_shrink)
{
    band.evaluate(moment);
    band.prepare(band.height(), false);
    const int top = y_;
    place(band, x_, moment);
    if (!may_shrink) y_ = top + band.height();
    resolve({EvaluationTime::Band, kNoGroup, &band}, moment);
}

/// Places the band when all of it fits.
bool Filler::place_whole(Band& band, Moment moment)
{
    if (room() < band.height()) return false;
    const int column = run_.column;
    band.evaluate(moment);
    band.prepare(room());
    if (band.goes_over()) {
        band.rewind();
        run_.column = column;
        return false;
    }
    place(band, x_, moment);
    resolve({EvaluationTime::Band, kNoGroup, &band}, moment);
    return true;
}

void Filler::warn_cut(const Band& band)
{
    run_.tell("a band of height " + std::to_string(band.height()) + " does not fit on its page; it is cut");
}

/// Places a band that fits nowhere; what reaches below the page is not seen.
void Filler::place_cut(Band& band, Moment moment)
{
    warn_cut(band);
    band.evaluate(moment);
    band.prepare(band.height(), false);
    place(band, x_, moment);
    resolve({EvaluationTime::Band, kNoGroup, &band}, moment);
}

/// No other page has more room than there is here, and the band prints nothing in it: it is placed all the same.
void Filler::cut_if_hopeless(Band& band, bool has_all_room)
{
    if (!band.goes_over() || band.will_print() || !has_all_room) return;
    warn_cut(band);
    band.prepare(band.height(), false);
}

/// The title and the band for no data: they stand between the margins and go over whole pages.
void Filler::place_on_pages(Band& band)
{
    if (!band.decide(Moment::Now)) return;
    const auto next_page = [&] {
        end_page(Moment::Now);
        add_page(false);
    };
    if (band.break_height() > page_room() && y_ > page_.top) add_page(false);
    band.evaluate(Moment::Now);
    band.prepare(page_room());
    if (band.must_move(at_top())) {
        next_page();
        prepare_again(band, Moment::Now, page_room());
    }
    cut_if_hopeless(band, y_ <= page_.top);
    uint64_t progress = run_.progress;
    place(band, x_, Moment::Now);
    int idle = run_.progress == progress ? 1 : 0;
    while (band.goes_over()) {
        const bool stuck = idle > 1;
        if (stuck) {
            warn_cut(band);
        } else {
            next_page();
        }
        progress = run_.progress;
        band.prepare(stuck ? band.height() : page_room(), !stuck);
        if (!stuck) cut_if_hopeless(band, y_ <= page_.top);
        place(band, x_, Moment::Now);
        idle = run_.progress == progress ? idle + 1 : 0;
    }
    resolve({EvaluationTime::Band, kNoGroup, &band}, Moment::Now);
}

/// After a break the values may be others: of the page, or of the row.
void Filler::prepare_again(Band& band, Moment moment, int room)
{
    band.rewind();
    if (!band.decide(moment)) {
        band.prepare_nothing();
        return;
    }
    band.evaluate(moment);
    band.prepare(room);
}

bool Filler::must_move(const Band& band) const
{
    if (band.must_move(at_top())) return true;
    const auto holds = [](const GroupState& group) { return group.holds_together(); };
    return std::any_of(groups_.begin(), groups_.end(), holds) || orphan_detail_;
}

/// Group headers and footers and the details of vertical order: they go over columns.
void Filler::place_in_column(Band& band, Moment moment, bool recalculate)
{
    const auto go_on = [&] {
        const Moment before = moment == Moment::Now ? before_break(across_) : moment;
        column_break(before, moment);
    };
    band.evaluate(moment);
    band.prepare(room());
    if (band.goes_over() && must_move(band)) {
        go_on();
        if (recalculate) run_.rows.recalculate();
        prepare_again(band, moment, room());
    }
    cut_if_hopeless(band, has_all_room());
    uint64_t progress = run_.progress;
    place(band, x_, moment);
    int idle = run_.progress == progress ? 1 : 0;
    while (band.goes_over()) {
        // room below the elements alone is not carried over
        const bool stuck = idle > page_.column_count;
        if (stuck) {
            warn_cut(band);
        } else if (band.goes_over_with_parts()) {
            go_on();
        }
        progress = run_.progress;
        band.prepare(stuck ? band.height() : room(), !stuck);
        if (!stuck) cut_if_hopeless(band, has_all_room());
        place(band, x_, moment);
        idle = run_.progress == progress ? idle + 1 : 0;
    }
    resolve({EvaluationTime::Band, kNoGroup, &band}, moment);
}

void Filler::resolve(const Awaited& awaited, Moment moment)
{
    run_.book.resolve(awaited,
                      [&](Waiting& waiting, Element& element) { waiting.part->resolve(waiting, element, moment); });
}

void Filler::resolve_groups(Moment moment, bool final)
{
    for (size_t index = 0; index < groups_.size(); ++index) {
        if (final || (changed_[index] && groups_[index].footer_printed)) {
            resolve({EvaluationTime::Group, static_cast<int>(index), nullptr}, moment);
        }
    }
}

}  // namespace velora::engine
