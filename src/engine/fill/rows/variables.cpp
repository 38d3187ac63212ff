#include "engine/fill/rows/variables.h"

#include <cmath>

#include "engine/fill/rows/arithmetic.h"

namespace velora::engine {

using model::Calculation;
using Part = model::Moment;

Variables::Variables(const std::vector<VariablePlan>& plans)
    : plans_(plans), now_(plans.size()), old_(plans.size()), estimated_(plans.size()), states_(plans.size())
{
}

void Variables::assign(BuiltIn slot, int64_t value)
{
    now_[slot] = value;
    old_[slot] = value;
}

int64_t Variables::whole_number(BuiltIn slot) const
{
    const auto* value = now_[slot].get_if<int64_t>();
    return value ? *value : 0;
}

Value Variables::given(const VariablePlan& plan, const Environment& environment) const
{
    return plan.expression ? plan.expression.evaluate(environment) : plan.fixed_expression;
}

void Variables::calculate(const Environment& now)
{
    for (size_t slot = 0; slot < plans_.size(); ++slot) {
        const VariablePlan& plan = plans_[slot];
        State& state = states_[slot];
        const Value given = this->given(plan, now);
        if (plan.calculation == Calculation::DistinctCount) keep_distinct(slot, given);
        now_[slot] = next(slot, given, now_);
        state.initialized = false;
        state.incremented_before = state.incremented;
        if (plan.increment == Part::None) state.incremented = now_[slot];
    }
}

void Variables::recalculate(const Environment& now)
{
    for (auto& state : states_) {
        state.incremented = state.incremented_before;
    }
    calculate(now);
}

void Variables::estimate(const Environment& estimated)
{
    for (size_t slot = 0; slot < plans_.size(); ++slot) {
        const Value given = this->given(plans_[slot], estimated);
        estimated_[slot] = plans_[slot].calculation == Calculation::DistinctCount ? distinct_count(slot, given)
                                                                                  : next(slot, given, estimated_);
    }
}

Value Variables::next(size_t slot, const Value& given, const std::vector<Value>& aggregates) const
{
    return next(slot, given, aggregates, plans_[slot].calculation);
}

Value Variables::next(size_t slot, const Value& given, const std::vector<Value>& aggregates,
                      Calculation calculation) const
{
    const VariablePlan& plan = plans_[slot];
    const State& state = states_[slot];
    const bool fresh = state.initialized || state.incremented.is_null();
    switch (calculation) {
        case Calculation::Nothing:
            return given;
        case Calculation::System:
            return now_[slot];
        case Calculation::First:
            return state.initialized ? given : state.incremented;
        case Calculation::DistinctCount:
            return static_cast<int64_t>(state.distinct.size());
        case Calculation::Count: {
            const int64_t before = fresh ? 0 : static_cast<int64_t>(as_double(state.incremented));
            return as_class(static_cast<double>(before + (given.is_null() ? 0 : 1)), plan.value_class);
        }
        default:
            break;
    }
    if (given.is_null()) return state.initialized ? Value() : now_[slot];
    switch (calculation) {
        case Calculation::Sum:
            return fresh ? coerced(given, plan.value_class) : sum_of(state.incremented, given, plan.value_class);
        case Calculation::Average:
            return quotient_of(aggregates[plan.sum], aggregates[plan.count], plan.value_class);
        case Calculation::Lowest:
            return fresh || compare_values(given, state.incremented) < 0 ? given : state.incremented;
        case Calculation::Highest:
            return fresh || compare_values(given, state.incremented) > 0 ? given : state.incremented;
        case Calculation::StandardDeviation:
            return as_class(std::sqrt(std::max(0.0, as_double(aggregates[plan.spread]))), plan.value_class);
        case Calculation::Variance: {
            if (fresh) return as_class(0, plan.value_class);
            const double count = as_double(aggregates[plan.count]);
            const double distance = as_double(aggregates[plan.sum]) / count - as_double(given);
            return as_class((count - 1) * as_double(state.incremented) / count + distance * distance / (count - 1),
                            plan.value_class);
        }
        default:
            return given;
    }
}

void Variables::take(size_t slot, const Value& returned, Calculation calculation)
{
    now_[slot] = next(slot, returned, now_, calculation);
    old_[slot] = now_[slot];
    states_[slot].incremented = now_[slot];
}

void Variables::keep_distinct(size_t slot, const Value& given)
{
    State& state = states_[slot];
    if (state.initialized) state.distinct.clear();
    if (!given.is_null()) state.distinct.insert(to_text(given));
}

Value Variables::distinct_count(size_t slot, const Value& given) const
{
    const State& state = states_[slot];
    const size_t before = state.initialized ? 0 : state.distinct.size();
    const bool known = given.is_null() || (before > 0 && state.distinct.contains(to_text(given)));
    return static_cast<int64_t>(before + (known ? 0 : 1));
}

bool Variables::increments_at(const VariablePlan& plan, Part part, const std::vector<bool>& changed) const
{
    switch (part) {
        case Part::Report:
            return true;
        case Part::Page:
            return plan.increment == Part::Page || plan.increment == Part::Column;
        case Part::Column:
            return plan.increment == Part::Column;
        case Part::Group:
            return plan.increment == Part::Group && changed[static_cast<size_t>(plan.increment_group)];
        default:
            return false;
    }
}

void Variables::begin(Part part, const std::vector<bool>& changed, const Environment& now)
{
    for (size_t slot = 0; slot < plans_.size(); ++slot) {
        State& state = states_[slot];
        if (plans_[slot].increment == Part::None) {
            state.incremented = now_[slot];
        } else if (increments_at(plans_[slot], part, changed)) {
            state.incremented = now_[slot];
            if (part == Part::Page || part == Part::Column) state.incremented_before = now_[slot];
        }
        reset(slot, part, changed, now);
    }
}

void Variables::reset(size_t slot, Part part, const std::vector<bool>& changed, const Environment& now)
{
    const VariablePlan& plan = plans_[slot];
    State& state = states_[slot];
    if (plan.reset == Part::None) {
        now_[slot] = given(plan, now);
        state.incremented = now_[slot];
        return;
    }
    const bool page = part == Part::Page && (plan.reset == Part::Page || plan.reset == Part::Column);
    const bool column = part == Part::Column && plan.reset == Part::Column;
    const bool group =
        part == Part::Group && plan.reset == Part::Group && changed[static_cast<size_t>(plan.reset_group)];
    if (part != Part::Report && !page && !column && !group) return;
    now_[slot] = plan.initial ? plan.initial.evaluate(now) : plan.fixed_initial;
    state.initialized = true;
    state.incremented = Value();
    if (page || column) {
        old_[slot] = now_[slot];
        state.incremented_before = Value();
    }
}

void Variables::increment_with_groups(const std::vector<bool>& changed)
{
    for (size_t slot = 0; slot < plans_.size(); ++slot) {
        const VariablePlan& plan = plans_[slot];
        if (plan.increment == Part::Group && changed[static_cast<size_t>(plan.increment_group)]) {
            states_[slot].incremented = now_[slot];
        }
    }
}

}  // namespace velora::engine
