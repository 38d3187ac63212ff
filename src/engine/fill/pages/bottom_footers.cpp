#include "engine/fill/pages/bottom_footers.h"

namespace velora::engine {

using model::FooterPosition;

std::optional<FooterPosition> BottomFooters::current() const
{
    return held_ ? std::optional(held_->current) : std::nullopt;
}

void BottomFooters::begin(FooterPosition position, int column, int top)
{
    if (held_) {
        held_->current = position;
    } else {
        go_on(position, column, top);
    }
}

void BottomFooters::go_on(FooterPosition position, int column, int top)
{
    if (position != FooterPosition::Normal) held_ = Held{book_.range(column, top), position, position};
}

void BottomFooters::collect(FooterPosition position, int column, int bottom)
{
    if (!held_) return;
    if (book_.is_here(held_->range) && held_->range.column == column) grow(bottom);
    switch (position) {
        case FooterPosition::StackAtBottom:
        case FooterPosition::ForceAtBottom:
            held_->master = position;
            break;
        case FooterPosition::CollateAtBottom:
            break;
        case FooterPosition::Normal:
            if (held_->master == FooterPosition::CollateAtBottom) held_.reset();
            break;
    }
}

void BottomFooters::grow(int bottom)
{
    if (held_) book_.grow(held_->range, bottom);
}

void BottomFooters::move_down(int bottom)
{
    if (!held_) return;
    if (held_->master != FooterPosition::Normal) book_.shift(held_->range, bottom - held_->range.bottom);
    held_.reset();
}

}  // namespace velora::engine
