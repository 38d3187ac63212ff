#pragma once

#include <set>
#include <vector>

#include "engine/plan/plan.h"

namespace velora::engine {

/// The variables of a run: their values now, at the row before and as they will be, and what they are counted on from.
class Variables {
public:
    explicit Variables(const std::vector<VariablePlan>& plans);

    [[nodiscard]] const std::vector<Value>& values() const { return now_; }
    [[nodiscard]] const std::vector<Value>& old_values() const { return old_; }
    [[nodiscard]] const std::vector<Value>& estimates() const { return estimated_; }

    /// Sets a value that the layout knows (page and column number), for the row before as well.
    void assign(BuiltIn slot, int64_t value);
    [[nodiscard]] int64_t whole_number(BuiltIn slot) const;

    void remember() { old_ = now_; }  ///< a new row is there: its values become those of the row before
    void revert() { now_ = old_; }

    /// Counts the row in.
    void calculate(const Environment& now);
    /// Counts the row in once more after a break has reset some variables.
    void recalculate(const Environment& now);
    /// What `calculate` would give for the row that is there, without counting it.
    void estimate(const Environment& estimated);

    /// Increments what is incremented at the end of a report's part and resets what is reset there.
    /// @param group_changed  by group; only looked at for `Moment::Group`
    void begin(model::Moment part, const std::vector<bool>& group_changed, const Environment& now);
    /// Counts in what a report inside the report gives back, for the row before as well.
    void take(size_t slot, const Value& returned, model::Calculation calculation);
    /// The variables that are incremented with a group whose end is foreseen.
    void increment_with_groups(const std::vector<bool>& group_changed);

private:
    struct State {
        Value incremented;
        Value incremented_before;
        bool initialized = false;
        std::set<std::string> distinct;
    };

    [[nodiscard]] Value next(size_t slot, const Value& given, const std::vector<Value>& aggregates) const;
    [[nodiscard]] Value next(size_t slot, const Value& given, const std::vector<Value>& aggregates,
                             model::Calculation calculation) const;
    [[nodiscard]] Value distinct_count(size_t slot, const Value& given) const;
    [[nodiscard]] Value given(const VariablePlan& plan, const Environment& environment) const;
    [[nodiscard]] bool increments_at(const VariablePlan& plan, model::Moment part,
                                     const std::vector<bool>& changed) const;
    void reset(size_t slot, model::Moment part, const std::vector<bool>& changed, const Environment& now);
    void keep_distinct(size_t slot, const Value& given);

    const std::vector<VariablePlan>& plans_;
    std::vector<Value> now_, old_, estimated_;
    std::vector<State> states_;
};

}  // namespace velora::engine
