#pragma once

#include "engine/fill/parts/container.h"

namespace velora::engine {

/// A band while it is filled. The order of calls is `decide`, `evaluate`, then `prepare` and `emit` for every page or
/// column that it goes over.
class Band {
public:
    Band(Run& run, const BandPlan& plan);

    [[nodiscard]] bool present() const { return plan_.present; }
    [[nodiscard]] int height() const { return plan_.height; }
    [[nodiscard]] int break_height() const { return plan_.break_height; }
    [[nodiscard]] const BandPlan& plan() const { return plan_; }

    /// Finds out whether it prints at all.
    bool decide(Moment moment);
    void evaluate(Moment moment) { content_.evaluate(moment); }
    void prepare(int available, bool overflow_allowed = true);
    void prepare_nothing() { content_.prepare_nothing(); }
    /// @return the height that was used
    int emit(int x, int y);
    void rewind() { content_.rewind(); }

    [[nodiscard]] bool goes_over() const { return content_.goes_over(); }
    [[nodiscard]] bool will_print() const { return content_.will_print(); }
    [[nodiscard]] bool goes_over_with_parts() const { return content_.goes_over_with_parts(); }
    /// It goes over although it may not, and could do better elsewhere.
    [[nodiscard]] bool must_move(bool at_top) const { return goes_over() && plan_.prevents_split && !at_top; }

    void new_page_or_column() { state_.new_page_or_column = true; }
    void new_group(size_t group) { state_.new_group[group] = true; }

private:
    class Content : public Container {
    public:
        Content(Run& run, const BandPlan& plan, const BandState& state)
            : Container(run, plan.content, state), height_(plan.height)
        {
        }
        [[nodiscard]] int height() const override { return height_; }

    private:
        int height_;
    };

    Run& run_;
    const BandPlan& plan_;
    BandState state_;
    Content content_;
};

}  // namespace velora::engine
