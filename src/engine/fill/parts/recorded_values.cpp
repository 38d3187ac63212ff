#include "engine/fill/parts/recorded_values.h"

namespace velora::engine {

using model::EvaluationTime;

namespace {

Awaited time_of(const VariablePlan& variable)
{
    switch (variable.reset) {
        case model::Moment::Report:
            return {EvaluationTime::Report, kNoGroup, nullptr};
        case model::Moment::Page:
            return {EvaluationTime::Page, kNoGroup, nullptr};
        case model::Moment::Column:
            return {EvaluationTime::Column, kNoGroup, nullptr};
        case model::Moment::Group:
            return {EvaluationTime::Group, variable.reset_group, nullptr};
        default:
            return {EvaluationTime::Now, kNoGroup, nullptr};
    }
}

bool is_there(const Awaited& time, const BandState& band)
{
    const bool column = time.time == EvaluationTime::Column;
    const bool page = time.time == EvaluationTime::Page;
    switch (band.role) {
        case BandRole::ColumnFooter:
            return column;
        case BandRole::PageFooter:
        case BandRole::LastPageFooter:
            return column || page;
        case BandRole::Summary:
            return true;
        case BandRole::GroupFooter:
            return time.time == EvaluationTime::Group && time.group >= band.group;
        default:
            return false;
    }
}

}  // namespace

RecordedValues::RecordedValues(const Run& run, Moment moment, size_t times)
    : fields_(run.plan.fields.size()),
      variables_(run.plan.variables.size()),
      left_(times),
      environment_(fields_, variables_, run.rows.shared())
{
    for (size_t slot = 0; slot < fields_.size(); ++slot) {
        fields_[slot] = run.at(moment).field(slot);
    }
    for (size_t slot = 0; slot < variables_.size(); ++slot) {
        variables_[slot] = run.at(moment).variable(slot);
    }
}

bool RecordedValues::record(const Run& run, const Awaited& time, Moment moment)
{
    for (size_t slot = 0; slot < variables_.size(); ++slot) {
        if (time_of(run.plan.variables[slot]) == time) variables_[slot] = run.at(moment).variable(slot);
    }
    return --left_ == 0;
}

void RecordedValues::take_master(const ReportPlan& plan, uint64_t page, uint64_t pages)
{
    for (size_t slot = 0; slot < variables_.size(); ++slot) {
        const std::string& name = plan.variables[slot].name;
        if (name == kMasterPage) variables_[slot] = static_cast<int64_t>(page);
        if (name == kMasterPages) variables_[slot] = static_cast<int64_t>(pages);
    }
}

std::vector<Awaited> awaited_times(const ReportPlan& plan, const PartPlan& part, const BandState& band)
{
    std::vector<Awaited> times;
    for (const Expression* expression : {&part.expression, &part.pattern}) {
        for (const auto& reference : expression->references()) {
            if (reference.kind != Reference::Kind::Variable) continue;
            const Awaited time = time_of(plan.variables[reference.slot]);
            if (time.time == EvaluationTime::Now || is_there(time, band)) continue;
            if (std::find(times.begin(), times.end(), time) == times.end()) times.push_back(time);
        }
    }
    return times;
}

}  // namespace velora::engine
