#include "engine/fill/pages/band.h"

namespace velora::engine {

namespace {

BandState first_state(const Run& run, const BandPlan& plan)
{
    BandState state;
    state.role = plan.role;
    state.group = plan.group;
    state.new_page_or_column = false;
    state.new_group.assign(run.plan.groups.size(), false);
    return state;
}

}  // namespace

Band::Band(Run& run, const BandPlan& plan)
    : run_(run), plan_(plan), state_(first_state(run, plan)), content_(run, plan, state_)
{
}

bool Band::decide(Moment moment)
{
    return plan_.present && (!plan_.print_when || plan_.print_when.is_true(run_.at(moment)));
}

void Band::prepare(int available, bool overflow_allowed)
{
    run_.overflow_allowed = overflow_allowed;
    content_.begin();
    if (state_.new_page_or_column && !content_.continuing()) state_.first_whole = true;
    content_.prepare(available, overflow_allowed);
    state_.first_whole = state_.new_page_or_column && content_.continuing();
    state_.new_page_or_column = false;
    std::fill(state_.new_group.begin(), state_.new_group.end(), false);
}

int Band::emit(int x, int y)
{
    auto& elements = run_.book.elements();
    const size_t first = elements.size();
    Emission emission{run_.book, &elements, x, y, {}, 0, this};
    const int height = content_.emit(emission);
    if (elements.size() > first) elements[first].begins_band = true;
    return height;
}

}  // namespace velora::engine
